#include "cards/CardShadow.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace lumenfold::test {
namespace {

constexpr CardShadow kind{.cornerRadius = 14, .blurRadius = 18, .opacity = 0.4, .offset = {0, 10}};
constexpr QRect caster{60, 60, 200, 150};

using Paint = std::function<void(QPainter &, const QRectF &, const CardShadow &)>;

class CardShadowTest : public ::testing::TestWithParam<Paint> {
protected:
    CardShadowTest()
    {
        m_picture.fill(Qt::transparent);
        QPainter painter(&m_picture);
        GetParam()(painter, caster, kind);
    }

    /// 0 to 1.
    [[nodiscard]] double darkness(int x, int y) const { return m_picture.pixelColor(x, y).alphaF(); }

private:
    QImage m_picture{320, 280, QImage::Format_ARGB32_Premultiplied};
};

TEST_P(CardShadowTest, isAsDarkAsItIsToBeInTheMiddle)
{
    EXPECT_NEAR(darkness(160, 145), 0.4, 0.01);
}

TEST_P(CardShadowTest, isHalfAsDarkAtTheEdgesOfTheMovedShape)
{
    const auto betweenPixels = [this](int x, int y, int dx, int dy) {
        return (darkness(x, y) + darkness(x - dx, y - dy)) / 2;
    };
    EXPECT_NEAR(betweenPixels(60, 145, 1, 0), 0.2, 0.01);
    EXPECT_NEAR(betweenPixels(260, 145, 1, 0), 0.2, 0.01);
    EXPECT_NEAR(betweenPixels(160, 70, 0, 1), 0.2, 0.01);
    EXPECT_NEAR(betweenPixels(160, 220, 0, 1), 0.2, 0.01);
}

TEST_P(CardShadowTest, fadesLikeAGaussianOfHalfTheBlurRadius)
{
    for (int outside = -20; outside <= 20; ++outside) {
        const double expected = 0.4 * 0.5 * std::erfc((outside + 0.5) / 9 / std::sqrt(2));
        EXPECT_NEAR(darkness(160, 220 + outside), expected, 0.01) << outside;
    }
    EXPECT_EQ(darkness(160, 220 + 30), 0);
    EXPECT_EQ(darkness(60 - 30, 145), 0);
}

INSTANTIATE_TEST_SUITE_P(Of, CardShadowTest, ::testing::Values(Paint(paintShadow), Paint(paintSmallShadow)),
                         [](const auto &test) { return test.index == 0 ? "large" : "small"; });

} // namespace
} // namespace lumenfold::test
