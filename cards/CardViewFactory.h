#pragma once

#include <memory>

class QWidget;

namespace lumenfold {

class PreviewModel;

/// Makes what is seen of a card.
class CardViewFactory {
public:
    CardViewFactory() = default;
    CardViewFactory(const CardViewFactory &) = delete;
    CardViewFactory &operator=(const CardViewFactory &) = delete;
    virtual ~CardViewFactory() = default;

    /// The view fills its panel, which is larger than the visible card by the variant's hit margin on every side. It
    /// shares the model and reports what the user does through the model's callbacks. May be null: nothing is seen.
    [[nodiscard]] virtual std::unique_ptr<QWidget> makeCardView(std::shared_ptr<PreviewModel> model) = 0;
};

} // namespace lumenfold
