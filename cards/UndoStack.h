#pragma once

#include "cards/PreviewCardVariant.h"
#include "platform/geometry/Geometry.h"
#include "platform/image/Image.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace lumenfold {

class MainQueue;
class ScheduledWork;

/// All that is needed to make a card again. The images are shared handles, so keeping one costs nothing but what the
/// card itself held.
struct DismissedCard {
    Image image;
    Image editorSourceImage;
    QString screenshotId;
    QString editorSourceId;
    PreviewCardVariant variant = PreviewCardVariant::stack;
    /// A pinned card's panel frame; absent for a stack card, which is laid out afresh.
    std::optional<Rect> frame;
};

/// The removals that can still be undone. Each new one gives all earlier ones another 12 seconds; then all of them are
/// forgotten together. Main thread.
class UndoStack : public QObject {
    Q_OBJECT

public:
    /// The cards that went in one step.
    using Group = std::vector<DismissedCard>;

    static constexpr std::chrono::seconds undoWindow{12};

    /// `queue` must outlive this.
    explicit UndoStack(MainQueue &queue);
    ~UndoStack() override;

    void push(Group group);

    /// Hands the newest group to `bringBack`; false when there is none.
    bool undoNewest(const std::function<void(Group group)> &bringBack);

    [[nodiscard]] bool isEmpty() const { return m_groups.empty(); }

    /// Told true at every push, and false when the last group was undone or all have been forgotten. May be empty.
    std::function<void(bool available)> onAvailabilityChanged;

private:
    void scheduleUndoExpiry();
    void cancelExpiry();
    void tell(bool available);

    MainQueue &m_queue;
    /// The newest last.
    std::vector<Group> m_groups;
    std::shared_ptr<ScheduledWork> m_expiry;
};

} // namespace lumenfold
