/// One icon, wherever the desktop has a place for it.
#include "tests/components/statusitem/StatusAreaFixture.h"

namespace lumenfold::test {
namespace {

using WhichTrayTest = StatusAreaTest;
using Panel = StatusNotifierHost::Panel;
using Manners = StatusNotifierHost::Manners;

TEST_F(WhichTrayTest, WithAPanelOnTheBusTheTrayStaysEmpty)
{
    makeHost();
    makeTray();
    makeItem();
    host->waitForItem();
    EXPECT_TRUE(trayStaysEmpty());
}

TEST_F(WhichTrayTest, AWatcherWithoutAPanelShowsNothingSoTheTrayDoes)
{
    makeHost(Panel::none);
    makeTray();
    makeItem();
    host->waitForItem();
    waitForIconInTray();

    host->setPanel(Panel::there);
    tray->waitForIcons(0);
    host->setPanel(Panel::none);
    waitForIconInTray();
}

TEST_F(WhichTrayTest, APanelThatComesLateTakesTheIconOver)
{
    makeTray();
    makeItem();
    waitForIconInTray();
    makeHost();
    host->waitForItem();
    tray->waitForIcons(0);
    host.reset();
    waitForIconInTray();
}

TEST_F(WhichTrayTest, AWatcherThatHangsKeepsNobodyWaiting)
{
    makeHost(Panel::there, Manners::silent);
    makeTray();
    makeItem();
    // While the watcher says nothing, the event loop turns and the icon comes.
    waitForIconInTray();
    pointer.click(tray->icons().first().center());
    EXPECT_TRUE(waitFor([] { return openMenu() != nullptr; }));
}

} // namespace
} // namespace lumenfold::test
