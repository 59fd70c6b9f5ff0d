/// Writes what pages say, good and bad, into the folder that is the argument.
#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <cstdio>
#include <vector>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const std::vector<QByteArray> inputs{
        R"({"document":"d","message":0,"length":6,"name":"lumenfoldLoaded","origin":"https://www.example.org:8443","isText":true,"text":"loaded"})",
        R"({"document":"d","message":1,"length":20000000,"name":"lumenfoldImage","origin":"null","isText":true,"text":null})",
        R"({"document":"d","message":2,"length":0,"name":"lumenfoldImage","origin":"o","isText":false,"text":null})",
        "QUJDREVGR0hJSktM",
        "QUJDRA==",
        "QQ==QUJD",
        "https://www.example.org:8443",
        "https://www.example.org:8443/integration/electron?apiKey=1#x",
        "http://[::1]:80/",
        "https://b\xc3\xbc"
        "cher.example",
        "null",
        "data:image/png;base64,QUJD",
        "data:image/JPEG;name=a;base64,%2BA%3D%3D",
        "data:,x",
    };
    const QDir folder(QCoreApplication::arguments().value(1));
    int number = 0;
    for (const QByteArray &input : inputs) {
        QFile file(folder.filePath(QStringLiteral("%1.txt").arg(number++)));
        if (!file.open(QIODevice::WriteOnly) || file.write(input) != input.size()) {
            std::perror("cannot write a seed");
            return 1;
        }
    }
    return 0;
}
