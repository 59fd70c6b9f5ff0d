#pragma once

#include <QCoroTask>
#include <QString>
#include <QWidget>

#include <functional>

class QLineEdit;
class QPushButton;

namespace lumenfold {

class AppConfig;
class Appearance;
class AuthService;
class LinkButton;
class NoticeRow;
class Spinner;
class Workspace;

/// Asks for the API key and signs in with it. 420 points wide; as high as what it has to say.
class ApiKeySetupView : public QWidget {
    Q_OBJECT

public:
    /// Everything must outlive the view.
    struct Collaborators {
        AuthService &auth;
        const AppConfig &config;
        const Appearance &appearance;
        Workspace &workspace;
    };

    /// `onConnected` is called after a sign-in that succeeded; the view may be gone after that.
    ApiKeySetupView(const Collaborators &collaborators, std::function<void()> onConnected, QWidget *parent = nullptr);

    [[nodiscard]] bool isValidating() const { return m_isValidating; }

private:
    [[nodiscard]] QWidget *makeExplanation();
    [[nodiscard]] QWidget *makeKeyBlock();
    [[nodiscard]] QWidget *makeButtonRow();

    /// Does nothing without a key or while a sign-in is under way.
    void connectAccount();
    QCoro::Task<> signIn(QString key);
    [[nodiscard]] QString trimmedKey() const;
    void showState();
    void showColors();
    void showKeyringHint();

    const Collaborators m_with;
    const std::function<void()> m_onConnected;
    bool m_isValidating = false;

    QLineEdit *m_key;
    NoticeRow *m_keyringHint;
    NoticeRow *m_error;
    QPushButton *m_connect;
    Spinner *m_progress;
};

} // namespace lumenfold
