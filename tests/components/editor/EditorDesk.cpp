#include "tests/components/editor/EditorDesk.h"

#include "tests/support/desktop/GuiTest.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QRandomGenerator>

namespace lumenfold::test {
namespace {

QByteArray fileContents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

pid_t parentOf(pid_t process)
{
    const QByteArray stat = fileContents(QStringLiteral("/proc/%1/stat").arg(process));
    // Behind the name, which may hold anything.
    return stat.mid(stat.lastIndexOf(')') + 2).split(' ').value(1).toInt();
}

bool isOurs(pid_t process)
{
    for (; process > 1; process = parentOf(process)) {
        if (process == QCoreApplication::applicationPid()) {
            return true;
        }
    }
    return false;
}

} // namespace

EditorDesk::EditorDesk()
{
    files.pictures = folder.path();
    defaults.setRaw(AppConfig::editorBaseOverrideKey, service->baseURL().toString());
    putKey("demo-key");
    controller = std::make_unique<StudioModalWindowController>(StudioModalWindowController::Collaborators{
        .config = config,
        .auth = auth,
        .templates = templates,
        .workspace = workspace,
        .filePanels = panels,
        .alerts = alerts,
    });
}

EditorDesk::~EditorDesk()
{
    controller.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void EditorDesk::serve(const QByteArray &script)
{
    service->change([&](ServiceProtocol &protocol) {
        protocol.pages.insert("/integration/electron",
                              "<!doctype html><title>Page</title><body><script>const elsewhere = '" +
                                  otherService.baseURL().toEncoded() +
                                  "';\nconst report = text => fetch('/report?' + encodeURIComponent(text));\n"
                                  // A key is lost on a page that has no focus yet or was never painted.
                                  "const painted = () => requestAnimationFrame("
                                  "    () => requestAnimationFrame(() => report('ready')));\n"
                                  "const ready = () => document.hasFocus() ? painted()"
                                  " : addEventListener('focus', painted, { once: true });\n" +
                                  script + "</script></body>");
    });
}

void EditorDesk::serveElsewhere(const QByteArray &path, const QByteArray &script)
{
    otherService.change([&](ServiceProtocol &protocol) {
        protocol.pages.insert(path, "<!doctype html><title>Elsewhere</title><body><script>const home = '" +
                                        service->baseURL().toEncoded() +
                                        "';\nconst report = text => fetch(home + '/report?' + "
                                        "encodeURIComponent(text), { mode: 'no-cors' });\n" +
                                        script + "</script></body>");
    });
}

QImage EditorDesk::noise(QSize size)
{
    QImage picture(size, QImage::Format_RGB32);
    QRandomGenerator random(7);
    for (int y = 0; y < size.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(picture.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            line[x] = random.generate() | 0xff000000U;
        }
    }
    return picture;
}

void EditorDesk::present(const QImage &picture, const QString &id)
{
    controller->present(Image::fromPixels(picture), id, [this](const Image &edited) { exported.push_back(edited); });
    waitUntil("the window", [this] { return window() != nullptr && window()->isVisible(); });
}

void EditorDesk::presentAndWait(const QImage &picture, const QString &id)
{
    const qsizetype before = told("shown").size();
    present(picture, id);
    waitUntil(
        "the picture in the page", [&] { return told("shown").size() > before; }, patience);
}

QStringList EditorDesk::reports() const
{
    QStringList reports;
    const QList<ReceivedRequest> requests = service->requests(ServiceDouble::Endpoint::page);
    for (const ReceivedRequest &request : requests) {
        if (request.path() == "/report") {
            reports.append(QUrl::fromPercentEncoding(request.query()));
        }
    }
    return reports;
}

void EditorDesk::waitForReport(const QString &text)
{
    if (!waitFor([&] { return reports().contains(text); }, patience)) {
        FAIL() << "no report \"" << qPrintable(text) << "\" among: " << qPrintable(reports().join(u'\n'));
    }
}

QList<QUrlQuery> EditorDesk::told(const QByteArray &what) const
{
    QList<QUrlQuery> told;
    const QList<ReceivedRequest> requests = service->requests(ServiceDouble::Endpoint::page);
    for (const ReceivedRequest &request : requests) {
        if (request.path() == "/editor/" + what) {
            told.append(QUrlQuery(QString::fromUtf8(request.query())));
        }
    }
    return told;
}

void EditorDesk::strike(std::string_view keys)
{
    waitUntil("the focus", [this] {
        window()->activateWindow();
        return hasKeyboard(window()) && window()->stage()->isAncestorOf(QApplication::focusWidget());
    });
    m_keyboard.press(keys);
}

void EditorDesk::waitForExports(std::size_t count)
{
    waitUntil(
        "the exported picture", [&] { return exported.size() == count; }, patience);
}

void EditorDesk::closeWindow()
{
    window()->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void EditorDesk::waitForNotice(const QString &title)
{
    waitUntil(
        "the notice", [this] { return window()->showsNotice(); }, patience);
    QStringList texts;
    const auto labels = window()->findChildren<QLabel *>();
    for (const QLabel *label : labels) {
        texts.append(label->text());
    }
    EXPECT_TRUE(texts.contains(title)) << qPrintable(texts.join(u'\n'));
}

void EditorDesk::press(const QString &text)
{
    const auto buttons = window()->findChildren<QPushButton *>();
    for (QPushButton *button : buttons) {
        if (button->text() == text) {
            button->click();
            return;
        }
    }
    FAIL() << "no button " << qPrintable(text);
}

QList<pid_t> EditorDesk::processes(QByteArrayView type)
{
    QList<pid_t> found;
    const QStringList all = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
    for (const QString &name : all) {
        const pid_t process = name.toInt();
        if (process > 0 && isOurs(process) &&
            fileContents(QStringLiteral("/proc/%1/cmdline").arg(process)).contains("--type=" + type.toByteArray())) {
            found.append(process);
        }
    }
    return found;
}

} // namespace lumenfold::test
