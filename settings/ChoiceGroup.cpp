#include "settings/ChoiceGroup.h"

#include <QButtonGroup>
#include <QLabel>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace lumenfold {
namespace {

constexpr int spacing = 4;
constexpr int indentation = 8;

} // namespace

ChoiceGroup::ChoiceGroup(const QString &title, const QList<Choice> &choices, QWidget *parent)
    : QWidget(parent), m_buttons(new QButtonGroup(this))
{
    setAccessibleName(title);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(spacing);
    auto *label = new QLabel(title, this);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    column->addWidget(label);
    auto *buttons = new QVBoxLayout;
    buttons->setContentsMargins(indentation, 0, 0, 0);
    buttons->setSpacing(spacing);
    for (const Choice &choice : choices) {
        auto *button = new QRadioButton(choice.label, this);
        m_buttons->addButton(button, choice.value);
        buttons->addWidget(button);
    }
    column->addLayout(buttons);
    connect(m_buttons, &QButtonGroup::idToggled, this, [this](int value, bool isOn) {
        if (isOn) {
            Q_EMIT chosen(value);
        }
    });
}

void ChoiceGroup::setValue(int value)
{
    const QSignalBlocker blocker(m_buttons);
    m_buttons->button(value)->setChecked(true);
}

} // namespace lumenfold
