#pragma once

#include "service/templates/GridColumns.h"

#include <QListView>
#include <QTimer>

namespace lumenfold {

class TemplateModel;
class TemplatePicker;
class TemplatePreviews;
struct PreviewKey;

/// The grid of templates. Only the cells in sight are painted and ask for pictures, however many there are.
class TemplateGrid : public QListView {
    Q_OBJECT

public:
    /// Both must outlive the grid.
    TemplateGrid(TemplatePicker &picker, TemplatePreviews &previews, QWidget *parent = nullptr);
    ~TemplateGrid() override;

    /// Without the gap around it.
    [[nodiscard]] QRect cellRect(const QModelIndex &index) const;
    /// The cell at that place of the viewport; the gaps between the cells belong to none.
    [[nodiscard]] QModelIndex indexAt(const QPoint &place) const override;
    [[nodiscard]] GridColumns columns() const;

    /// Half of the gap is around each cell.
    static constexpr int halfGap = GridColumns::spacing / 2;

protected:
    bool viewportEvent(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    class Delegate;

    void toggle(const QModelIndex &index);
    void layOutColumns();
    void restoreCurrent();
    void wantPictures();
    void repaintCellsOf(const PreviewKey &key);
    /// The rows in sight, and behind them the row of cells that comes next.
    [[nodiscard]] std::pair<int, int> rowsInSight() const;

    TemplatePicker &m_picker;
    TemplatePreviews &m_previews;
    TemplateModel *const m_model;
    /// The template on which the keyboard is; stays when the list changes.
    QString m_currentId;
    /// Whoever uses the pointer knows where it is.
    bool m_showsFocus = true;
    /// While one scrolls or resizes, pictures are asked for only now and then.
    QTimer m_pictureDelay;
};

} // namespace lumenfold
