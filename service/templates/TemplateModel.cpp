#include "service/templates/TemplateModel.h"

#include "service/templates/TemplatePicker.h"

namespace lumenfold {
namespace {

/// Longer names are of no use to anybody, and would take long to measure.
constexpr qsizetype maximumNameLength = 300;

QString shownName(const QString &name)
{
    return name.left(maximumNameLength).simplified();
}

} // namespace

TemplateModel::TemplateModel(const TemplatePicker &picker, QObject *parent)
    : QAbstractListModel(parent), m_picker(picker)
{
    // The picker has changed by then: views ask anew for everything.
    connect(&m_picker, &TemplatePicker::displayedChanged, this, [this] {
        beginResetModel();
        endResetModel();
    });
}

int TemplateModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_picker.displayedCount());
}

QVariant TemplateModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const LumenfoldTemplate &shown = m_picker.displayedAt(static_cast<std::size_t>(index.row()));
    switch (role) {
    case Qt::DisplayRole:
        return shownName(shown.name);
    case Qt::CheckStateRole:
        return m_picker.selectedId() == shown.id ? Qt::Checked : Qt::Unchecked;
    case Qt::AccessibleTextRole:
        return m_picker.selectedId() == shown.id ? tr("%1, default template").arg(shownName(shown.name))
                                                 : shownName(shown.name);
    default:
        return {};
    }
}

Qt::ItemFlags TemplateModel::flags(const QModelIndex &index) const
{
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren : Qt::NoItemFlags;
}

QString TemplateModel::idOf(const QModelIndex &index) const
{
    return index.isValid() ? m_picker.displayedAt(static_cast<std::size_t>(index.row())).id : QString();
}

QModelIndex TemplateModel::indexOf(const QString &id) const
{
    const auto row = m_picker.rowOf(id);
    return row ? index(static_cast<int>(*row)) : QModelIndex();
}

} // namespace lumenfold
