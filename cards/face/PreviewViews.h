#pragma once

#include "cards/CardViewFactory.h"
#include "cards/face/PreviewView.h"

namespace lumenfold {

/// Makes the faces of the cards and the pills beside their column.
class PreviewViews : public CardViewFactory {
public:
    /// Everything must outlive the views.
    explicit PreviewViews(const PreviewView::Collaborators &collaborators);
    ~PreviewViews() override;

    [[nodiscard]] std::unique_ptr<QWidget> makeCardView(std::shared_ptr<PreviewModel> model) override;
    [[nodiscard]] std::unique_ptr<QWidget> makeCollapsePill(StackControlState &state) override;
    [[nodiscard]] std::unique_ptr<QWidget> makeClearAllPill(StackControlState &state) override;

private:
    const PreviewView::Collaborators m_with;
};

} // namespace lumenfold
