#pragma once

#include "app/actions/ActionHandler.h"
#include "app/configuration/AppConfig.h"
#include "capture/CaptureCoordinator.h"
#include "cards/PreviewModel.h"
#include "editor/EditorWindow.h"
#include "tests/support/fakes/FakeAlerts.h"
#include "tests/support/fakes/FakeCardStore.h"
#include "tests/support/fakes/FakeCardViews.h"
#include "tests/support/fakes/FakeEventMonitors.h"
#include "tests/support/fakes/FakeFileManager.h"
#include "tests/support/fakes/FakeMainQueue.h"
#include "tests/support/fakes/FakePanel.h"
#include "tests/support/fakes/FakePasteboard.h"
#include "tests/support/fakes/FakeScreens.h"
#include "tests/support/fakes/FakeScreenshotManager.h"
#include "tests/support/fakes/FakeUserDefaults.h"
#include "tests/support/fakes/FakeWindowList.h"
#include "tests/support/fakes/FakeWorkspace.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

namespace lumenfold::test {

class FakeEditorWindow : public EditorWindow {
public:
    explicit FakeEditorWindow(QStringList &journal) : m_journal(journal) {}

    bool hideForCapture() override
    {
        m_journal.append(QStringLiteral("hide editor"));
        return std::exchange(isVisible, false);
    }
    void restoreAfterCapture() override
    {
        m_journal.append(QStringLiteral("restore editor"));
        isVisible = true;
    }

    bool isVisible = true;

private:
    QStringList &m_journal;
};

class BrokenPasteboard : public FakePasteboard {
public:
    void clearContents() override
    {
        if (isBroken) {
            throw std::runtime_error("the clipboard is broken");
        }
        FakePasteboard::clearContents();
    }
    bool isBroken = false;
};

/// The coordinator among fakes, with the real selection and the real column of cards.
class CaptureCoordinatorTest : public ::testing::Test {
protected:
    CaptureCoordinatorTest();
    ~CaptureCoordinatorTest() override;

    void makeCoordinator();

    [[nodiscard]] std::vector<FakePanel *> visible(PanelLevel level) const;
    [[nodiscard]] std::size_t visibleCards() const { return visible(PanelLevel::floating).size(); }
    [[nodiscard]] std::vector<FakePanel *> overlays() const { return visible(PanelLevel::screenSaver); }
    [[nodiscard]] std::size_t cardCount() const;

    /// Drags out an area on one of the overlays; points from that screen's bottom left.
    void select(Point from, Point to, std::size_t overlay = 0);
    void pressEscape();

    void failCapturesWith(const QString &domain);
    void denyPermission();

    QStringList journal;
    FakeScreens screens;
    FakeUserDefaults defaults;
    FakeFileManager files;
    AppConfig config{defaults, screens, files};
    FakeMainQueue queue;
    FakePanelFactory panels{queue};
    FakeEventMonitors monitors;
    FakeCardViews views;
    FakeCardStore store;
    FakeWindowList windows;
    FakeScreenshotManager manager;
    FakeAlerts alerts;
    FakeWorkspace workspace;
    BrokenPasteboard pasteboard;
    ActionHandler actions{pasteboard, config};
    EditorWindow *editor = nullptr;
    std::size_t visibleCardsAtRequest = 99;
    const Screen left = FakeScreens::plainScreen(1, {0, 0, 1440, 900});
    const Screen right = FakeScreens::plainScreen(2, {1440, 0, 1920, 1080});
    std::unique_ptr<CaptureCoordinator> coordinator;
};

} // namespace lumenfold::test
