#include "cards/face/PreviewViews.h"

#include "cards/face/StackControl.h"

#include <utility>

namespace lumenfold {

PreviewViews::PreviewViews(const PreviewView::Collaborators &collaborators) : m_with(collaborators) {}

PreviewViews::~PreviewViews() = default;

std::unique_ptr<QWidget> PreviewViews::makeCardView(std::shared_ptr<PreviewModel> model)
{
    return std::make_unique<PreviewView>(std::move(model), m_with);
}

std::unique_ptr<QWidget> PreviewViews::makeCollapsePill(StackControlState &state)
{
    return std::make_unique<StackControlButton>(state, m_with.appearance, m_with.panels);
}

std::unique_ptr<QWidget> PreviewViews::makeClearAllPill(StackControlState &state)
{
    return std::make_unique<ClearAllButton>(state, m_with.appearance, m_with.panels);
}

} // namespace lumenfold
