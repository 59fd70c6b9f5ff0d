#include "cards/face/StatusBadge.h"
#include "tests/unit/cardface/CardFaceFixture.h"

#include <algorithm>

namespace lumenfold::test {
namespace {

class StatusBadgeTest : public ::testing::Test {
protected:
    StatusBadgeTest()
    {
        parent.resize(220, 165);
        parent.show();
    }

    /// The strongest red of a letter on the capsule: how far its red is above its green.
    [[nodiscard]] int redness() const
    {
        const QImage seen = const_cast<StatusBadge &>(badge).grab().toImage();
        int most = 0;
        for (int x = 0; x < seen.width(); ++x) {
            const QColor color = seen.pixelColor(x, seen.height() / 2);
            most = std::max(most, color.red() - color.green());
        }
        return most;
    }

    QWidget parent;
    FakeAppearance appearance;
    std::vector<QUrl> opened;
    StatusBadge badge{[this](const QUrl &uploaded) { opened.push_back(uploaded); }, appearance, &parent};
};

TEST_F(StatusBadgeTest, isNotThereWhileNothingGoesOn)
{
    badge.setStatus(PreviewModel::Idle{});
    EXPECT_FALSE(badge.isVisible());
}

TEST_F(StatusBadgeTest, spinsOnlyWhileAnUploadGoesOnAndTheBadgeIsSeen)
{
    badge.setStatus(PreviewModel::Uploading{});
    EXPECT_EQ(badge.text(), QStringLiteral("Uploading…"));
    EXPECT_TRUE(badge.isSpinning());

    parent.hide();
    EXPECT_FALSE(badge.isSpinning());
    parent.show();
    EXPECT_TRUE(badge.isSpinning());

    badge.setStatus(PreviewModel::Uploaded{});
    EXPECT_FALSE(badge.isSpinning());
}

TEST_F(StatusBadgeTest, anUploadThatBeginsUnseenDoesNotSpin)
{
    parent.hide();
    badge.setStatus(PreviewModel::Uploading{});
    EXPECT_FALSE(badge.isSpinning());
}

TEST_F(StatusBadgeTest, anUploadedPictureWithAnAddressCanBeOpened)
{
    const QUrl address(QStringLiteral("https://files.example/picture.png"));
    badge.setStatus(PreviewModel::Uploaded{address});
    EXPECT_EQ(badge.text(), QStringLiteral("Done"));
    ASSERT_EQ(parent.childAt(badge.geometry().center()), buttonNamed(parent, QStringLiteral("Done")));

    click(parent, badge.geometry().center());
    EXPECT_EQ(opened, std::vector{address});
}

TEST_F(StatusBadgeTest, anyOtherStatusLetsPressesThrough)
{
    const PreviewModel::Status withoutAddress = PreviewModel::Uploaded{};
    const PreviewModel::Status failed = PreviewModel::Failed{QStringLiteral("Upload failed")};
    badge.setStatus(PreviewModel::Uploaded{QUrl(QStringLiteral("https://files.example/picture.png"))});
    for (const auto &status : {withoutAddress, failed, PreviewModel::Status(PreviewModel::Uploading{})}) {
        badge.setStatus(status);
        EXPECT_TRUE(badge.isVisible());
        EXPECT_EQ(parent.childAt(badge.geometry().center()), nullptr);
    }
}

TEST_F(StatusBadgeTest, aFailureIsWrittenInRed)
{
    badge.setStatus(PreviewModel::Uploaded{});
    EXPECT_LT(redness(), 20);

    badge.setStatus(PreviewModel::Failed{QStringLiteral("API key required")});
    EXPECT_EQ(badge.text(), QStringLiteral("API key required"));
    EXPECT_GT(redness(), 80);
    appearance.setColorScheme(ColorScheme::dark);
    EXPECT_GT(redness(), 80);
}

TEST_F(StatusBadgeTest, isNeverWiderThanTheCard)
{
    badge.setStatus(PreviewModel::Failed{QString(200, u'W')});
    EXPECT_EQ(badge.width(), parent.width());

    parent.resize(140, 105);
    badge.place();
    EXPECT_EQ(badge.width(), 140);
}

} // namespace
} // namespace lumenfold::test
