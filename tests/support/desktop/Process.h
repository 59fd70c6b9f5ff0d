#pragma once

#include "tests/support/desktop/Wait.h"

#include <QByteArray>
#include <QList>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <sys/types.h>

#include <optional>

namespace lumenfold::test {

struct ProcessOptions {
    /// A path, or a name that is looked up in PATH.
    QString program{};
    QStringList arguments{};
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    /// Output and errors go here; empty for nowhere.
    QString logFile{};
    /// Descriptors of ours that the program keeps under the same numbers.
    QList<int> inheritedDescriptors{};
};

/// A program that lives no longer than the test: it has a process group of its own, gets SIGTERM when the test dies,
/// and is ended by the destructor.
///
/// QProcess is not used because it needs an event loop to notice an exit, and these must also work beside a
/// QApplication that is itself under test.
class Process {
public:
    struct Exit {
        /// The status that the program returned; -1 when a signal ended it.
        int status = 0;
        /// 0 when the program ended by itself.
        int signal = 0;

        friend bool operator==(const Exit &, const Exit &) = default;
    };

    /// Throws std::runtime_error when the program cannot be started.
    explicit Process(const ProcessOptions &options);
    ~Process();
    Process(const Process &) = delete;
    Process &operator=(const Process &) = delete;

    [[nodiscard]] pid_t pid() const { return m_pid; }
    [[nodiscard]] bool isRunning();
    /// To the program alone, not to its group.
    void sendSignal(int signal) const;
    /// Nothing when it still runs after the time-out.
    [[nodiscard]] std::optional<Exit> waitForExit(std::chrono::milliseconds timeout = defaultTimeout);
    /// All that it has written so far; empty without a log file.
    [[nodiscard]] QByteArray log() const;
    [[nodiscard]] static QByteArray logAt(const QString &file);
    [[nodiscard]] QString logFile() const { return m_logFile; }

private:
    pid_t m_pid = -1;
    int m_pidDescriptor = -1;
    QString m_logFile;
    std::optional<Exit> m_exit;
};

} // namespace lumenfold::test
