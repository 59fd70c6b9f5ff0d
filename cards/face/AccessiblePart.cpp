#include "cards/face/AccessiblePart.h"

#include <QWidget>

namespace lumenfold {

AccessiblePart::AccessiblePart(QWidget *part, QAccessible::Role role) : QAccessibleWidget(part, role) {}

AccessiblePart::~AccessiblePart() = default;

QWidgetList AccessiblePart::children() const
{
    auto children = widget()->findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
    children.removeIf([](const QWidget *child) { return child->isHidden() || child->isWindow(); });
    return children;
}

int AccessiblePart::childCount() const
{
    return static_cast<int>(children().size());
}

QAccessibleInterface *AccessiblePart::child(int index) const
{
    return QAccessible::queryAccessibleInterface(children().value(index));
}

int AccessiblePart::indexOfChild(const QAccessibleInterface *child) const
{
    return child == nullptr ? -1 : static_cast<int>(children().indexOf(child->object()));
}

} // namespace lumenfold
