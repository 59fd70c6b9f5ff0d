/// Writes answers of the service, good and bad, into the folder that is the argument.
#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <cstdio>
#include <vector>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const std::vector<QByteArray> answers{
        R"({"user":{"email":"ada@lumenfold.example","firstname":"Ada","tier":"pro"}})",
        R"({"user":{"email":"someone","firstname":null}})",
        R"({"user":{"email":5,"tier":["pro"]}})",
        R"({"templates":[{"_id":"1","name":"A","previewUrl":"https://p.example/1","editedAt":"2024-05-02T10:00:00Z"}]})",
        R"({"templates":[{"_id":"1","_id":"2","name":5},{"_id":"\ud83d","name":"\ud83d\ude00"}]})",
        R"({"url":"https://storage.example:8443/a%20b.png?X-Signature=ab%2Bcd%3D&x=\u00fc#f"})",
        R"({"url":"file:///etc/passwd","url":"//host/path"})",
        R"([[[[{"a":[1e308,-0.1,true,null]}]]]])",
    };
    const QDir folder(QCoreApplication::arguments().value(1));
    int number = 0;
    for (const QByteArray &answer : answers) {
        QFile file(folder.filePath(QStringLiteral("%1.json").arg(number++)));
        if (!file.open(QIODevice::WriteOnly) || file.write(answer) != answer.size()) {
            std::perror("cannot write a seed");
            return 1;
        }
    }
    return 0;
}
