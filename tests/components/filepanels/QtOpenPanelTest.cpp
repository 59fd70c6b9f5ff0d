#include "platform/filepanels/QtOpenPanel.h"

#include "tests/support/desktop/GuiTest.h"
#include "tests/support/desktop/Wait.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace lumenfold::test {
namespace {

class QtOpenPanelTest : public ::testing::Test {
protected:
    QtOpenPanelTest()
    {
        QDir(folder.path()).mkdir(QStringLiteral("inner"));
        window->setPalette(QPalette(Qt::darkGray, Qt::black));
        window->show();
    }

    void ask()
    {
        choose();
        ASSERT_TRUE(waitFor([] { return hasKeyboard(panel()); }));
    }
    QCoro::Task<> choose()
    {
        OpenPanel::Request request;
        request.title = QStringLiteral("Save Location");
        request.prompt = QStringLiteral("Choose");
        request.directory = folder.path();
        request.window = window.get();
        const std::optional<QString> chosen = co_await openPanel.chooseDirectory(request);
        outcome = chosen;
    }

    [[nodiscard]] static QFileDialog *panel()
    {
        const QWidgetList all = QApplication::topLevelWidgets();
        for (QWidget *each : all) {
            if (auto *dialog = qobject_cast<QFileDialog *>(each); dialog != nullptr && dialog->isVisible()) {
                return dialog;
            }
        }
        return nullptr;
    }

    QTemporaryDir folder;
    std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
    QtOpenPanel openPanel;
    std::optional<std::optional<QString>> outcome;
};

TEST_F(QtOpenPanelTest, ShowsFoldersInTheColorsOfTheWindow)
{
    ask();
    EXPECT_EQ(panel()->windowTitle(), u"Save Location");
    EXPECT_EQ(panel()->fileMode(), QFileDialog::Directory);
    EXPECT_TRUE(panel()->testOption(QFileDialog::ShowDirsOnly));
    EXPECT_EQ(panel()->labelText(QFileDialog::Accept), u"Choose");
    EXPECT_EQ(panel()->directory(), QDir(folder.path()));
    EXPECT_EQ(panel()->palette().color(QPalette::Window), QColor(Qt::black));
    panel()->reject();
    EXPECT_TRUE(waitFor([this] { return outcome.has_value(); }));
    EXPECT_EQ(*outcome, std::nullopt);
    EXPECT_TRUE(waitFor([] { return panel() == nullptr; }));
}

TEST_F(QtOpenPanelTest, ItsAnswerIsTheChosenFolder)
{
    ask();
    panel()->findChild<QLineEdit *>()->setText(QStringLiteral("inner"));
    const auto *buttons = panel()->findChild<QDialogButtonBox *>();
    QPushButton *choose = buttons->button(QDialogButtonBox::Open);
    ASSERT_NE(choose, nullptr);
    EXPECT_EQ(choose->text(), u"Choose");
    ASSERT_TRUE(waitFor([choose] { return choose->isEnabled(); }));
    choose->click();
    ASSERT_TRUE(waitFor([this] { return outcome.has_value(); }));
    EXPECT_EQ(*outcome, folder.filePath(QStringLiteral("inner")));
}

} // namespace
} // namespace lumenfold::test
