#pragma once

#include <QAbstractListModel>
#include <QString>

namespace lumenfold {

class TemplatePicker;

/// What the picker displays, for the toolkit's list views and for assistive technologies.
class TemplateModel : public QAbstractListModel {
    Q_OBJECT

public:
    /// `picker` must outlive the model.
    explicit TemplateModel(const TemplatePicker &picker, QObject *parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    /// Besides names, whether a template is the default one (Qt::CheckStateRole).
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;

    /// Of the template in that row.
    [[nodiscard]] QString idOf(const QModelIndex &index) const;
    /// Invalid when it is not displayed.
    [[nodiscard]] QModelIndex indexOf(const QString &id) const;

private:
    const TemplatePicker &m_picker;
};

} // namespace lumenfold
