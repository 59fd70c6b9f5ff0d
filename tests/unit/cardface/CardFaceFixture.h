#pragma once

#include "app/actions/ActionHandler.h"
#include "app/configuration/AppConfig.h"
#include "cards/DragFolder.h"
#include "cards/PreviewModel.h"
#include "cards/face/PreviewView.h"
#include "tests/support/fakes/FakeAppearance.h"
#include "tests/support/fakes/FakeDragSessions.h"
#include "tests/support/fakes/FakeEventMonitors.h"
#include "tests/support/fakes/FakeFileManager.h"
#include "tests/support/fakes/FakeMainQueue.h"
#include "tests/support/fakes/FakePanel.h"
#include "tests/support/fakes/FakePasteboard.h"
#include "tests/support/fakes/FakeScreens.h"
#include "tests/support/fakes/FakeService.h"
#include "tests/support/fakes/FakeUserDefaults.h"
#include "tests/support/fakes/FakeWorkspace.h"

#include <QAbstractButton>

#include <gtest/gtest.h>

#include <memory>

namespace lumenfold::test {

/// An opaque picture.
[[nodiscard]] Image picture(QSize size = {40, 30}, const QColor &color = Qt::darkCyan);

/// What the toolkit would send for a pointer over that place of a view and its parts.
void enter(QWidget &view);
void leave(QWidget &view);
void click(QWidget &view, QPoint place);
void doubleClick(QWidget &view, QPoint place);

/// The button with that accessible name, among all of the view's parts; null when there is none.
[[nodiscard]] QAbstractButton *buttonNamed(const QWidget &view, const QString &name);

/// The face of a card among fakes.
class CardFaceTest : public ::testing::Test {
protected:
    CardFaceTest();
    ~CardFaceTest() override;

    /// Makes the card and its view, 200 x 150 points without the margin, and shows it.
    void makeCard(PreviewCardVariant variant = PreviewCardVariant::stack, const Image &shown = picture());

    [[nodiscard]] CardActions::Collaborators actionCollaborators();
    [[nodiscard]] QWidget &image() const;
    /// Seen by somebody who looks at the card.
    [[nodiscard]] bool isSeen(const QString &buttonName) const;

    FakeScreens screens;
    FakeUserDefaults defaults;
    FakeFileManager files;
    AppConfig config{defaults, screens, files};
    FakePasteboard pasteboard;
    ActionHandler actions{pasteboard, config};
    FakeMainQueue queue;
    FakeWorkspace workspace;
    FakeLumenfoldService service;
    FakeApiKeySetupWindow apiKeySetup;
    FakeTemplateSelection templates;
    FakePanelFactory panels{queue};
    FakeAppearance appearance;
    FakeEventMonitors monitors;
    FakeDragSessions drags;
    DragFolder dragFolder;
    std::shared_ptr<PreviewModel> model;
    std::unique_ptr<PreviewView> view;

    /// What the card reported, in order.
    QStringList reported;
};

} // namespace lumenfold::test
