#include "service/templates/TemplateGrid.h"

#include "service/templates/PreviewKey.h"
#include "service/templates/TemplateCell.h"
#include "service/templates/TemplateModel.h"
#include "service/templates/TemplatePicker.h"
#include "service/templates/TemplatePreviews.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QToolTip>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace lumenfold {
namespace {

using namespace std::chrono_literals;

constexpr auto pictureDelay = 60ms;

QRect withoutGap(const QRect &item)
{
    constexpr int gap = TemplateGrid::halfGap;
    return item.adjusted(gap, gap, -gap, -gap);
}

/// Has its room also when there is nothing to scroll, so that the columns stay as wide as they are while one searches;
/// but then it is not seen.
class QuietScrollBar : public QScrollBar {
public:
    using QScrollBar::QScrollBar;

protected:
    void paintEvent(QPaintEvent *event) override
    {
        if (maximum() > minimum()) {
            QScrollBar::paintEvent(event);
        }
    }
};

} // namespace

class TemplateGrid::Delegate : public QStyledItemDelegate {
public:
    explicit Delegate(TemplateGrid &grid) : QStyledItemDelegate(&grid), m_grid(grid) {}

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        const auto key = previewKey(m_grid.m_picker.displayedAt(static_cast<std::size_t>(index.row())));
        const TemplateCell cell{
            .name = index.data().toString(),
            .picture = key ? m_grid.m_previews.picture(*key) : QImage(),
            .isSelected = index.data(Qt::CheckStateRole).value<Qt::CheckState>() == Qt::Checked,
            .isHovered = option.state.testFlag(QStyle::State_MouseOver),
            .hasFocus = m_grid.m_showsFocus && m_grid.hasFocus() && index == m_grid.currentIndex(),
        };
        cell.paint(*painter, withoutGap(option.rect), m_grid.font(), m_grid.palette());
    }

    QSize sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const override { return m_grid.gridSize(); }

    bool helpEvent(QHelpEvent *event, QAbstractItemView *, const QStyleOptionViewItem &,
                   const QModelIndex &index) override
    {
        const QString name = index.data().toString();
        const QRect cell = index.isValid() ? m_grid.cellRect(index) : QRect();
        if (TemplateCell::isCutOff(name, cell.width(), m_grid.font())) {
            // Escaped, because a tool tip takes what looks like mark-up for mark-up.
            QToolTip::showText(event->globalPos(), QStringLiteral("<p>%1</p>").arg(name.toHtmlEscaped()),
                               m_grid.viewport(), cell);
        } else {
            QToolTip::hideText();
        }
        return true;
    }

private:
    const TemplateGrid &m_grid;
};

TemplateGrid::TemplateGrid(TemplatePicker &picker, TemplatePreviews &previews, QWidget *parent)
    : QListView(parent), m_picker(picker), m_previews(previews), m_model(new TemplateModel(picker, this))
{
    setAccessibleName(tr("Templates"));
    setModel(m_model);
    setItemDelegate(new Delegate(*this));
    setFrameShape(QFrame::NoFrame);
    viewport()->setAutoFillBackground(false);
    setMouseTracking(true);
    setFlow(QListView::LeftToRight);
    setWrapping(true);
    setUniformItemSizes(true);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBar(new QuietScrollBar(this));
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);

    m_pictureDelay.setSingleShot(true);
    m_pictureDelay.setInterval(pictureDelay);
    connect(&m_pictureDelay, &QTimer::timeout, this, &TemplateGrid::wantPictures);
    connect(this, &QListView::clicked, this, &TemplateGrid::toggle);
    connect(m_model, &QAbstractItemModel::modelReset, this, &TemplateGrid::restoreCurrent);
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this, [this](const QModelIndex &current) {
        if (current.isValid()) {
            m_currentId = m_model->idOf(current);
        }
    });
    connect(&m_previews, &TemplatePreviews::arrived, this, &TemplateGrid::repaintCellsOf);
}

TemplateGrid::~TemplateGrid() = default;

QRect TemplateGrid::cellRect(const QModelIndex &index) const
{
    return withoutGap(visualRect(index));
}

QModelIndex TemplateGrid::indexAt(const QPoint &place) const
{
    const QModelIndex index = QListView::indexAt(place);
    return index.isValid() && cellRect(index).contains(place) ? index : QModelIndex();
}

