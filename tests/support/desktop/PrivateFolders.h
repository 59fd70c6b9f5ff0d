#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QTemporaryDir>

namespace lumenfold::test {

/// A home of its own for a program under test: HOME and every XDG folder, empty and removed with the object.
class PrivateFolders {
public:
    /// Throws std::runtime_error when the folders cannot be made.
    PrivateFolders();
    ~PrivateFolders();
    PrivateFolders(const PrivateFolders &) = delete;
    PrivateFolders &operator=(const PrivateFolders &) = delete;

    [[nodiscard]] QString home() const { return path("home"); }
    [[nodiscard]] QString config() const { return path("config"); }
    [[nodiscard]] QString data() const { return path("data"); }
    [[nodiscard]] QString pictures() const { return path("home/Pictures"); }
    [[nodiscard]] QString path(const char *name) const;

    void applyTo(QProcessEnvironment &environment) const;

private:
    QTemporaryDir m_folder;
};

/// A file of exactly these bytes, in place of one that is there. Throws std::runtime_error with its name and what went
/// wrong.
void writeFile(const QString &path, const QByteArray &bytes);

} // namespace lumenfold::test
