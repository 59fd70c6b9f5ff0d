#include "tests/gallery/MenuScenes.h"

#include "app/menubar/MenuBarImages.h"
#include "app/theme/WindowTheme.h"
#include "platform/statusitem/MenuPopup.h"
#include "platform/statusitem/StatusIconPainter.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/fakes/FakeAppearance.h"
#include "tests/support/fakes/FakeStatusItem.h"
#include "tests/support/menubar/MenuStage.h"

#include <QMenu>
#include <QPainter>

#include <array>
#include <utility>

namespace lumenfold::test {
namespace {

constexpr std::array sizes{16, 22, 24, 32, 44, 48, 64};

/// A panel with the icon in every size, once as it is seen and once enlarged for the eye.
QImage paintPanel(ColorScheme scheme, const StatusImage &image)
{
    constexpr int row = 80;
    constexpr int zoom = 4;
    const bool isDark = scheme == ColorScheme::dark;
    const QColor ground = isDark ? QColor(36, 36, 40) : QColor(237, 237, 240);
    const QColor writing = isDark ? QColor(245, 245, 247) : QColor(35, 38, 41);
    QImage picture(620, 2 * row + 24 * zoom + 24, QImage::Format_RGB32);
    picture.fill(ground);
    QPainter painter(&picture);
    int y = 8;
    for (const bool hasBadge : {false, true}) {
        int x = 8;
        for (const int size : sizes) {
            painter.drawImage(x, y + (64 - size) / 2,
                              paintStatusIcon({.image = image, .hasBadge = hasBadge}, size, writing));
            x += size + 16;
        }
        y += row;
    }
    int x = 8;
    for (const int size : {16, 22, 24}) {
        for (const bool hasBadge : {false, true}) {
            const QImage icon = paintStatusIcon({.image = image, .hasBadge = hasBadge}, size, writing);
            painter.drawImage(x, y, icon.scaled(size * zoom, size * zoom));
            x += size * zoom + 8;
        }
    }
    return picture;
}

enum class Person { stranger, connectedWithUpdate };

QImage paintMenu(ColorScheme scheme, Person person)
{
    FakeStatusArea area;
    MenuStage stage(area.makeItem());
    if (person == Person::connectedWithUpdate) {
        stage.connectAs(QStringLiteral("ada.lovelace@example.org"));
        stage.findUpdate();
    }
    FakeAppearance appearance;
    appearance.setColorScheme(scheme);
    QMenu menu;
    WindowTheme::install(menu, appearance);
    fillMenu(menu, area.menu);
    menu.popup({0, 0});
    menu.setActiveAction(menu.actions().at(person == Person::stranger ? 1 : 3));
    (void)staysTrue([] { return true; }, std::chrono::milliseconds(60));
    return menu.grab().toImage();
}

} // namespace

std::vector<Scene> menuScenes()
{
    std::vector<Scene> scenes;
    for (const auto &[suffix, scheme] : std::array{std::pair(QStringLiteral("light"), ColorScheme::light),
                                                   std::pair(QStringLiteral("dark"), ColorScheme::dark)}) {
        const auto add = [&scenes, suffix = suffix](const QString &name, std::function<QImage()> paint) {
            scenes.push_back({name + u'-' + suffix, std::move(paint)});
        };
        add(QStringLiteral("status-icon"), [scheme = scheme] { return paintPanel(scheme, menuBarImage()); });
        add(QStringLiteral("status-icon-scissors"),
            [scheme = scheme] { return paintPanel(scheme, menuBarImage(QStringLiteral(":/nowhere"))); });
        add(QStringLiteral("menu"), [scheme = scheme] { return paintMenu(scheme, Person::stranger); });
        add(QStringLiteral("menu-update"),
            [scheme = scheme] { return paintMenu(scheme, Person::connectedWithUpdate); });
    }
    return scenes;
}

} // namespace lumenfold::test
