/// Writes feeds of updates, good and bad, into the folder that is the argument.
#include "tests/support/updates/SignedFeeds.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <cstdio>
#include <vector>

int main(int argc, char **argv)
{
    using lumenfold::test::feedOf;
    const QCoreApplication application(argc, argv);
    const std::vector<QByteArray> feeds{
        feedOf({}),
        feedOf({{.version = "1.4.0", .minimumSystemVersion = "2.36"}, {.version = "v2.0.0-beta.2+build.5"}}),
        feedOf({{.version = "1.4", .notes = "<![CDATA[# New <b>]]>", .page = "http://plain.example"}}),
        lumenfold::test::FeedSigner().sign(
            feedOf({{.version = "1.0-rc.1"}, {.version = "1.0-rc.01"}, {.version = "1"}})),
        "<!DOCTYPE rss [<!ENTITY a \"b\">]><rss><channel><item>&a;</item></channel></rss>",
        "<rss xmlns:l=\"urn:lumenfold:appcast\"><channel><item><enclosure url=\"file:///a\" l:version=\"1\"/></item>",
        "<!-- ed25519: AAAA -->",
    };
    const QDir folder(QCoreApplication::arguments().value(1));
    int number = 0;
    for (const QByteArray &feed : feeds) {
        QFile file(folder.filePath(QStringLiteral("%1.xml").arg(number++)));
        if (!file.open(QIODevice::WriteOnly) || file.write(feed) != feed.size()) {
            std::perror("cannot write a seed");
            return 1;
        }
    }
    return 0;
}
