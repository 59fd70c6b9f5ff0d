#pragma once

#include <QObject>

#include <functional>

namespace lumenfold {

/// Tells when the session around the program ends, as its session manager says it. For as long as it lives.
class SessionEnd : public QObject {
    Q_OBJECT

public:
    struct Handlers {
        /// What is to be kept is kept now: the display server may go before the event loop ends. May come several
        /// times, and the session may go on after it.
        std::function<void()> save;
        /// The program is to end.
        std::function<void()> end;
    };

    /// Needs the toolkit's application object.
    explicit SessionEnd(Handlers handlers);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    const Handlers m_handlers;
};

} // namespace lumenfold
