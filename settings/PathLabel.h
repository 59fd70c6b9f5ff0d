#pragma once

#include "app/theme/SecondaryLabel.h"

namespace lumenfold {

/// A path in one line. What there is no room for is left out of its middle; the tooltip and assistive technologies have
/// all of it.
class PathLabel : public SecondaryLabel {
    Q_OBJECT

public:
    explicit PathLabel(QWidget *parent = nullptr);

    void setPath(const QString &path);

    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace lumenfold
