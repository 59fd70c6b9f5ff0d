#pragma once

#include "platform/screens/X11Screens.h"
#include "platform/x11/X11Connection.h"
#include "tests/support/desktop/XServer.h"

#include <QRect>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace lumenfold::test {

/// The screens of a real server with one or two monitors.
class ScreensTest : public ::testing::Test {
public:
    static void useServer(XServer &server);

protected:
    ScreensTest();
    ~ScreensTest() override;

    [[nodiscard]] static XServer &server();
    [[nodiscard]] X11Screens &screens() { return *m_screens; }
    [[nodiscard]] std::unique_ptr<X11Screens> makeScreens() { return std::make_unique<X11Screens>(*m_connection); }

    /// "left" and "right", of which the right one is the main screen and stands higher. Returns when they are there,
    /// for the toolkit as well.
    void plugInTwo();
    void plugInOne();
    [[nodiscard]] Screen screenAt(const QRect &native) const;
    void movePointer(QPoint native) const;
    /// How often changed() was emitted.
    [[nodiscard]] int changes() const { return m_changes; }

    const QRect whole{0, 0, 1280, 800};
    const QRect left{0, 100, 480, 640};
    const QRect right{480, 0, 800, 600};

private:
    std::unique_ptr<x11::X11Connection> m_connection;
    std::unique_ptr<X11Screens> m_screens;
    int m_changes = 0;
};

} // namespace lumenfold::test
