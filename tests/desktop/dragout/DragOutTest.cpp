/// Cards that are dragged onto other programs' windows.
#include "tests/desktop/dragout/DragOutFixture.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QUrl>

namespace lumenfold::test {
namespace {

TEST_P(DragOut, AnotherProgramGetsTheFile)
{
    Desktop &desktop = startWithCard();
    DropTarget target(desktop.server(), {.frame = pixels(QRect(700, 200, 300, 200))});
    dragTo(target, pixels(QRect(700, 200, 300, 200)).center());
    ASSERT_FALSE(target.offered().isEmpty());
    EXPECT_EQ(target.offered().first(), "text/uri-list");
    EXPECT_TRUE(target.offered().contains("image/png"));
    EXPECT_TRUE(target.waitFor([&] { return target.proposedAction() == "XdndActionCopy"; }));

    letGo();
    EXPECT_TRUE(target.waitFor([&] { return target.finishedDrops() == 1; }));
    ASSERT_EQ(target.received().size(), 1);
    const QByteArray addresses = target.received().first();
    EXPECT_TRUE(addresses.endsWith("\r\n"));
    const QString path = QUrl::fromEncoded(addresses.trimmed()).toLocalFile();
    EXPECT_TRUE(QFileInfo(path).fileName().startsWith(QStringLiteral("LumenFold Screenshot ")));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), m_png);
    // The card is where it was, and works.
    EXPECT_EQ(desktop.waitForPanels(1).first().frame, m_card);

    // The file goes with the program.
    desktop.quitProgram();
    EXPECT_FALSE(QFile::exists(path));
}

TEST_P(DragOut, ATargetThatAsksTwiceGetsTheSameTwice)
{
    Desktop &desktop = startWithCard();
    const QRect place = pixels(QRect(700, 200, 300, 200));
    DropTarget target(desktop.server(),
                      {.frame = place, .asksFor = {"text/uri-list", "image/png", "text/uri-list", "image/png"}});
    dragTo(target, place.center());
    letGo();
    EXPECT_TRUE(target.waitFor([&] { return target.finishedDrops() == 1; }));
    ASSERT_EQ(target.received().size(), 4);
    EXPECT_EQ(target.received()[0], target.received()[2]);
    EXPECT_EQ(target.received()[1], m_png);
    EXPECT_EQ(target.received()[3], m_png);

    // The same file the next time.
    const QByteArray first = target.received().first();
    dragTo(target, place.center());
    letGo();
    EXPECT_TRUE(target.waitFor([&] { return target.finishedDrops() == 2; }));
    EXPECT_EQ(target.received()[4], first);
}

TEST_P(DragOut, ATargetThatNeverAnswersHoldsNobodyUp)
{
    Desktop &desktop = startWithCard();
    const QRect place = pixels(QRect(700, 200, 300, 200));
    DropTarget silent(desktop.server(), {.frame = place, .manner = DropManner::neverAnswers});
    dragTo(silent, place.center(), DropManner::neverAnswers);
    letGo();

    // The program goes on: a capture, and another drag to somebody who answers.
    desktop.press("Super+Alt+1");
    desktop.waitForClipboard();
    desktop.waitForPanels(2);
    const QRect other = pixels(QRect(700, 500, 300, 200));
    DropTarget target(desktop.server(), {.frame = other});
    dragTo(target, other.center());
    letGo();
    EXPECT_TRUE(target.waitFor([&] { return target.finishedDrops() == 1; }));
}

TEST_P(DragOut, WhatIsRefusedIsNotDropped)
{
    Desktop &desktop = startWithCard();
    const QRect place = pixels(QRect(700, 200, 300, 200));
    DropTarget target(desktop.server(), {.frame = place, .manner = DropManner::refuses});
    dragTo(target, place.center());
    letGo();
    EXPECT_TRUE(target.waitFor([&] { return !target.isEntered(); }));
    EXPECT_EQ(target.drops(), 0);
    EXPECT_TRUE(desktop.isProgramRunning());
}

TEST_P(DragOut, TheProgramGoesOnWhileSomethingIsDragged)
{
    Desktop &desktop = startWithCard();
    const QRect place = pixels(QRect(700, 200, 300, 200));
    DropTarget target(desktop.server(), {.frame = place});
    dragTo(target, place.center());

    // A capture takes the card off the screen, and with it the drag.
    desktop.press("Super+Alt+1");
    desktop.waitForClipboard();
    EXPECT_TRUE(target.waitFor([&] { return !target.isEntered(); }));
    letGo();
    desktop.waitForPanels(2);
    EXPECT_EQ(target.drops(), 0);

    dragTo(target, place.center());
    letGo();
    EXPECT_TRUE(target.waitFor([&] { return target.finishedDrops() == 1; }));
}

TEST_P(DragOut, AClickIsNoDrag)
{
    Desktop &desktop = startWithCard();
    DropTarget target(desktop.server(), {.frame = pixels(QRect(700, 200, 300, 200))});
    desktop.pointer().click(m_card.topLeft() + QPoint(pixels(CardColumn::hitMargin + 6), pixels(70)));
    desktop.pointer().moveTo(pixels(QRect(700, 200, 300, 200)).center());
    EXPECT_FALSE(target.isEntered());
    EXPECT_TRUE(staysTrue([&] { return !target.waitFor([] { return true; }) || !target.isEntered(); },
                          std::chrono::milliseconds(200)));
}

INSTANTIATE_TEST_SUITE_P(On, DragOut, plainAndScaled(), DesktopSetting::nameOf);

class LargeDragOut : public DragOut {};

TEST_P(LargeDragOut, APictureTooLargeForOnePieceIsGivenAsAFile)
{
    // Noise, which nothing makes smaller.
    QImage noise(cardFriendlyScreen * GetParam().scale, QImage::Format_RGB32);
    QRandomGenerator random(1);
    random.fillRange(reinterpret_cast<quint32 *>(noise.bits()), noise.sizeInBytes() / 4);
    Desktop &desktop = startWithCard(noise);
    // The server takes 16 MB at once, and the toolkit hands dropped data over in one piece.
    ASSERT_GT(m_png.size(), 17'000'000);
    const QRect place = pixels(QRect(700, 200, 300, 200));
    DropTarget target(desktop.server(), {.frame = place, .asksFor = {"image/png", "text/uri-list"}});
    dragTo(target, place.center());
    EXPECT_FALSE(target.offered().contains("image/png"));
    letGo();
    EXPECT_TRUE(target.waitFor([&] { return target.finishedDrops() == 1; }));
    ASSERT_EQ(target.received().size(), 2);
    EXPECT_TRUE(target.received().first().isEmpty());
    QFile file(QUrl::fromEncoded(target.received().last().trimmed()).toLocalFile());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), m_png);
    EXPECT_TRUE(desktop.isProgramRunning());
}

INSTANTIATE_TEST_SUITE_P(On, LargeDragOut,
                         ::testing::Values(DesktopSetting{"FourThousandPixels", WindowManagerKind::openbox,
                                                          CompositorKind::none, 3}),
                         DesktopSetting::nameOf);

} // namespace
} // namespace lumenfold::test
