#pragma once

#include "tests/unit/cards/CardsFixture.h"

#include <algorithm>

namespace lumenfold::test {

/// A controller whose store holds the cards of a last run.
class RestoringFixture : public CardsTest {
protected:
    /// Stack cards "1" to "50", and pinned cards "p10", "p20", ..., each behind the stack card of that number.
    RestoringFixture()
    {
        for (int number = 1; number <= 50; ++number) {
            add(QString::number(number), false);
            if (number % 10 == 0) {
                add(QStringLiteral("p") + QString::number(number), true);
            }
        }
    }

    void add(const QString &id, bool isPinned)
    {
        store.images.insert(id, picture(8, 6));
        store.manifest.push_back({.id = id,
                                  .editorSourceId = id,
                                  .isPinned = isPinned,
                                  .frame = isPinned ? std::optional(Rect{300, 300, 304, 204}) : std::nullopt});
        listed.append(id);
    }

    [[nodiscard]] QStringList idsInManifest() const
    {
        QStringList all;
        std::ranges::transform(store.manifest, std::back_inserter(all), &PersistedCard::id);
        return all;
    }

    /// The next one that will be seen.
    void passTurn() { queue.advance(std::chrono::milliseconds(8)); }
    /// A few turns of the event loop, enough for those that are seen and not enough for all.
    void passSomeTurns() { queue.advance(std::chrono::milliseconds(340)); }

    /// The first two are there.
    void beginRestoring()
    {
        controller->restore();
        passTurn();
    }

    /// As many turns as it takes until all of the column that will be seen is there.
    void restoreColumn()
    {
        controller->restore();
        while (!card(QStringLiteral("44"))) {
            passTurn();
        }
    }

    [[nodiscard]] static QStringList numbers(int first, int last)
    {
        QStringList result;
        for (int number = first; number <= last; ++number) {
            result.append(QString::number(number));
        }
        return result;
    }

    QStringList listed;
};

} // namespace lumenfold::test
