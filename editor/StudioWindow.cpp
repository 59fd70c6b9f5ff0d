#include "editor/StudioWindow.h"

#include "app/theme/Spinner.h"
#include "app/theme/WindowTheme.h"

#include <QAccessible>
#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QScreen>
#include <QStackedLayout>
#include <QVBoxLayout>

#include <utility>

namespace lumenfold {
namespace {

constexpr QSize windowSize{1200, 800};
constexpr QSize minimumWindowSize{760, 560};
constexpr int widthOfNotice = 460;
constexpr double titleScale = 1.4;

/// Light writing on the page's dark ground, whatever the desktop's colours are.
QPalette colorsOfWindow()
{
    // A shade of the ground: grey would look brown on it.
    constexpr QColor buttonGround{50, 55, 73};
    QPalette colors = windowPalette(ColorScheme::dark);
    colors.setColor(QPalette::Window, StudioWindow::loadingBackground);
    colors.setColor(QPalette::Button, buttonGround);
    return colors;
}

/// Lines of about the same length: as narrow as the text can be without another line.
int balancedWidth(QLabel &label)
{
    // Of the notice before; it would count.
    label.setMinimumSize(0, 0);
    constexpr int step = 4;
    const int height = label.heightForWidth(widthOfNotice);
    int width = widthOfNotice;
    while (width > widthOfNotice / 2 && label.heightForWidth(width - step) == height) {
        width -= step;
    }
    return width;
}

QWidget *centred(QWidget *content)
{
    auto *around = new QWidget;
    auto *layout = new QVBoxLayout(around);
    layout->addStretch();
    layout->addWidget(content, 0, Qt::AlignHCenter);
    layout->addStretch();
    return around;
}

QLabel *makeLabel()
{
    auto *label = new QLabel;
    // What is shown may hold the words of a server; none of it is markup.
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignHCenter);
    return label;
}

} // namespace

StudioWindow::StudioWindow()
    : m_layout(new QStackedLayout(this))
    , m_spinner(new Spinner)
    , m_stage(new QWidget)
    , m_title(makeLabel())
    , m_text(makeLabel())
    , m_buttons(new QWidget)
{
    setWindowTitle(tr("Edit in LumenFold"));
    setPalette(colorsOfWindow());
    setAutoFillBackground(true);
    setMinimumSize(minimumWindowSize);

    m_waiting = centred(m_spinner);
    auto *stageLayout = new QVBoxLayout(m_stage);
    stageLayout->setContentsMargins({});

    auto *words = new QWidget;
    auto *layout = new QVBoxLayout(words);
    constexpr int gap = 12;
    layout->setSpacing(gap);
    QFont font = m_title->font();
    font.setPointSizeF(font.pointSizeF() * titleScale);
    font.setBold(true);
    m_title->setFont(font);
    layout->addWidget(m_title, 0, Qt::AlignHCenter);
    QPalette colors = palette();
    colors.setColor(QPalette::WindowText, secondaryText(colors));
    m_text->setPalette(colors);
    layout->addWidget(m_text, 0, Qt::AlignHCenter);
    layout->addSpacing(gap);
    layout->addWidget(m_buttons);
    m_notice = centred(words);
    auto *buttons = new QHBoxLayout(m_buttons);
    buttons->setContentsMargins({});
    buttons->setAlignment(Qt::AlignHCenter);

    for (QWidget *each : {m_waiting, m_stage, m_notice}) {
        m_layout->addWidget(each);
    }
    showWaiting();

    const QRect free = screen()->availableGeometry();
    // With room for what a window manager puts around it.
    constexpr QSize decoration{0, 40};
    resize(windowSize.boundedTo(free.size() - decoration).expandedTo(minimumWindowSize));
    move(free.center() - rect().center());
    QCoreApplication::instance()->installEventFilter(this);
}

void StudioWindow::showWaiting()
{
    m_spinner->setSpinning(true);
    m_layout->setCurrentWidget(m_waiting);
}

void StudioWindow::showPage(QWidget *page)
{
    m_spinner->setSpinning(false);
    if (page->parentWidget() != m_stage || m_stage->layout()->indexOf(page) < 0) {
        m_stage->layout()->addWidget(page);
    }
    m_layout->setCurrentWidget(m_stage);
    page->setFocus();
}

void StudioWindow::showNotice(const Notice &notice)
{
    m_spinner->setSpinning(false);
    m_title->setText(notice.title);
    m_text->setText(notice.text);
    for (QLabel *label : {m_title, m_text}) {
        // The layouts around them do not ask how high a text of several lines is at this width.
        const int width = balancedWidth(*label);
        label->setFixedSize(width, label->heightForWidth(width));
    }
    qDeleteAll(m_buttons->findChildren<QPushButton *>(Qt::FindDirectChildrenOnly));
    for (const Button &button : notice.buttons) {
        auto *made = new QPushButton(button.text, m_buttons);
        made->setAutoDefault(true);
        widenButton(*made);
        // Later, because the action may take the button away.
        connect(made, &QPushButton::clicked, this, button.action, Qt::QueuedConnection);
        m_buttons->layout()->addWidget(made);
        if (m_buttons->layout()->count() == 1) {
            made->setDefault(true);
            made->setFocus();
        }
    }
    m_layout->setCurrentWidget(m_notice);
    if (QAccessible::isActive()) {
        QAccessibleEvent alert(m_title, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

bool StudioWindow::showsNotice() const
{
    return m_layout->currentWidget() == m_notice;
}

void StudioWindow::closeEvent(QCloseEvent *event)
{
    event->accept();
    Q_EMIT closing();
}

bool StudioWindow::eventFilter(QObject *, QEvent *event)
{
    // The web engine's objects are not asked anything: they are made without what tells their class.
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        if (geometry().contains(static_cast<const QMouseEvent *>(event)->globalPosition().toPoint())) {
            Q_EMIT inputReceived();
        }
        break;
    case QEvent::KeyPress:
    case QEvent::TouchBegin:
    case QEvent::TabletPress:
    case QEvent::Drop:
        if (isActiveWindow()) {
            Q_EMIT inputReceived();
        }
        break;
    default:
        break;
    }
    return false;
}

} // namespace lumenfold
