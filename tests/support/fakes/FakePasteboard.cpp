#include "tests/support/fakes/FakePasteboard.h"

namespace lumenfold::test {

void FakePasteboard::clearContents()
{
    calls.push_back(Call::clearContents);
    images.clear();
    png.reset();
}

void FakePasteboard::writeImage(const Image &image)
{
    calls.push_back(Call::writeImage);
    images.push_back(image);
}

void FakePasteboard::setPngData(const QByteArray &bytes)
{
    calls.push_back(Call::setPngData);
    png = bytes;
}

} // namespace lumenfold::test
