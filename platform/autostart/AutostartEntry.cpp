#include "platform/autostart/AutostartEntry.h"

#include <QMap>

#include <algorithm>

namespace lumenfold::autostartEntry {
namespace {

const QString groupHeader = QStringLiteral("[Desktop Entry]");

using Entry = QMap<QString, QString>;

/// The entry's own group; empty for what is no desktop entry.
Entry parse(QByteArrayView contents)
{
    Entry entry;
    bool isInside = false;
    const QStringList lines = QString::fromUtf8(contents).split(u'\n');
    for (const QString &each : lines) {
        const QString line = each.trimmed();
        if (line.isEmpty() || line.startsWith(u'#')) {
            continue;
        }
        if (line.startsWith(u'[')) {
            isInside = line == groupHeader;
            continue;
        }
        const qsizetype equals = line.indexOf(u'=');
        if (isInside && equals > 0) {
            entry.insert(line.first(equals).trimmed(), line.sliced(equals + 1).trimmed());
        }
    }
    return entry;
}

/// A text as values of desktop entries have it.
QString escaped(QString text)
{
    text.replace(u'\\', QStringLiteral("\\\\"));
    text.replace(u'\n', QStringLiteral("\\n"));
    text.replace(u'\t', QStringLiteral("\\t"));
    return text.replace(u'\r', QStringLiteral("\\r"));
}

QString unescaped(const QString &value)
{
    QString text;
    for (qsizetype index = 0; index < value.size(); ++index) {
        if (value[index] != u'\\' || index + 1 == value.size()) {
            text.append(value[index]);
            continue;
        }
        const QChar kind = value[++index];
        static const QString kinds = QStringLiteral("sntr");
        static const QString meanings = QStringLiteral(" \n\t\r");
        const qsizetype known = kinds.indexOf(kind);
        text.append(known < 0 ? kind : meanings[known]);
    }
    return text;
}

/// One argument of the Exec key, whatever is in it.
QString quoted(const QString &argument)
{
    QString quote = QStringLiteral("\"");
    for (const QChar each : argument) {
        if (QStringView(u"\"`$\\").contains(each)) {
            quote.append(u'\\');
        }
        quote.append(each);
        if (each == u'%') {
            quote.append(each);
        }
    }
    return quote + u'"';
}

bool names(const QString &list, const QStringList &desktops)
{
    const QStringList listed = list.split(u';', Qt::SkipEmptyParts);
    return std::ranges::any_of(desktops, [&](const QString &desktop) { return listed.contains(desktop); });
}

QByteArray written(const QList<std::pair<QString, QString>> &keys)
{
    QString text = groupHeader + u'\n';
    for (const auto &[key, value] : keys) {
        text += key + u'=' + escaped(value) + u'\n';
    }
    return text.toUtf8();
}

const QString yes = QStringLiteral("true");
const QString typeKey = QStringLiteral("Type");
const QString nameKey = QStringLiteral("Name");
const QString iconKey = QStringLiteral("Icon");
const QString execKey = QStringLiteral("Exec");
const QString tryExecKey = QStringLiteral("TryExec");
const QString hiddenKey = QStringLiteral("Hidden");
const QString onlyShowInKey = QStringLiteral("OnlyShowIn");
const QString notShowInKey = QStringLiteral("NotShowIn");
/// The switch of GNOME's, Cinnamon's and MATE's own tools.
const QString gnomeEnabledKey = QStringLiteral("X-GNOME-Autostart-enabled");
const QString applicationType = QStringLiteral("Application");

} // namespace

bool starts(QByteArrayView contents, const Session &session)
{
    const Entry entry = parse(contents);
    const bool isOn = entry.value(typeKey) == applicationType && !entry.value(execKey).isEmpty() &&
                      entry.value(hiddenKey) != yes && entry.value(gnomeEnabledKey, yes) == yes;
    const bool isHere = (!entry.contains(onlyShowInKey) || names(entry.value(onlyShowInKey), session.desktops)) &&
                        !names(entry.value(notShowInKey), session.desktops);
    const QString needed = unescaped(entry.value(tryExecKey));
    return isOn && isHere && (needed.isEmpty() || session.isInstalled(needed));
}

QByteArray starting(const QString &program, const QString &name, const QString &icon)
{
    return written({{typeKey, applicationType},
                    {nameKey, name},
                    {iconKey, icon},
                    {execKey, quoted(program)},
                    // Once the program is gone nobody misses it at each login.
                    {tryExecKey, program},
                    {gnomeEnabledKey, yes}});
}

QByteArray startingNothing(const QString &name)
{
    return written({{typeKey, applicationType}, {nameKey, name}, {hiddenKey, yes}});
}

} // namespace lumenfold::autostartEntry
