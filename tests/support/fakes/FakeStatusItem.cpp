#include "tests/support/fakes/FakeStatusItem.h"

#include <algorithm>
#include <utility>

namespace lumenfold::test {

class FakeStatusArea::Item : public StatusItem {
public:
    explicit Item(FakeStatusArea &area) : m_area(area) { m_area.hasItem = true; }
    ~Item() override { m_area.hasItem = false; }

    void setImage(const StatusImage &image) override
    {
        m_area.image = image;
        called(QStringLiteral("setImage"));
    }

    void setUpdateBadgeVisible(bool visible) override
    {
        m_area.isBadgeVisible = visible;
        called(visible ? QStringLiteral("setUpdateBadgeVisible true") : QStringLiteral("setUpdateBadgeVisible false"));
    }

    void setMenu(Menu menu) override
    {
        m_area.menu = std::move(menu);
        ++m_area.menus;
        called(QStringLiteral("setMenu"));
    }

private:
    void called(const QString &call) const
    {
        if (m_area.onCall) {
            m_area.onCall(call);
        }
    }

    FakeStatusArea &m_area;
};

std::unique_ptr<StatusItem> FakeStatusArea::makeItem()
{
    return std::make_unique<Item>(*this);
}

QStringList FakeStatusArea::titles() const
{
    QStringList titles;
    for (const MenuItem &each : menu) {
        titles.append(each.kind == MenuItem::Kind::separator ? QStringLiteral("-") : each.title);
    }
    return titles;
}

const MenuItem *FakeStatusArea::item(const QString &title) const
{
    const auto found = std::ranges::find_if(
        menu, [&title](const MenuItem &each) { return each.kind == MenuItem::Kind::command && each.title == title; });
    return found == menu.end() ? nullptr : &*found;
}

bool FakeStatusArea::click(const QString &title)
{
    const MenuItem *chosen = item(title);
    if (chosen == nullptr || !chosen->isEnabled || !chosen->action) {
        return false;
    }
    // The action may change the menu.
    const std::function<void()> action = chosen->action;
    action();
    return true;
}

} // namespace lumenfold::test
