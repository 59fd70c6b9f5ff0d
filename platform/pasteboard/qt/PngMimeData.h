#pragma once

#include <QByteArray>
#include <QMimeData>

namespace lumenfold {

/// A picture as other programs may ask for it: as `image/png` and as nothing else. The toolkit's own picture data would
/// be advertised in every format that the toolkit can write, and each would be encoded anew for a clipboard manager
/// that asks for all of them.
class PngMimeData : public QMimeData {
    Q_OBJECT

public:
    explicit PngMimeData(QByteArray png);

    /// These bytes are given instead from now on.
    void setPng(QByteArray png);

    [[nodiscard]] QStringList formats() const override;
    [[nodiscard]] bool hasFormat(const QString &format) const override;

protected:
    [[nodiscard]] QVariant retrieveData(const QString &format, QMetaType type) const override;

private:
    QByteArray m_png;
};

} // namespace lumenfold
