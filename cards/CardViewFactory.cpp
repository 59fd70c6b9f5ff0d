#include "cards/CardViewFactory.h"

#include <QWidget>

namespace lumenfold {

std::unique_ptr<QWidget> CardViewFactory::makeCollapsePill(StackControlState &)
{
    return nullptr;
}

std::unique_ptr<QWidget> CardViewFactory::makeClearAllPill(StackControlState &)
{
    return nullptr;
}

} // namespace lumenfold
