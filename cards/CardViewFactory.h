#pragma once

#include <memory>

class QWidget;

namespace lumenfold {

class PreviewModel;
class StackControlState;

/// Makes what is seen of the cards and of the pills beside their column.
class CardViewFactory {
public:
    CardViewFactory() = default;
    CardViewFactory(const CardViewFactory &) = delete;
    CardViewFactory &operator=(const CardViewFactory &) = delete;
    virtual ~CardViewFactory() = default;

    /// The view fills its panel, which is larger than the visible card by the variant's hit margin on every side. It
    /// shares the model and reports what the user does through the model's callbacks. May be null: nothing is seen.
    [[nodiscard]] virtual std::unique_ptr<QWidget> makeCardView(std::shared_ptr<PreviewModel> model) = 0;

    /// The pill that collapses and expands the column, and the one that clears it. Each view fills its panel, which is
    /// larger than the visible pill (44 x 24 and 132 x 26 points) by 12 points on every side, follows the state and
    /// reports presses through it; the state outlives the view. Null: there is no such pill.
    [[nodiscard]] virtual std::unique_ptr<QWidget> makeCollapsePill(StackControlState &state);
    [[nodiscard]] virtual std::unique_ptr<QWidget> makeClearAllPill(StackControlState &state);
};

} // namespace lumenfold
