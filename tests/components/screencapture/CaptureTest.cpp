#include "tests/components/screencapture/CaptureTest.h"

#include "tests/support/desktop/Pictures.h"
#include "tests/support/desktop/Wait.h"

#include <QCoreApplication>
#include <QCoroTask>
#include <QPalette>

namespace lumenfold::test {
namespace {

XServer *theServer = nullptr;

} // namespace

void CaptureTest::useServer(XServer &server)
{
    theServer = &server;
}

CaptureTest::CaptureTest()
    : m_connection(x11::X11Connection::open())
    , m_screens(std::make_unique<X11Screens>(*m_connection))
    , m_manager(std::make_unique<X11ScreenshotManager>(*m_connection, *m_screens, m_traces))
{
}

CaptureTest::~CaptureTest() = default;

XServer &CaptureTest::server()
{
    return *theServer;
}

double CaptureTest::scale() const
{
    return m_screens->main()->backingScale;
}

ContentFilter CaptureTest::filterFor(const Screen &screen) const
{
    return {.display = {.displayID = screen.displayID, .width = screen.frame.width, .height = screen.frame.height},
            .excludingApplications = {{.processID = QCoreApplication::applicationPid()}}};
}

StreamConfiguration CaptureTest::wholeOf(const Screen &screen) const
{
    return {.width = static_cast<int>(screen.frame.width * screen.backingScale),
            .height = static_cast<int>(screen.frame.height * screen.backingScale),
            .showsCursor = false,
            .capturesAudio = false};
}

StreamConfiguration CaptureTest::partOfMain(const QRect &pixels) const
{
    return {.sourceRect =
                Rect{pixels.x() / scale(), pixels.y() / scale(), pixels.width() / scale(), pixels.height() / scale()},
            .width = pixels.width(),
            .height = pixels.height(),
            .showsCursor = false,
            .capturesAudio = false};
}

CaptureTest::Picture CaptureTest::take(const ContentFilter &filter, const StreamConfiguration &configuration)
{
    return QCoro::waitFor(m_manager->captureImage(filter, configuration)).map([](const Image &image) {
        return image.pixels();
    });
}

QImage CaptureTest::takeMain()
{
    const Screen main = *m_screens->main();
    const Picture picture = take(filterFor(main), wholeOf(main));
    EXPECT_TRUE(picture) << qPrintable(picture ? QString() : picture.error().description);
    return picture.value_or(QImage());
}

QImage CaptureTest::takePartOfMain(const QRect &pixels)
{
    const Picture picture = take(filterFor(*m_screens->main()), partOfMain(pixels));
    EXPECT_TRUE(picture) << qPrintable(picture ? QString() : picture.error().description);
    return picture.value_or(QImage());
}

std::unique_ptr<QWidget> CaptureTest::showOwnWindow(const QRect &pixels, const QColor &colour)
{
    auto window = std::make_unique<QWidget>(nullptr, Qt::FramelessWindowHint | Qt::BypassWindowManagerHint | Qt::Tool);
    window->setAttribute(Qt::WA_ShowWithoutActivating);
    window->setPalette(QPalette(colour));
    window->setAutoFillBackground(true);
    const ScreenSpace &space = m_screens->space();
    window->setGeometry(space.toQt(space.fromNative(QRectF(pixels))).toRect());
    window->show();
    const auto isSeen = [&] {
        const QImage seen = rootPicture(server().connection(), pixels & QRect(QPoint(0, 0), server().size()));
        return QColor(seen.pixel(0, 0)) == colour && QColor(seen.pixel(seen.width() - 1, seen.height() - 1)) == colour;
    };
    EXPECT_TRUE(waitFor(isSeen)) << "the own window did not appear";
    return window;
}

void CaptureTest::destroyConnection()
{
    m_manager.reset();
    m_screens.reset();
    m_connection.reset();
}

} // namespace lumenfold::test
