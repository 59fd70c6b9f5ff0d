/// Writes small lists of cards, good and bad, into the folder that is the argument.
#include "cards/PersistedCardCoding.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <cstdio>
#include <vector>

int main(int argc, char **argv)
{
    using namespace lumenfold;
    const QCoreApplication application(argc, argv);
    const QString id = QStringLiteral("0B5F4C2E-7B9C-4C55-8F0E-3C0D5B9B1B7A");
    const PersistedCard stacked{.id = id, .editorSourceId = id};
    const PersistedCard pinned{.id = id, .isPinned = true, .frame = Rect{-100.5, 200, 404, 344}};
    const std::vector<QByteArray> lists{
        encodePersistedCards({}).value(),
        encodePersistedCards({stacked}).value(),
        encodePersistedCards({pinned}).value(),
        encodePersistedCards({stacked, pinned}).value(),
        R"([{"id":"../\u0000\ud83d\ude00\ud83d","isPinned":false,"frame":null,"editorSourceId":null}])",
        R"([{"id":"A","isPinned":true,"frame":[[1e308,-1E+3],[0.1,12345678901234567890]]}])",
        R"([{"id":"A","isPinned":"no"}])",
        R"({"id":"A"})",
    };
    const QDir folder(QCoreApplication::arguments().value(1));
    int number = 0;
    for (const QByteArray &list : lists) {
        QFile file(folder.filePath(QStringLiteral("%1.json").arg(number++)));
        if (!file.open(QIODevice::WriteOnly) || file.write(list) != list.size()) {
            std::perror("cannot write a seed");
            return 1;
        }
    }
    return 0;
}
