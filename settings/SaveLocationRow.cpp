#include "settings/SaveLocationRow.h"

#include "app/configuration/AppConfig.h"
#include "app/theme/SymbolView.h"
#include "app/theme/WindowTheme.h"
#include "platform/filepanels/OpenPanel.h"
#include "settings/PathLabel.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPointer>
#include <QPushButton>

namespace lumenfold {
namespace {

// Points.
constexpr int partSpacing = 8;
constexpr double folderPointSize = 14;

} // namespace

SaveLocationRow::SaveLocationRow(AppConfig &config, OpenPanel &openPanel, QWidget *parent)
    : QWidget(parent)
    , m_config(config)
    , m_openPanel(openPanel)
    , m_symbol(new SymbolView(Symbol::folder, folderPointSize, this))
    , m_path(new PathLabel(this))
    , m_choose(new QPushButton(tr("Choose"), this))
    , m_useDefault(new QPushButton(tr("Use Default"), this))
{
    m_choose->setAccessibleDescription(tr("Choose the folder for saved screenshots"));
    m_useDefault->setAccessibleDescription(tr("Save screenshots in the Pictures folder"));
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->setSpacing(partSpacing);
    row->addWidget(m_symbol);
    row->addWidget(m_path, 1);
    row->addWidget(m_choose);
    row->addWidget(m_useDefault);
    connect(m_choose, &QPushButton::clicked, this, [this] { choose(); });
    connect(m_useDefault, &QPushButton::clicked, this, &SaveLocationRow::useDefault);
    drawSymbol();
    read();
}

void SaveLocationRow::read()
{
    showPath(m_config.saveDirectory(), m_config.hasChosenSaveDirectory());
}

QCoro::Task<> SaveLocationRow::choose()
{
    if (m_isChoosing) {
        co_return;
    }
    m_isChoosing = true;
    const QPointer self(this);
    OpenPanel::Request request;
    request.title = tr("Save Location");
    request.prompt = tr("Choose");
    request.directory = m_config.saveDirectory();
    request.window = window();
    const std::optional<QString> chosen = co_await m_openPanel.chooseDirectory(request);
    if (!self) {
        co_return;
    }
    m_isChoosing = false;
    if (chosen) {
        m_config.chooseSaveDirectory(*chosen);
        showPath(*chosen, true);
    }
}

void SaveLocationRow::useDefault()
{
    m_config.forgetSaveDirectory();
    showPath(m_config.defaultSaveDirectory(), false);
}

void SaveLocationRow::showPath(const QString &path, bool isCustom)
{
    m_path->setPath(path);
    m_useDefault->setEnabled(isCustom);
}

void SaveLocationRow::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        drawSymbol();
    }
}

void SaveLocationRow::drawSymbol()
{
    m_symbol->setColor(secondaryText(palette()));
}

} // namespace lumenfold
