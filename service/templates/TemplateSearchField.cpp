#include "service/templates/TemplateSearchField.h"

#include "app/theme/Symbol.h"
#include "app/theme/WindowTheme.h"

#include <QAction>
#include <QEvent>

namespace lumenfold {
namespace {

constexpr int symbolSide = 16;
/// Nobody's template has a longer name.
constexpr int maximumSearchLength = 1000;

} // namespace

TemplateSearchField::TemplateSearchField(QWidget *parent)
    : QLineEdit(parent), m_symbol(new QAction(this)), m_clear(new QAction(tr("Clear search"), this))
{
    const QString placeholder = tr("Search templates by name");
    setPlaceholderText(placeholder);
    setAccessibleName(placeholder);
    setMaxLength(maximumSearchLength);
    addAction(m_symbol, QLineEdit::LeadingPosition);
    addAction(m_clear, QLineEdit::TrailingPosition);
    m_symbol->setEnabled(false);
    m_clear->setVisible(false);
    connect(m_clear, &QAction::triggered, this, &QLineEdit::clear);
    connect(this, &QLineEdit::textChanged, this, [this](const QString &text) { m_clear->setVisible(!text.isEmpty()); });
    drawSymbols();
}

void TemplateSearchField::changeEvent(QEvent *event)
{
    QLineEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        drawSymbols();
    }
}

void TemplateSearchField::drawSymbols()
{
    const QColor color = secondaryText(palette());
    QIcon symbol = symbolIcon(Symbol::magnifyingGlass, symbolSide, color);
    // It only shows what the field is for, and is not fainter for being no button.
    for (const QSize &size : symbol.availableSizes()) {
        symbol.addPixmap(symbol.pixmap(size), QIcon::Disabled);
    }
    m_symbol->setIcon(symbol);
    m_clear->setIcon(symbolIcon(Symbol::xmarkCircleFill, symbolSide, color));
}

} // namespace lumenfold
