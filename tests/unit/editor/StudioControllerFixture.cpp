#include "tests/unit/editor/StudioControllerFixture.h"

#include "editor/bridge/DataUrl.h"
#include "tests/support/desktop/Wait.h"

#include <QCoreApplication>
#include <QEvent>

namespace lumenfold::test {

StudioControllerTest::StudioControllerTest()
{
    defaults.setRaw(AppConfig::editorBaseOverrideKey, origin);
    putKey("demo-key");
    makeController();
}

StudioControllerTest::~StudioControllerTest() = default;

void StudioControllerTest::makeController(std::chrono::milliseconds patience)
{
    controller = std::make_unique<StudioModalWindowController>(StudioModalWindowController::Collaborators{
        .config = config,
        .auth = auth,
        .templates = templates,
        .workspace = workspace,
        .filePanels = panels,
        .alerts = alerts,
        .loadModule = [this]() -> tl::expected<EditorModule, EditorModuleTrouble> {
            ++moduleLoads;
            if (moduleTrouble) {
                return tl::unexpected(*moduleTrouble);
            }
            return page.module();
        },
        .patience = patience,
    });
}

Image StudioControllerTest::present(int width, const QString &id)
{
    const Image image = picture(width);
    const int before = workspace.activations;
    controller->present(image, id, [this](const Image &edited) { exported.push_back(edited); });
    waitUntil("the window", [&] { return workspace.activations > before; });
    return image;
}

Image StudioControllerTest::presentAndLoad(int width, const QString &id)
{
    const qsizetype before = page.loads.size();
    const Image image = present(width, id);
    waitUntil("the page to be loaded", [&] { return page.loads.size() > before; });
    view().show(page.loads.last());
    return image;
}

void StudioControllerTest::sayLoaded()
{
    EXPECT_FALSE(view().post(QStringLiteral("lumenfoldLoaded"), QStringLiteral("loaded"), origin));
}

void StudioControllerTest::exportImage(const QString &text)
{
    // Nothing of it is left to be fetched.
    EXPECT_FALSE(view().post(QStringLiteral("lumenfoldImage"), text, origin));
}

void StudioControllerTest::waitForLoads(int count)
{
    waitUntil("the page to be loaded", [&] { return page.loads.size() == count; });
}

void StudioControllerTest::closeWindow()
{
    window()->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

bool StudioControllerTest::isDelivered(const Image &image, int index) const
{
    return index < page.deliveries.size() && page.deliveries[index].dataURL == dataURLOf(image).toLatin1();
}

Image StudioControllerTest::picture(int width)
{
    QImage pixels(width, 3, QImage::Format_RGB32);
    pixels.fill(qRgb(width, 80, 120));
    return Image::fromPixels(pixels);
}

QString StudioControllerTest::dataURLOf(const Image &image)
{
    return QString::fromLatin1(pngDataURL(image.pngData().value()));
}

} // namespace lumenfold::test
