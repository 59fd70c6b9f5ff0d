#pragma once

#include "platform/geometry/Geometry.h"
#include "platform/image/Image.h"

#include <QString>

#include <optional>
#include <vector>

namespace lumenfold {

/// One card as the manifest lists it.
struct PersistedCard {
    /// The card's screenshot id.
    QString id;
    std::optional<QString> editorSourceId;
    bool isPinned = false;
    /// A pinned card's panel frame in global points, its hit margin included; absent for stack cards.
    std::optional<Rect> frame;

    friend bool operator==(const PersistedCard &, const PersistedCard &) = default;
};

/// Keeps the cards for the next run. Main thread. Best effort: no failure is reported. Saving returns at once, also
/// while the image's bytes are still being made; calls about one id take effect in the order in which they are made, so
/// that an image saved under the id of a card that was just dismissed stays.
class CardStore {
public:
    CardStore() = default;
    CardStore(const CardStore &) = delete;
    CardStore &operator=(const CardStore &) = delete;
    virtual ~CardStore() = default;

    virtual void saveImage(const Image &image, const QString &id) = 0;
    virtual void saveEditorSourceImage(const Image &image, const QString &id) = 0;

    /// Nothing when there is no such image or it cannot be read.
    [[nodiscard]] virtual std::optional<Image> loadImage(const QString &id) = 0;
    [[nodiscard]] virtual std::optional<Image> loadEditorSourceImage(const QString &id) = 0;

    /// Removes both images of that id.
    virtual void deleteImage(const QString &id) = 0;

    /// Replaces the list; images of cards that are not in it are removed.
    virtual void writeManifest(const std::vector<PersistedCard> &cards) = 0;
    /// Empty when there is no list or it cannot be read.
    [[nodiscard]] virtual std::vector<PersistedCard> readManifest() = 0;
};

} // namespace lumenfold
