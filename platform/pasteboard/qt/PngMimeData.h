#pragma once

#include "platform/image/Image.h"

#include <QByteArray>
#include <QMimeData>

#include <optional>

namespace lumenfold {

/// A picture as other programs may ask for it: as `image/png` and as nothing else. The toolkit's own picture data would
/// be advertised in every format that the toolkit can write, and each would be encoded anew for a clipboard manager
/// that asks for all of them.
class PngMimeData : public QMimeData {
    Q_OBJECT

public:
    explicit PngMimeData(std::optional<Image> image);

    /// These bytes are given instead of the image's own from now on.
    void setPng(QByteArray png);
    [[nodiscard]] bool hasPng() const { return m_png.has_value(); }

    [[nodiscard]] QStringList formats() const override;
    [[nodiscard]] bool hasFormat(const QString &format) const override;

protected:
    /// Waits for the image's encoding if that is still running. Empty when it fails.
    [[nodiscard]] QVariant retrieveData(const QString &format, QMetaType type) const override;

private:
    std::optional<Image> m_image;
    std::optional<QByteArray> m_png;
};

} // namespace lumenfold
