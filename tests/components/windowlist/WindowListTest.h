#pragma once

#include "platform/screens/X11Screens.h"
#include "platform/windowlist/X11WindowList.h"
#include "platform/x11/X11Connection.h"
#include "tests/support/desktop/XServer.h"

#include <QRect>

#include <gtest/gtest.h>

#include <memory>

namespace lumenfold::test {

/// The windows of a real server, as the program lists them.
class WindowListTest : public ::testing::Test {
public:
    static void useServer(XServer &server);

protected:
    WindowListTest();
    ~WindowListTest() override;

    [[nodiscard]] static XServer &server();
    [[nodiscard]] std::vector<WindowInfo> listed() const { return m_list->onScreenWindows(); }
    /// Root pixels as the list tells them.
    [[nodiscard]] WindowBounds boundsOf(const QRect &pixels) const;
    /// The listed window with these edges; nothing when there is none.
    [[nodiscard]] std::optional<WindowInfo> listedAt(const QRect &pixels) const;
    /// The windows of layer 0, front to back, in root pixels.
    [[nodiscard]] std::vector<QRect> ordinary() const;

private:
    std::unique_ptr<x11::X11Connection> m_connection;
    std::unique_ptr<X11Screens> m_screens;
    std::unique_ptr<X11WindowList> m_list;
};

} // namespace lumenfold::test
