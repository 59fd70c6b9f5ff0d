#pragma once

#include "platform/updates/UpdateUserDriver.h"

#include <QObject>

#include <memory>

class QDialog;
class QVBoxLayout;

namespace lumenfold {

class Appearance;
class Workspace;

/// The one window about updates; there is none until the user asks. It shows one thing after the other, and goes away
/// when it is closed.
class UpdateWindowController : public QObject, public UpdateUserDriver {
    Q_OBJECT

public:
    struct Collaborators {
        const Appearance &appearance;
        Workspace &workspace;
        /// As it is written.
        QString runningVersion;
    };

    /// The collaborators must outlive this object.
    explicit UpdateWindowController(Collaborators collaborators);
    ~UpdateWindowController() override;

    void showChecking(std::function<void()> onDismissed) override;
    void showUpdate(const AvailableUpdate &update, std::function<void(UpdateChoice)> onChosen) override;
    void showUpToDate() override;
    void showFailure(UpdateCheckError error) override;
    bool bringUpdateForward() override;

private:
    enum class Size { ofContent, ofUser };

    void show(QWidget *content, Size size);
    void makeWindow();
    void bringForward();
    void closed();

    const Collaborators m_with;
    std::unique_ptr<QDialog> m_window;
    QVBoxLayout *m_layout = nullptr;
    QWidget *m_content = nullptr;
    std::function<void()> m_onDismissed;
    std::function<void(UpdateChoice)> m_onChosen;
    UpdateChoice m_choice = UpdateChoice::remindLater;
};

} // namespace lumenfold
