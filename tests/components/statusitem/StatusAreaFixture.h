#pragma once

#include "platform/statusitem/DesktopStatusItem.h"
#include "platform/x11/X11Connection.h"
#include "tests/support/desktop/Input.h"
#include "tests/support/desktop/StatusNotifierHost.h"
#include "tests/support/desktop/TrayManager.h"
#include "tests/support/fakes/FakeAppearance.h"

#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <optional>

class QMenu;

namespace lumenfold::test {

/// The real status item on a real X server and a real session bus; the desktop's side is made when a test wants it.
class StatusAreaTest : public ::testing::Test {
protected:
    StatusAreaTest();
    ~StatusAreaTest() override;

    void makeItem();
    void makeHost(StatusNotifierHost::Panel panel = StatusNotifierHost::Panel::there,
                  StatusNotifierHost::Manners manners = StatusNotifierHost::Manners::good);
    void makeTray(const TrayOptions &options = {});

    /// Notes its title in `chosen`.
    [[nodiscard]] MenuItem command(const QString &title);
    [[nodiscard]] Menu threeItems();

    /// Null while none is open.
    [[nodiscard]] static QMenu *openMenu();
    /// Clicks the entry in the menu that is open, as a person does.
    void chooseInOpenMenu(int index);
    void waitForIconInTray();
    /// Whether the tray stays without an icon.
    [[nodiscard]] bool trayStaysEmpty();

    QStringList chosen;
    Pointer pointer;
    FakeAppearance appearance;
    QTemporaryDir folder;
    std::unique_ptr<x11::X11Connection> connection = x11::X11Connection::open();
    std::unique_ptr<DesktopStatusItem> item;
    std::unique_ptr<StatusNotifierHost> host;
    std::unique_ptr<TrayManager> tray;
};

} // namespace lumenfold::test
