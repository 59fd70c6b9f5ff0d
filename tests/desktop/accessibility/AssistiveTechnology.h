#pragma once

#include <QList>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <sys/types.h>

#include <optional>

namespace lumenfold::test {

/// One object that a program shows to assistive technologies, with the words of AT-SPI.
struct AccessibleObject {
    /// The way to it from the program: the index of each child.
    QString path;
    /// "push button", "image".
    QString role;
    QString name;
    /// "showing", "sensitive".
    QStringList states;
    QStringList actions;

    /// Whether it says that it can be seen now.
    [[nodiscard]] bool isShowing() const { return states.contains(QStringLiteral("showing")); }
};

/// Somebody who works with a screen reader or the like: sees what programs tell of themselves on the accessibility bus
/// of a session, which the session bus starts, and presses what can be pressed, without the pointer and the keyboard.
class AssistiveTechnology {
public:
    /// `environment` is the session's. Programs learn of it when this returns.
    explicit AssistiveTechnology(QProcessEnvironment environment);

    /// All that a program shows, in the order of the tree; nothing while it shows nothing.
    [[nodiscard]] QList<AccessibleObject> objectsOf(pid_t program) const;

    /// False when the object is no longer there or refused.
    [[nodiscard]] bool perform(pid_t program, const AccessibleObject &object, const QString &action) const;

private:
    /// What it wrote; nothing when it failed.
    [[nodiscard]] std::optional<QString> ask(const QStringList &question) const;

    QProcessEnvironment m_environment;
    QTemporaryDir m_folder;
};

} // namespace lumenfold::test
