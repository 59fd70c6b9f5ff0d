#include "cards/face/ImagePreviewGeometry.h"

namespace lumenfold {
namespace {

constexpr double shareOfFrame = 0.7;
constexpr Rect frameWithoutScreen{0, 0, 1440, 900};

} // namespace

Size imagePreviewSize(Size visibleFrame, double aspectRatio)
{
    const Size box{visibleFrame.width * shareOfFrame, visibleFrame.height * shareOfFrame};
    if (box.height < box.width / aspectRatio) {
        return {box.height * aspectRatio, box.height};
    }
    return {box.width, box.width / aspectRatio};
}

Rect imagePreviewFrame(const std::optional<Rect> &visibleFrame, double aspectRatio, double hitMargin)
{
    const Rect frame = visibleFrame.value_or(frameWithoutScreen);
    const Size image = imagePreviewSize(frame.size(), aspectRatio);
    return Rect{frame.midX() - image.width / 2, frame.midY() - image.height / 2, image.width, image.height}.outsetBy(
        hitMargin);
}

} // namespace lumenfold
