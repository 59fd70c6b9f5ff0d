#pragma once

#include "service/templates/PreviewCache.h"
#include "service/templates/TemplatePicker.h"

#include <QWidget>

#include <optional>

class QLabel;
class QPushButton;
class QStackedWidget;

namespace lumenfold {

class MessageText;
class PreviewDownloads;
class TemplateGrid;
class TemplatePreviews;
class TemplateSearchField;

/// Where the user picks the template that screenshots are opened with, and clears it. Has the colours of the window
/// that it is in. Fetches the templates whenever it is shown.
class TemplatePickerView : public QWidget {
    Q_OBJECT

public:
    /// Everything must outlive the view.
    struct Collaborators {
        TemplatePicker::Collaborators picker;
        PreviewDownloads &downloads;
        /// Without one, pictures are downloaded again in each run.
        std::optional<PreviewCache> cache;
    };

    explicit TemplatePickerView(const Collaborators &collaborators, QWidget *parent = nullptr);
    ~TemplatePickerView() override;

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    [[nodiscard]] QWidget *makeHeader();
    [[nodiscard]] QWidget *makeMessage();
    void showState();
    void colorTexts();
    void act();
    void startSearch();

    TemplatePicker *const m_picker;
    TemplatePreviews *const m_previews;
    QLabel *m_title = nullptr;
    QLabel *m_subtitle = nullptr;
    QPushButton *m_clear = nullptr;
    TemplateSearchField *m_search = nullptr;
    QStackedWidget *m_pages = nullptr;
    TemplateGrid *m_grid = nullptr;
    MessageText *m_message = nullptr;
    /// Connects the account, or tries again.
    QPushButton *m_action = nullptr;
};

} // namespace lumenfold
