#include "tests/support/fakes/FakeCardViews.h"

#include <algorithm>
#include <utility>

namespace lumenfold::test {

std::unique_ptr<QWidget> FakeCardViews::makeCardView(std::shared_ptr<PreviewModel> model)
{
    m_models.push_back(std::move(model));
    return nullptr;
}

std::unique_ptr<QWidget> FakeCardViews::makeCollapsePill(StackControlState &)
{
    return offersPills ? std::make_unique<QWidget>() : nullptr;
}

std::unique_ptr<QWidget> FakeCardViews::makeClearAllPill(StackControlState &)
{
    return offersPills ? std::make_unique<QWidget>() : nullptr;
}

std::vector<std::shared_ptr<PreviewModel>> FakeCardViews::models() const
{
    std::vector<std::shared_ptr<PreviewModel>> models;
    std::ranges::transform(m_models, std::back_inserter(models), [](const auto &model) { return model.lock(); });
    return models;
}

std::shared_ptr<PreviewModel> FakeCardViews::last() const
{
    const auto all = models();
    const auto found = std::find_if(all.rbegin(), all.rend(), [](const auto &model) { return model != nullptr; });
    return found == all.rend() ? nullptr : *found;
}

} // namespace lumenfold::test
