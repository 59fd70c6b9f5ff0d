#include "cards/face/ImagePreviewWindowController.h"

#include "app/configuration/AppConfig.h"
#include "cards/CardSizing.h"
#include "cards/face/ImagePreviewGeometry.h"
#include "cards/face/ImagePreviewView.h"
#include "platform/appearance/Appearance.h"
#include "platform/panels/Panel.h"
#include "platform/screens/Screens.h"

namespace lumenfold {

ImagePreviewWindowController::ImagePreviewWindowController(const Collaborators &collaborators)
    : m_with(collaborators), m_self(std::make_shared<ImagePreviewWindowController *>(this))
{
}

ImagePreviewWindowController::~ImagePreviewWindowController() = default;

void ImagePreviewWindowController::present(const Image &image)
{
    close();
    constexpr double margin = AppConfig::previewPinnedHitMargin;
    const auto screen = m_with.screens.main();
    const Rect frame =
        imagePreviewFrame(screen ? std::optional(screen->visibleFrame) : std::nullopt, pixelAspectRatio(image), margin);
    const auto closeThis = [weak = std::weak_ptr(m_self)] {
        if (const auto self = weak.lock()) {
            (*self)->close();
        }
    };
    m_window = m_with.panels.makePanel(
        {.transparentMargin = margin, .title = ImagePreviewView::tr("Screenshot preview")}, frame);
    m_window->setContentView(std::make_unique<ImagePreviewView>(
        ImagePreviewView::Options{.image = image, .hitMargin = margin, .onClose = closeThis}, m_with.appearance,
        m_with.panels));
    // First, so that Escape means this window from the moment it is seen.
    m_escapeMonitor = std::make_unique<EscapeMonitor>(m_with.keys, closeThis);
    m_window->orderFrontRegardless();
}

void ImagePreviewWindowController::close()
{
    m_escapeMonitor.reset();
    if (m_window) {
        m_window->orderOut();
        m_window.reset();
    }
}

} // namespace lumenfold
