#include "platform/session/Backend.h"

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

class FakeBackend : public Backend {
public:
    FakeBackend(QString name, bool applies) : m_name(std::move(name)), m_applies(applies) {}

    [[nodiscard]] QString name() const override { return m_name; }
    [[nodiscard]] bool applies(const SessionEnvironment &) const override { return m_applies; }
    [[nodiscard]] tl::expected<void, QString> check(const SessionEnvironment &) const override { return {}; }
    [[nodiscard]] QByteArray toolkitPlatform() const override { return "minimal"; }
    [[nodiscard]] tl::expected<std::unique_ptr<PlatformServices>, QString> connect() const override
    {
        return tl::unexpected(QString());
    }

private:
    QString m_name;
    bool m_applies;
};

Backends backends(bool firstApplies, bool secondApplies)
{
    Backends made;
    made.push_back(std::make_unique<FakeBackend>(QStringLiteral("first"), firstApplies));
    made.push_back(std::make_unique<FakeBackend>(QStringLiteral("second"), secondApplies));
    return made;
}

QString chosen(const Backends &from, const QString &forced = {})
{
    const auto backend = chooseBackend(from, {.x11Display = ":0", .forcedBackend = forced});
    return backend ? (*backend)->name() : QStringLiteral("error: ") + backend.error();
}

TEST(BackendChoice, TheFirstThatAppliesIsTaken)
{
    EXPECT_EQ(chosen(backends(true, true)), u"first");
    EXPECT_EQ(chosen(backends(false, true)), u"second");
}

TEST(BackendChoice, WithoutAnyThereIsNoSession)
{
    EXPECT_EQ(chosen(backends(false, false)), u"error: there is no desktop session to run in (DISPLAY is not set)");
    EXPECT_EQ(chosen({}), u"error: there is no desktop session to run in (DISPLAY is not set)");
}

TEST(BackendChoice, AForcedOneIsTakenWhetherItAppliesOrNot)
{
    EXPECT_EQ(chosen(backends(true, false), QStringLiteral("second")), u"second");
    EXPECT_EQ(chosen(backends(true, true), QStringLiteral("third")),
              u"error: there is no backend third, only first, second");
}

TEST(BackendChoice, TheX11BackendAppliesWhereThereIsADisplay)
{
    const Backends all = allBackends();
    const auto withDisplay = chooseBackend(all, {.x11Display = ":0", .forcedBackend = {}});
    ASSERT_TRUE(withDisplay);
    EXPECT_EQ((*withDisplay)->name(), u"x11");
    EXPECT_EQ((*withDisplay)->toolkitPlatform(), "xcb");
    EXPECT_FALSE(chooseBackend(all, {.x11Display = {}, .forcedBackend = {}}));
}

TEST(BackendChoice, AServerThatIsNotThereIsNamed)
{
    const Backends all = allBackends();
    const SessionEnvironment nowhere{.x11Display = ":987654", .forcedBackend = QStringLiteral("x11")};
    EXPECT_EQ((*chooseBackend(all, nowhere))->check(nowhere).error(), u"the X server :987654 cannot be reached");
    const SessionEnvironment none{.x11Display = {}, .forcedBackend = QStringLiteral("x11")};
    EXPECT_EQ((*chooseBackend(all, none))->check(none).error(), u"there is no X server to run on (DISPLAY is not set)");
}

} // namespace
} // namespace lumenfold::test
