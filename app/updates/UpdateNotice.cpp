#include "app/updates/UpdateNotice.h"

#include "app/theme/Spinner.h"
#include "app/updates/UpdateHeader.h"

#include <QPushButton>
#include <QVBoxLayout>

namespace lumenfold {

UpdateNotice::UpdateNotice(const Content &content, QWidget *parent) : QWidget(parent)
{
    setFixedWidth(updateWindow::noticeWidth);
    auto *header = new UpdateHeader(content.heading, content.text, this);
    if (content.activity == Activity::underWay) {
        auto *spinner = new Spinner(header);
        spinner->setAccessibleName(content.heading);
        spinner->setSpinning(true);
        header->append(spinner);
    }
    auto *button = new QPushButton(content.button, this);
    button->setDefault(true);
    connect(button, &QPushButton::clicked, this, &UpdateNotice::closed);

    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(updateWindow::padding, updateWindow::padding, updateWindow::padding,
                             updateWindow::padding);
    rows->setSpacing(updateWindow::spacing);
    rows->addWidget(header);
    rows->addWidget(button, 0, Qt::AlignTrailing);
    setFocusProxy(button);
}

} // namespace lumenfold
