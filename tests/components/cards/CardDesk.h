#pragma once

#include "app/actions/ActionHandler.h"
#include "app/configuration/AppConfig.h"
#include "cards/PreviewWindowController.h"
#include "cards/face/PreviewViews.h"
#include "platform/mainqueue/QtMainQueue.h"
#include "platform/panels/X11PanelFactory.h"
#include "platform/screens/X11Screens.h"
#include "platform/x11/X11Connection.h"

#include "tests/support/desktop/GuiTest.h"
#include "tests/support/fakes/FakeAppearance.h"
#include "tests/support/fakes/FakeEventMonitors.h"
#include "tests/support/fakes/FakeFileManager.h"
#include "tests/support/fakes/FakeKeyEventTap.h"
#include "tests/support/fakes/FakePasteboard.h"
#include "tests/support/fakes/FakeUserDefaults.h"
#include "tests/support/fakes/FakeWorkspace.h"

#include <QImage>

#include <memory>

namespace lumenfold::test {

/// The card controller with real panels and views on the test's X server, with the compositor that a test asks for.
class CardDesk {
public:
    CardDesk();
    ~CardDesk();

    void startCompositor(CompositorKind kind);

    [[nodiscard]] PreviewWindowController &controller() { return *m_controller; }
    [[nodiscard]] const AppConfig &config() const { return m_config; }
    [[nodiscard]] XServer &server() const { return guiTestServer(); }
    [[nodiscard]] int scale() const;

    /// The visible card inside the panel of this frame, in root pixels.
    [[nodiscard]] QRect pixelsOfCard(const Rect &panelFrame) const;
    /// The screen as another program sees it.
    [[nodiscard]] QImage screen() const;
    /// Until the panels have arrived and the screen has stopped changing.
    void settle() const;

private:
    FakeUserDefaults m_defaults;
    FakeFileManager m_files;
    FakeKeyEventTapService m_taps;
    FakeEventMonitors m_monitors;
    QtMainQueue m_queue;
    std::unique_ptr<x11::X11Connection> m_screensConnection;
    std::unique_ptr<X11Screens> m_screens;
    AppConfig m_config;
    std::unique_ptr<Compositor> m_compositor;
    X11PanelFactory m_panels;
    FakePasteboard m_pasteboard;
    ActionHandler m_actions{m_pasteboard, m_config};
    FakeWorkspace m_workspace;
    FakeAppearance m_appearance;
    PreviewViews m_views;
    std::unique_ptr<PreviewWindowController> m_controller;
};

} // namespace lumenfold::test
