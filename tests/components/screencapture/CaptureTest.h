#pragma once

#include "platform/screencapture/X11ScreenshotManager.h"
#include "platform/screens/X11Screens.h"
#include "platform/x11/X11Connection.h"
#include "tests/support/desktop/XServer.h"

#include <QImage>
#include <QRect>
#include <QWidget>

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace lumenfold::test {

/// A program with windows of its own on a real server, and what it needs to take pictures.
class CaptureTest : public ::testing::Test {
public:
    static void useServer(XServer &server);

protected:
    using Picture = tl::expected<QImage, PlatformError>;

    CaptureTest();
    ~CaptureTest() override;

    [[nodiscard]] static XServer &server();
    /// Device pixels per point on the main screen.
    [[nodiscard]] double scale() const;

    /// What a capture service asks for: the whole display, at its own scale, without this process's windows.
    [[nodiscard]] ContentFilter filterFor(const Screen &screen) const;
    [[nodiscard]] StreamConfiguration wholeOf(const Screen &screen) const;
    /// A part of the main screen, given in pixels from its upper left corner, in the terms of the interface.
    [[nodiscard]] StreamConfiguration partOfMain(const QRect &pixels) const;

    [[nodiscard]] Picture take(const ContentFilter &filter, const StreamConfiguration &configuration);
    /// The whole main screen; a failure of the test when there is no picture.
    [[nodiscard]] QImage takeMain();
    [[nodiscard]] QImage takePartOfMain(const QRect &pixels);

    /// A borderless window of this process, as cards are: placed exactly, unmanaged, filled with one colour. On the
    /// screen when this returns. Pixels.
    [[nodiscard]] std::unique_ptr<QWidget> showOwnWindow(const QRect &pixels, const QColor &colour);

    X11Screens &screens() { return *m_screens; }
    OwnWindowTraces &traces() { return m_traces; }
    X11ScreenshotManager &manager() { return *m_manager; }
    void destroyManager() { m_manager.reset(); }
    void destroyConnection();

private:
    std::unique_ptr<x11::X11Connection> m_connection;
    std::unique_ptr<X11Screens> m_screens;
    OwnWindowTraces m_traces;
    std::unique_ptr<X11ScreenshotManager> m_manager;
};

} // namespace lumenfold::test
