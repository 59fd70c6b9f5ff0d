#pragma once

#include "service/ApiKeySetupWindow.h"
#include "service/apikey/ApiKeySetupView.h"

#include <QObject>
#include <QPointer>

class QDialog;

namespace lumenfold {

/// The one window that asks for the API key. It floats above other windows and keeps what was typed into it until a key
/// was accepted.
class ApiKeySetupWindowController : public QObject, public ApiKeySetupWindow {
    Q_OBJECT

public:
    explicit ApiKeySetupWindowController(const ApiKeySetupView::Collaborators &collaborators);
    ~ApiKeySetupWindowController() override;

    /// The one of the program, which the composition root made and named with `setShared`.
    [[nodiscard]] static ApiKeySetupWindowController &shared();
    /// Not owned; null when it goes away.
    static void setShared(ApiKeySetupWindowController *controller);

    void present() override;

private:
    void makeWindow();
    void connected();

    const ApiKeySetupView::Collaborators m_with;
    std::unique_ptr<QDialog> m_window;
};

} // namespace lumenfold
