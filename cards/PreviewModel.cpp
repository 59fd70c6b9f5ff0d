#include "cards/PreviewModel.h"

#include "app/configuration/AppConfig.h"
#include "cards/CardSizing.h"

#include <QUuid>

#include <utility>

namespace lumenfold {
namespace {

QString freshScreenshotId()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}

} // namespace

PreviewModel::PreviewModel(const AppConfig &config, Options options)
    : m_image(std::move(options.image))
    , m_editorSourceImage(std::move(options.editorSourceImage).value_or(m_image))
    , m_variant(options.variant)
    , m_screenshotId(options.id ? *options.id : freshScreenshotId())
    , m_editorSourceId(std::move(options.editorSourceId).value_or(m_screenshotId))
    , m_cardSize(config.previewCardDefaultSize())
{
}

PreviewModel::~PreviewModel() = default;

void PreviewModel::setStatus(Status status)
{
    if (status != m_status) {
        Q_EMIT statusWillChange(status);
        m_status = std::move(status);
    }
}

void PreviewModel::setDeckBehind(bool behind)
{
    if (behind != m_deckBehind) {
        Q_EMIT deckBehindWillChange(behind);
        m_deckBehind = behind;
    }
}

void PreviewModel::setCollapsed(bool collapsed)
{
    if (collapsed != m_collapsed) {
        Q_EMIT collapsedWillChange(collapsed);
        m_collapsed = collapsed;
    }
}

double PreviewModel::aspectRatio() const
{
    return pixelAspectRatio(m_image);
}

void PreviewModel::setCardWidth(double width)
{
    const double clamped = clampedCardWidth(width);
    if (!differsNoticeably(clamped, m_cardSize.width)) {
        return;
    }
    setCardSize(sizeOfWidth(clamped, cardAspectRatio(m_variant, m_image)));
    if (onSizeChanged) {
        // The answer may replace the callback.
        const auto callback = onSizeChanged;
        callback(m_cardSize);
    }
}

void PreviewModel::lockSizeToImageRatio()
{
    setCardSize(lockedToRatio(m_cardSize, aspectRatio()));
}

void PreviewModel::syncCardSizeFromWindow(Size size)
{
    if (differsNoticeably(size.width, m_cardSize.width) || differsNoticeably(size.height, m_cardSize.height)) {
        setCardSize(size);
    }
}

void PreviewModel::setCardSize(Size size)
{
    if (size != m_cardSize) {
        Q_EMIT cardSizeWillChange(size);
        m_cardSize = size;
    }
}

} // namespace lumenfold
