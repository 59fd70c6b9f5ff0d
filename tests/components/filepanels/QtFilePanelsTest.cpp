#include "platform/filepanels/QtFilePanels.h"

#include "tests/support/desktop/GuiTest.h"
#include "tests/support/desktop/Wait.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

template <typename Dialog>
Dialog *shown()
{
    const QWidgetList all = QApplication::topLevelWidgets();
    for (QWidget *each : all) {
        if (auto *dialog = qobject_cast<Dialog *>(each); dialog != nullptr && dialog->isVisible()) {
            return dialog;
        }
    }
    return nullptr;
}

class QtFilePanelsTest : public ::testing::Test {
protected:
    QtFilePanelsTest()
    {
        for (const QString &name : {u"a.png"_s, u"b.png"_s}) {
            QFile file(folder.filePath(name));
            if (!file.open(QIODevice::WriteOnly)) {
                throw std::runtime_error("no file can be made");
            }
        }
        window->setPalette(QPalette(Qt::darkGray, Qt::black));
        window->show();
    }

    void save(const QString &name)
    {
        panels.save(*window, folder.filePath(name), [this](const std::optional<QString> &path) {
            ++answers;
            answer = path;
        });
        ASSERT_TRUE(waitFor([] { return hasKeyboard(shown<QFileDialog>()); }));
    }

    /// Writes the names and presses the button.
    static void accept(const QString &names, QDialogButtonBox::StandardButton kind)
    {
        auto *panel = shown<QFileDialog>();
        panel->findChild<QLineEdit *>()->setText(names);
        QPushButton *button = panel->findChild<QDialogButtonBox *>()->button(kind);
        ASSERT_TRUE(waitFor([button] { return button->isEnabled(); }));
        button->click();
    }

    /// Opens and waits; `act` is done once the panel is there.
    QStringList open(FilePanels::Count count, const std::function<void()> &act)
    {
        // The panel's own event loop turns meanwhile.
        QTimer looking;
        looking.callOnTimeout([&] {
            auto *panel = shown<QFileDialog>();
            if (hasKeyboard(panel)) {
                looking.stop();
                panel->setDirectory(folder.path());
                act();
            }
        });
        looking.start(10ms);
        return panels.open(*window, count);
    }

    QTemporaryDir folder;
    std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
    QtFilePanels panels;
    int answers = 0;
    std::optional<QString> answer;
};

TEST_F(QtFilePanelsTest, TheSavePanelOffersTheNameInTheColorsOfTheWindow)
{
    save(u"new.png"_s);
    auto *panel = shown<QFileDialog>();
    EXPECT_EQ(panel->acceptMode(), QFileDialog::AcceptSave);
    EXPECT_EQ(panel->directory(), QDir(folder.path()));
    EXPECT_EQ(panel->findChild<QLineEdit *>()->text(), u"new.png"_s);
    EXPECT_EQ(panel->palette().color(QPalette::Window), QColor(Qt::black));
    EXPECT_EQ(answers, 0);
    panel->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Save)->click();
    ASSERT_TRUE(waitFor([this] { return answers == 1; }));
    EXPECT_EQ(answer, folder.filePath(u"new.png"_s));
    EXPECT_TRUE(waitFor([] { return shown<QFileDialog>() == nullptr; }));
}

TEST_F(QtFilePanelsTest, AnotherNameMayBeWritten)
{
    save(u"new.png"_s);
    accept(u"other.png"_s, QDialogButtonBox::Save);
    ASSERT_TRUE(waitFor([this] { return answers == 1; }));
    EXPECT_EQ(answer, folder.filePath(u"other.png"_s));
}

TEST_F(QtFilePanelsTest, WhoSavesUnderANameThatThereIsHasBeenAsked)
{
    save(u"a.png"_s);
    // The question waits in an event loop of its own.
    bool wasAsked = false;
    QTimer looking;
    looking.callOnTimeout([&] {
        if (auto *question = shown<QMessageBox>()) {
            wasAsked = true;
            looking.stop();
            question->button(QMessageBox::Yes)->click();
        }
    });
    looking.start(10ms);
    shown<QFileDialog>()->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Save)->click();
    ASSERT_TRUE(waitFor([this] { return answers == 1; }));
    EXPECT_TRUE(wasAsked);
    EXPECT_EQ(answer, folder.filePath(u"a.png"_s));
}

TEST_F(QtFilePanelsTest, WhoDoesNotWantToSaveSaysNothing)
{
    save(u"new.png"_s);
    shown<QFileDialog>()->reject();
    ASSERT_TRUE(waitFor([this] { return answers == 1; }));
    EXPECT_EQ(answer, std::nullopt);
}

TEST_F(QtFilePanelsTest, NobodyIsToldWhenTheWindowGoesFirst)
{
    save(u"new.png"_s);
    window.reset();
    EXPECT_EQ(shown<QFileDialog>(), nullptr);
    EXPECT_EQ(answers, 0);
}

TEST_F(QtFilePanelsTest, OneFileIsOpened)
{
    const QStringList chosen = open(FilePanels::Count::one, [] { accept(u"a.png"_s, QDialogButtonBox::Open); });
    EXPECT_EQ(chosen, QStringList{folder.filePath(u"a.png"_s)});
    EXPECT_EQ(shown<QFileDialog>(), nullptr);
}

TEST_F(QtFilePanelsTest, SeveralFilesAreOpened)
{
    QFileDialog::FileMode mode{};
    const QStringList chosen = open(FilePanels::Count::several, [&] {
        mode = shown<QFileDialog>()->fileMode();
        accept(u"\"a.png\" \"b.png\""_s, QDialogButtonBox::Open);
    });
    EXPECT_EQ(mode, QFileDialog::ExistingFiles);
    EXPECT_EQ(chosen, (QStringList{folder.filePath(u"a.png"_s), folder.filePath(u"b.png"_s)}));
}

TEST_F(QtFilePanelsTest, WhoDoesNotWantToOpenGetsNothing)
{
    EXPECT_TRUE(open(FilePanels::Count::one, [] { shown<QFileDialog>()->reject(); }).isEmpty());
    EXPECT_EQ(shown<QFileDialog>(), nullptr);
    // And is asked again the next time.
    EXPECT_EQ(open(FilePanels::Count::one, [] { accept(u"b.png"_s, QDialogButtonBox::Open); }),
              QStringList{folder.filePath(u"b.png"_s)});
}

TEST_F(QtFilePanelsTest, TheOpenPanelIsClosedByWhoWaitsForIt)
{
    panels.cancelOpen();
    EXPECT_TRUE(open(FilePanels::Count::one, [this] { panels.cancelOpen(); }).isEmpty());
    EXPECT_EQ(shown<QFileDialog>(), nullptr);
}

TEST_F(QtFilePanelsTest, ThereIsOneOpenPanelAtATime)
{
    std::optional<QStringList> second;
    const QStringList first = open(FilePanels::Count::one, [&] {
        second = panels.open(*window, FilePanels::Count::one);
        accept(u"a.png"_s, QDialogButtonBox::Open);
    });
    EXPECT_EQ(second, QStringList());
    EXPECT_EQ(first, QStringList{folder.filePath(u"a.png"_s)});
}

TEST_F(QtFilePanelsTest, TheOpenPanelGoesWithItsWindow)
{
    EXPECT_TRUE(open(FilePanels::Count::one, [this] { window.reset(); }).isEmpty());
    EXPECT_EQ(shown<QFileDialog>(), nullptr);
}

} // namespace
} // namespace lumenfold::test