GridColumns TemplateGrid::columns() const
{
    // The toolkit breaks a line that fills its room to the last point.
    return GridColumns::in(viewport()->width() - GridColumns::spacing - 1);
}

void TemplateGrid::layOutColumns()
{
    const int width = columns().width;
    setGridSize({width + GridColumns::spacing, TemplateCell::height(width, font()) + GridColumns::spacing});
    verticalScrollBar()->setSingleStep(gridSize().height() / 3);
    m_pictureDelay.start();
}

void TemplateGrid::resizeEvent(QResizeEvent *event)
{
    layOutColumns();
    QListView::resizeEvent(event);
    doItemsLayout();
}

void TemplateGrid::changeEvent(QEvent *event)
{
    QListView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        layOutColumns();
    }
}

void TemplateGrid::restoreCurrent()
{
    // The model knows no rows that moved: the keyboard stays on its template, or goes to the first one.
    QModelIndex current = m_model->indexOf(m_currentId);
    if (current.isValid()) {
        setCurrentIndex(current);
    } else {
        const QString id = m_currentId;
        selectionModel()->setCurrentIndex(m_model->index(0), QItemSelectionModel::NoUpdate);
        m_currentId = id;
        verticalScrollBar()->setValue(0);
    }
    m_pictureDelay.start();
}

void TemplateGrid::toggle(const QModelIndex &index)
{
    if (index.isValid()) {
        m_picker.toggle(m_model->idOf(index));
    }
}

void TemplateGrid::keyPressEvent(QKeyEvent *event)
{
    m_showsFocus = true;
    switch (event->key()) {
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Select:
        toggle(currentIndex());
        event->accept();
        return;
    default:
        QListView::keyPressEvent(event);
        viewport()->update();
    }
}

void TemplateGrid::mousePressEvent(QMouseEvent *event)
{
    m_showsFocus = false;
    QListView::mousePressEvent(event);
    viewport()->update();
}

void TemplateGrid::focusInEvent(QFocusEvent *event)
{
    m_showsFocus = event->reason() != Qt::MouseFocusReason;
    if (!currentIndex().isValid()) {
        setCurrentIndex(m_model->index(0));
    }
    QListView::focusInEvent(event);
}

bool TemplateGrid::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        // The gaps have none.
        auto *help = static_cast<QHelpEvent *>(event);
        if (!indexAt(help->pos()).isValid()) {
            QToolTip::hideText();
            return true;
        }
    }
    return QListView::viewportEvent(event);
}

void TemplateGrid::showEvent(QShowEvent *event)
{
    QListView::showEvent(event);
    m_pictureDelay.start(0);
}

void TemplateGrid::hideEvent(QHideEvent *event)
{
    QListView::hideEvent(event);
    m_pictureDelay.stop();
    m_previews.want({}, {});
}

void TemplateGrid::scrollContentsBy(int dx, int dy)
{
    QListView::scrollContentsBy(dx, dy);
    if (!m_pictureDelay.isActive()) {
        m_pictureDelay.start(pictureDelay);
    }
}

std::pair<int, int> TemplateGrid::rowsInSight() const
{
    const int height = std::max(1, gridSize().height());
    const int top = verticalScrollBar()->value();
    const int first = top / height * columns().count;
    const int last = ((top + viewport()->height() - 1) / height + 2) * columns().count;
    const int count = m_model->rowCount();
    return {std::min(first, count), std::min(last, count)};
}

void TemplateGrid::wantPictures()
{
    if (!isVisible()) {
        return;
    }
    std::vector<PreviewKey> keys;
    const auto [first, last] = rowsInSight();
    for (int row = first; row < last; ++row) {
        if (auto key = previewKey(m_picker.displayedAt(static_cast<std::size_t>(row)))) {
            keys.push_back(*std::move(key));
        }
    }
    const QSize box =
        TemplateCell::pictureBox(QRect(0, 0, columns().width, columns().width)).size() * devicePixelRatioF();
    m_previews.want(keys, {box.width(), box.height()});
}

void TemplateGrid::repaintCellsOf(const PreviewKey &key)
{
    const auto [first, last] = rowsInSight();
    for (int row = first; row < last; ++row) {
        if (previewKey(m_picker.displayedAt(static_cast<std::size_t>(row))) == key) {
            update(m_model->index(row));
        }
    }
}

} // namespace lumenfold
