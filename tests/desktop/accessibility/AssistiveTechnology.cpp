#include "tests/desktop/accessibility/AssistiveTechnology.h"

#include "tests/support/desktop/Process.h"

#include <QFile>

#include <stdexcept>
#include <utility>

namespace lumenfold::test {
namespace {

/// Longer than its own patience with a slow program.
constexpr std::chrono::seconds patience{30};

QStringList words(const QString &list)
{
    return list.split(u',', Qt::SkipEmptyParts);
}

} // namespace

AssistiveTechnology::AssistiveTechnology(QProcessEnvironment environment) : m_environment(std::move(environment))
{
    m_environment.remove(QStringLiteral("NO_AT_BRIDGE"));
    if (!ask({QStringLiteral("enable")})) {
        throw std::runtime_error("no accessibility bus in this session");
    }
}

QList<AccessibleObject> AssistiveTechnology::objectsOf(pid_t program) const
{
    const std::optional<QString> answer = ask({QStringLiteral("list"), QString::number(program)});
    if (!answer) {
        throw std::runtime_error("the accessibility bus does not answer");
    }
    QList<AccessibleObject> objects;
    const QStringList lines = answer->split(u'\n', Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        const QStringList fields = line.split(u'\t');
        if (fields.size() == 5) {
            objects.append({.path = fields[0],
                            .role = fields[1],
                            .name = fields[2],
                            .states = words(fields[3]),
                            .actions = words(fields[4])});
        }
    }
    return objects;
}

bool AssistiveTechnology::perform(pid_t program, const AccessibleObject &object, const QString &action) const
{
    return ask({QStringLiteral("act"), QString::number(program), object.path, object.name, action}).has_value();
}

std::optional<QString> AssistiveTechnology::ask(const QStringList &question) const
{
    const QString answers = m_folder.filePath(QStringLiteral("answer"));
    QFile::remove(answers);
    Process reader({.program = QStringLiteral(LUMENFOLD_ASSISTIVE_READER),
                    .arguments = question,
                    .environment = m_environment,
                    .logFile = answers});
    if (reader.waitForExit(patience) != Process::Exit{}) {
        return std::nullopt;
    }
    return QString::fromUtf8(reader.log());
}

} // namespace lumenfold::test
