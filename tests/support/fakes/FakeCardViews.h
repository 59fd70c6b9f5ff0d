#pragma once

#include "cards/CardViewFactory.h"

#include <QWidget>

#include <memory>
#include <vector>

namespace lumenfold::test {

/// Makes no views and remembers for which cards it was asked, so that a test can report what their user does.
class FakeCardViews : public CardViewFactory {
public:
    [[nodiscard]] std::unique_ptr<QWidget> makeCardView(std::shared_ptr<PreviewModel> model) override;
    [[nodiscard]] std::unique_ptr<QWidget> makeCollapsePill(StackControlState &state) override;
    [[nodiscard]] std::unique_ptr<QWidget> makeClearAllPill(StackControlState &state) override;

    /// Whether there are pills, with nothing in them; needs widgets.
    bool offersPills = false;

    /// The models of the cards in the order in which they were made; null once a card is gone.
    [[nodiscard]] std::vector<std::shared_ptr<PreviewModel>> models() const;
    /// Of the newest card that is not gone.
    [[nodiscard]] std::shared_ptr<PreviewModel> last() const;
    [[nodiscard]] std::shared_ptr<PreviewModel> at(std::size_t index) const { return models().at(index); }

private:
    std::vector<std::weak_ptr<PreviewModel>> m_models;
};

} // namespace lumenfold::test
