#include "app/updates/UpdateOffer.h"

#include "app/updates/NotesBrowser.h"
#include "app/updates/UpdateHeader.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace lumenfold {

UpdateOffer::UpdateOffer(const AvailableUpdate &update, const QString &runningVersion, QWidget *parent)
    : QWidget(parent)
{
    // In the order in which Tab goes from one to the next.
    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(updateWindow::padding, updateWindow::padding, updateWindow::padding,
                             updateWindow::padding);
    rows->setSpacing(updateWindow::spacing);
    rows->addWidget(new UpdateHeader(tr("LumenFold %1 is available").arg(update.version),
                                     tr("You have version %1.").arg(runningVersion), this));
    auto *notes = new NotesBrowser(this);
    notes->setAccessibleName(tr("What is new"));
    notes->setNotes(update.notes.isEmpty() ? tr("There are no notes about this version.") : update.notes);
    connect(notes, &NotesBrowser::pageChosen, this, &UpdateOffer::pageChosen);
    rows->addWidget(notes, 1);

    const auto makeButton = [this](const QString &text, UpdateChoice choice) {
        auto *button = new QPushButton(text, this);
        connect(button, &QPushButton::clicked, this, [this, choice] { Q_EMIT chosen(choice); });
        return button;
    };
    auto *skip = makeButton(tr("Skip This Version"), UpdateChoice::skipVersion);
    auto *later = makeButton(tr("Remind Me Later"), UpdateChoice::remindLater);
    auto *open = makeButton(tr("Open Download Page"), UpdateChoice::openPage);
    open->setToolTip(update.page.toDisplayString());
    open->setDefault(true);
    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(updateWindow::buttonSpacing);
    buttons->addWidget(skip);
    buttons->addStretch();
    buttons->addWidget(later);
    buttons->addWidget(open);
    rows->addLayout(buttons);
    setFocusProxy(open);
}

} // namespace lumenfold
