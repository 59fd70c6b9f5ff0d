#pragma once

#include <QAccessible>
#include <QAccessibleWidget>

namespace lumenfold {

/// A part of a face to assistive technologies, and within it those of its children that are there: the toolkit would
/// list hidden ones too, buttons that do nothing among them.
class AccessiblePart : public QAccessibleWidget {
public:
    AccessiblePart(QWidget *part, QAccessible::Role role);

    [[nodiscard]] int childCount() const override;
    [[nodiscard]] QAccessibleInterface *child(int index) const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *child) const override;

protected:
    ~AccessiblePart() override;

private:
    [[nodiscard]] QWidgetList children() const;
};

/// From now on views of this class are such parts to assistive technologies. To be called once.
template <typename View, QAccessible::Role role>
bool presentToAssistiveTechnologies()
{
    QAccessible::installFactory([](const QString &, QObject *object) -> QAccessibleInterface * {
        auto *view = qobject_cast<View *>(object);
        return view != nullptr ? new AccessiblePart(view, role) : nullptr;
    });
    return true;
}

} // namespace lumenfold
