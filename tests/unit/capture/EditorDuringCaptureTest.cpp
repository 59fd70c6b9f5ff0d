/// The editor window while a picture is taken.
#include "tests/support/unit/LogWatch.h"
#include "tests/unit/capture/CaptureCoordinatorFixture.h"

#include <gmock/gmock.h>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;

using EditorDuringCaptureTest = CaptureCoordinatorTest;

TEST_F(EditorDuringCaptureTest, AnOpenEditorIsHiddenAndShownAgain)
{
    FakeEditorWindow window(journal);
    editor = &window;
    coordinator->captureFullScreen();
    EXPECT_FALSE(window.isVisible);
    queue.advance(60ms);
    EXPECT_TRUE(window.isVisible);
    EXPECT_EQ(journal, (QStringList{QStringLiteral("hide editor"), QStringLiteral("content"), QStringLiteral("capture"),
                                    QStringLiteral("restore editor")}));
}

TEST_F(EditorDuringCaptureTest, AnOpenEditorIsShownAgainAfterAFailureAndAfterACancellation)
{
    FakeEditorWindow window(journal);
    editor = &window;
    failCapturesWith(QStringLiteral("X11"));
    expectLogLine(QStringLiteral("LumenFold capture error: captureFailed: it broke (X11, code 5)"));
    coordinator->captureFullScreen();
    queue.advance(60ms);
    EXPECT_TRUE(window.isVisible);

    coordinator->captureArea();
    EXPECT_FALSE(window.isVisible);
    pressEscape();
    queue.advance(50ms);
    EXPECT_TRUE(window.isVisible);
    EXPECT_EQ(journal.count(QStringLiteral("restore editor")), 2);
}

TEST_F(EditorDuringCaptureTest, AClosedEditorStaysClosed)
{
    FakeEditorWindow window(journal);
    window.isVisible = false;
    editor = &window;
    coordinator->captureFullScreen();
    queue.advance(60ms);
    EXPECT_FALSE(journal.contains(QStringLiteral("restore editor")));
}

TEST_F(EditorDuringCaptureTest, AnEditorThatGoesDuringACaptureIsNotAskedAgain)
{
    FakeEditorWindow window(journal);
    editor = &window;
    coordinator->captureFullScreen();
    editor = nullptr;
    queue.advance(60ms);
    EXPECT_FALSE(journal.contains(QStringLiteral("restore editor")));
    EXPECT_EQ(cardCount(), 1U);
}

} // namespace
} // namespace lumenfold::test
