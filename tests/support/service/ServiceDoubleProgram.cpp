/// The online service on this machine, until the program is ended. The first line that it prints is the address at
/// which it listens; then comes the API key that it takes.
#include "tests/support/service/ServiceDouble.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>

#include <cstdio>
#include <exception>
#include <stdexcept>

namespace {

using namespace lumenfold::test;

QByteArray contents(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error("cannot read " + path.toStdString());
    }
    return file.readAll();
}

ServiceDouble::Options optionsOf(const QStringList &arguments)
{
    const QCommandLineOption port(QStringLiteral("port"), QStringLiteral("Where to listen."), QStringLiteral("number"));
    const QCommandLineOption certificate(QStringLiteral("certificate"),
                                         QStringLiteral("Speak HTTPS with the certificate in this file (PEM)."),
                                         QStringLiteral("file"));
    const QCommandLineOption key(QStringLiteral("key"), QStringLiteral("The certificate's key (PEM)."),
                                 QStringLiteral("file"));
    const QCommandLineOption forget(QStringLiteral("forget"), QStringLiteral("Keep nothing that is uploaded."));
    QCommandLineParser parser;
    parser.addOptions({port, certificate, key, forget});
    parser.addHelpOption();
    parser.process(arguments);

    ServiceDouble::Options options{.port = parser.value(port).toUShort(), .forgetBodies = parser.isSet(forget)};
    if (parser.isSet(certificate)) {
        options.identity = {.certificate = contents(parser.value(certificate)), .key = contents(parser.value(key))};
    }
    return options;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    try {
        const ServiceDouble service(optionsOf(QCoreApplication::arguments()));
        const QByteArray base = service.baseURL().toEncoded();
        std::printf("%s\n", base.constData());
        std::printf("API key: demo-key (also at %s/dashboard/account)\n", base.constData());
        std::fflush(stdout);
        return QCoreApplication::exec();
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
