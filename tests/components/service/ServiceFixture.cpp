#include "tests/components/service/ServiceFixture.h"

#include <QImage>

namespace lumenfold::test {
namespace {

template <typename Result>
Ending<Result> waitForEnding(const std::shared_ptr<Ending<Result>> &ending)
{
    EXPECT_TRUE(waitFor([&] { return ending->isThere(); }));
    return *ending;
}

QCoro::Task<bool> open(HttpLumenfoldService &service, Image image)
{
    co_await service.openInLumenFold(std::move(image));
    co_return true;
}

} // namespace

ServiceTest::ServiceTest()
{
    putKey("demo-key");
    useService(online.baseURL());
}

std::shared_ptr<Ending<QUrl>> ServiceTest::beginSave(const Image &image)
{
    auto ending = std::make_shared<Ending<QUrl>>();
    note(service->save(image), ending);
    return ending;
}

Ending<QUrl> ServiceTest::save(const Image &image)
{
    return waitForEnding(beginSave(image));
}

Ending<bool> ServiceTest::openInLumenFold(const Image &image)
{
    auto ending = std::make_shared<Ending<bool>>();
    note(open(*service, image), ending);
    return waitForEnding(ending);
}

Ending<ServiceTest::Templates> ServiceTest::fetchTemplates()
{
    auto ending = std::make_shared<Ending<Templates>>();
    note(service->fetchTemplates(), ending);
    return waitForEnding(ending);
}

Image ServiceTest::picture()
{
    QImage pixels(40, 30, QImage::Format_RGB32);
    pixels.fill(Qt::darkCyan);
    return Image::fromPixels(pixels);
}

} // namespace lumenfold::test
