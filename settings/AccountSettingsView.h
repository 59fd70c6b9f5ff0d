#pragma once

#include <QWidget>

class QLabel;
class QPushButton;
class QStackedWidget;
class QVBoxLayout;

namespace lumenfold {

class ApiKeySetupWindow;
class Appearance;
class AuthService;
class SymbolView;
enum class Symbol;

/// The page "Account": who is connected to the service, and how to connect, change the key, and disconnect.
class AccountSettingsView : public QWidget {
    Q_OBJECT

public:
    /// Everything must outlive the view.
    struct Collaborators {
        AuthService &auth;
        ApiKeySetupWindow &apiKeySetup;
        const Appearance &appearance;
    };

    explicit AccountSettingsView(const Collaborators &collaborators, QWidget *parent = nullptr);

    void setSignedIn(bool isSignedIn);

private:
    /// A page with a symbol and a headline in its middle.
    struct Page {
        QWidget *widget;
        SymbolView *symbol;
        QVBoxLayout *column;
    };

    [[nodiscard]] Page makePage(Symbol symbol, const QString &headline);
    [[nodiscard]] QWidget *makeNotConnected();
    [[nodiscard]] QWidget *makeConnected();
    void addText(const Page &page, QLabel *label);
    void showColors();

    const Collaborators m_with;
    QStackedWidget *const m_pages;
    SymbolView *m_seal = nullptr;
    QLabel *m_email = nullptr;
    QPushButton *m_disconnect = nullptr;
};

} // namespace lumenfold
