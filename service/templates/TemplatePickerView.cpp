#include "service/templates/TemplatePickerView.h"

#include "app/theme/WindowTheme.h"
#include "service/templates/MessageText.h"
#include "service/templates/TemplateGrid.h"
#include "service/templates/TemplatePreviews.h"
#include "service/templates/TemplateSearchField.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace lumenfold {
namespace {

constexpr int margin = 20;
constexpr int blockSpacing = 12;
constexpr int titleSpacing = 2;
constexpr int messageSpacing = 14;

QLabel *makeText(QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

} // namespace

TemplatePickerView::TemplatePickerView(const Collaborators &collaborators, QWidget *parent)
    : QWidget(parent)
    , m_picker(new TemplatePicker(collaborators.picker))
    , m_previews(new TemplatePreviews(collaborators.downloads, collaborators.cache))
{
    // Children go in their order, and the grid needs both to its end.
    m_picker->setParent(this);
    m_previews->setParent(this);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, margin, 0, 0);
    layout->setSpacing(blockSpacing);
    layout->addWidget(makeHeader());

    m_search = new TemplateSearchField(this);
    auto *searchRow = new QHBoxLayout;
    searchRow->setContentsMargins(margin, 0, margin, 0);
    searchRow->addWidget(m_search);
    layout->addLayout(searchRow);

    m_pages = new QStackedWidget(this);
    m_grid = new TemplateGrid(*m_picker, *m_previews, m_pages);
    m_pages->addWidget(makeMessage());
    auto *gridPage = new QWidget(m_pages);
    auto *gridLayout = new QHBoxLayout(gridPage);
    gridLayout->setContentsMargins(margin - TemplateGrid::halfGap, 0, 0, 0);
    gridLayout->addWidget(m_grid);
    m_pages->addWidget(gridPage);
    layout->addWidget(m_pages, 1);

    connect(m_search, &QLineEdit::textChanged, m_picker, &TemplatePicker::setSearchText);
    connect(m_clear, &QPushButton::clicked, m_picker, &TemplatePicker::clear);
    connect(m_action, &QPushButton::clicked, this, &TemplatePickerView::act);
    connect(m_picker, &TemplatePicker::changed, this, &TemplatePickerView::showState);
    connect(m_picker, &TemplatePicker::reloading, m_previews, &TemplatePreviews::forgetFailures);
    auto *find = new QShortcut(QKeySequence::Find, this);
    find->setContext(Qt::WidgetWithChildrenShortcut);
    connect(find, &QShortcut::activated, this, &TemplatePickerView::startSearch);
    colorTexts();
    showState();
}

TemplatePickerView::~TemplatePickerView()
{
    // Before what it shows.
    delete m_grid;
}

QWidget *TemplatePickerView::makeHeader()
{
    auto *header = new QWidget(this);
    auto *row = new QHBoxLayout(header);
    row->setContentsMargins(margin, 0, margin, 0);
    row->setSpacing(blockSpacing);
    auto *texts = new QVBoxLayout;
    texts->setSpacing(titleSpacing);
    m_title = makeText(header);
    QFont font = m_title->font();
    font.setBold(true);
    m_title->setFont(font);
    m_title->setText(tr("Default template"));
    m_subtitle = makeText(header);
    texts->addWidget(m_title);
    texts->addWidget(m_subtitle);
    row->addLayout(texts, 1);
    m_clear = new QPushButton(tr("Clear"), header);
    m_clear->setAccessibleDescription(tr("Open screenshots with no template"));
    // The header is as high without it.
    QSizePolicy policy = m_clear->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_clear->setSizePolicy(policy);
    row->addWidget(m_clear, 0, Qt::AlignVCenter);
    return header;
}

QWidget *TemplatePickerView::makeMessage()
{
    auto *page = new QWidget(m_pages);
    auto *column = new QVBoxLayout(page);
    column->setContentsMargins(margin, 0, margin, margin);
    column->setSpacing(messageSpacing);
    m_message = new MessageText(page);
    m_action = new QPushButton(page);
    column->addStretch(1);
    column->addWidget(m_message);
    column->addWidget(m_action, 0, Qt::AlignHCenter);
    column->addStretch(1);
    return page;
}

void TemplatePickerView::showState()
{
    using Content = TemplatePicker::Content;
    const Content content = m_picker->content();
    m_subtitle->setText(m_picker->subtitle());
    m_clear->setVisible(m_picker->selectedId().has_value());
    m_search->setEnabled(content != Content::notConnected);
    m_message->setMessage(m_picker->message());
    switch (content) {
    case Content::notConnected:
        m_action->setText(tr("Connect with API Key…"));
        break;
    case Content::error:
        m_action->setText(tr("Retry"));
        break;
    case Content::loading:
    case Content::noTemplates:
    case Content::noMatch:
    case Content::grid:
        break;
    }
    widenButton(*m_action);
    m_action->setVisible(content == Content::notConnected || content == Content::error);
    m_pages->setCurrentIndex(content == Content::grid ? 1 : 0);
}

void TemplatePickerView::act()
{
    if (m_picker->content() == TemplatePicker::Content::notConnected) {
        m_picker->connectAccount();
    } else {
        m_picker->load();
    }
}

void TemplatePickerView::startSearch()
{
    m_search->setFocus(Qt::ShortcutFocusReason);
    m_search->selectAll();
}

void TemplatePickerView::colorTexts()
{
    QPalette secondary = palette();
    secondary.setColor(QPalette::WindowText, secondaryText(palette()));
    m_subtitle->setPalette(secondary);
    m_message->setPalette(secondary);
}

void TemplatePickerView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!event->spontaneous()) {
        m_picker->setShown(true);
    }
}

void TemplatePickerView::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    if (!event->spontaneous()) {
        m_picker->setShown(false);
    }
}

void TemplatePickerView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_message != nullptr) {
        colorTexts();
    }
}

void TemplatePickerView::keyPressEvent(QKeyEvent *event)
{
    // What the field and the grid have no use for.
    if (event->key() == Qt::Key_Escape && !m_search->text().isEmpty()) {
        m_search->clear();
        return;
    }
    if (event->key() == Qt::Key_Down && m_search->hasFocus() && m_grid->isVisible()) {
        m_grid->setFocus(Qt::TabFocusReason);
        return;
    }
    QWidget::keyPressEvent(event);
}

} // namespace lumenfold
