#pragma once

#include <QByteArray>
#include <QMimeData>
#include <QString>

namespace lumenfold {

/// A picture in a file as other programs may ask for it: its address, and its bytes. The address comes first, because
/// most programs take the first that they know.
class DraggedFile : public QMimeData {
    Q_OBJECT

public:
    DraggedFile(const QString &path, QByteArray png);

    [[nodiscard]] QStringList formats() const override;
    [[nodiscard]] bool hasFormat(const QString &format) const override;

protected:
    [[nodiscard]] QVariant retrieveData(const QString &format, QMetaType type) const override;

private:
    const QByteArray m_addresses;
    const QByteArray m_png;
};

} // namespace lumenfold
