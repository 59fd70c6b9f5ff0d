/// Takes, pins, edits, dismisses and brings back cards without a pause and keeps them on disk with the program's own
/// controller and store, until somebody kills it. Usage: card_keeper <card folder> <seed>
///
/// Ends with 3 when a card of the run before does not come back as it was.
#include "tests/desktop/cardrestart/KeeperPictures.h"

#include "app/configuration/AppConfig.h"
#include "cards/CardEditor.h"
#include "cards/CardPersistence.h"
#include "cards/PreviewWindowController.h"
#include "tests/support/fakes/FakeCardViews.h"
#include "tests/support/fakes/FakeEventMonitors.h"
#include "tests/support/fakes/FakeFileManager.h"
#include "tests/support/fakes/FakeMainQueue.h"
#include "tests/support/fakes/FakePanel.h"
#include "tests/support/fakes/FakeScreens.h"
#include "tests/support/fakes/FakeUserDefaults.h"

#include <QCoreApplication>
#include <QTimer>
#include <QUuid>
#include <QWidget>

#include <cstdio>
#include <random>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;

constexpr int notAsItWas = 3;
constexpr std::size_t manyCards = 12;

/// Gives every image back at once, changed.
class HastyEditor : public CardEditor {
public:
    void present(const Image &, const QString &, ExportHandler onExport) override { pending = std::move(onExport); }

    ExportHandler pending;
};

class Keeper {
public:
    Keeper(const QString &folder, unsigned seed) : m_random(seed), m_store(folder)
    {
        m_screens.setScreens({{.displayID = 1, .frame = {0, 0, 1100, 650}, .visibleFrame = {0, 0, 1100, 650}}});
        m_controller = std::make_unique<PreviewWindowController>(PreviewWindowController::Collaborators{
            .panels = m_panels,
            .monitors = m_monitors,
            .screens = m_screens,
            .config = m_config,
            .queue = m_queue,
            .views = m_views,
            .store = &m_store,
            .editor = &m_editor,
        });
    }

    /// False when a card is not what it was.
    [[nodiscard]] bool restore()
    {
        m_controller->restore();
        m_queue.advance(500ms);
        for (const auto &card : m_controller->cards()) {
            const PreviewModel &model = *card->model;
            if (!isKeeperPicture(model.image().pixels(), model.editorSourceId()) ||
                !isKeeperPicture(model.editorSourceImage().pixels(), model.editorSourceId())) {
                std::fprintf(stderr, "%s is not what it was\n", qPrintable(model.screenshotId()));
                return false;
            }
        }
        return true;
    }

    void doSomething()
    {
        m_queue.advance(500ms);
        const std::size_t count = m_controller->cards().size();
        switch (count == 0 ? 0 : m_random() % (count > manyCards ? 4 : 9)) {
        case 0:
            return count > manyCards ? dismissMany() : capture();
        case 1:
            return anyCard().onDismiss();
        case 2:
            return dismissMany();
        case 3:
            (void)m_controller->restoreLastDismissed();
            return;
        case 4:
            return edit();
        case 5:
            return anyCard().onBringToFront();
        case 6:
            return pin();
        default:
            return capture();
        }
    }

private:
    PreviewModel &anyCard()
    {
        const auto &cards = m_controller->cards();
        return *cards[m_random() % cards.size()]->model;
    }

    [[nodiscard]] QString newId() { return QStringLiteral("%1-%2").arg(m_random(), 0, 16).arg(m_random(), 0, 16); }

    [[nodiscard]] Image picture(const QString &text)
    {
        return Image::fromPixels(keeperPicture(text, static_cast<int>(m_random() % 1000)));
    }

    void capture()
    {
        const QString id = newId();
        m_controller->show(picture(id), {.id = id});
    }

    void pin() { anyCard().onPinRequested(); }

    /// The card, or a new one, gets another version of the picture.
    void edit()
    {
        PreviewModel &model = anyCard();
        const QString sourceId = model.editorSourceId();
        m_config.setReplaceCardOnEdit(m_random() % 2 == 0);
        model.onEditRequested();
        if (m_editor.pending) {
            std::exchange(m_editor.pending, {})(picture(sourceId));
        }
    }

    void dismissMany()
    {
        const auto cards = m_controller->cards();
        for (std::size_t index = 0; index < cards.size(); index += 2) {
            cards[index]->model->onDismiss();
        }
    }

    std::mt19937 m_random;
    FakeScreens m_screens;
    FakeUserDefaults m_defaults;
    FakeFileManager m_files;
    AppConfig m_config{m_defaults, m_screens, m_files};
    FakeMainQueue m_queue;
    FakePanelFactory m_panels{m_queue};
    FakeEventMonitors m_monitors;
    FakeCardViews m_views;
    HastyEditor m_editor;
    CardPersistence m_store;
    std::unique_ptr<PreviewWindowController> m_controller;
};

} // namespace
} // namespace lumenfold::test

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        return 2;
    }
    lumenfold::test::Keeper keeper(arguments[1], arguments[2].toUInt());
    if (!keeper.restore()) {
        return lumenfold::test::notAsItWas;
    }
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&keeper] { keeper.doSomething(); });
    timer.start(std::chrono::milliseconds(2));
    return QCoreApplication::exec();
}
