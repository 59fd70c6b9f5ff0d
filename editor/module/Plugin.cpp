/// What the module gives to the program.
#include "editor/module/WebEngineView.h"

#include <QQuickWindow>

namespace {

/// The web engine draws with the processor. Its other way runs the graphics driver inside this process, which lives for
/// weeks: a driver's crash would take the cards along, and the driver's memory, larger than the whole rest of the
/// program, would stay after the window is closed.
class WithoutGraphicsDriver {
public:
    WithoutGraphicsDriver()
    {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
        // Read once, with the first profile. Whoever wants other things of the engine can still say so.
        qputenv(variable, m_before + " --disable-gpu");
    }
    WithoutGraphicsDriver(const WithoutGraphicsDriver &) = delete;
    WithoutGraphicsDriver &operator=(const WithoutGraphicsDriver &) = delete;
    ~WithoutGraphicsDriver()
    {
        // Not for the programs that are started from here.
        if (m_before.isEmpty()) {
            qunsetenv(variable);
        } else {
            qputenv(variable, m_before);
        }
    }

private:
    static constexpr const char *variable = "QTWEBENGINE_CHROMIUM_FLAGS";
    const QByteArray m_before = qgetenv(variable);
};

} // namespace

extern "C" Q_DECL_EXPORT lumenfold::EditorView *lumenfoldMakeEditorView(const lumenfold::EditorView::Options *options,
                                                                        lumenfold::EditorViewClient *client,
                                                                        QWidget *parent)
{
    const WithoutGraphicsDriver software;
    return new lumenfold::WebEngineView(*options, *client, parent);
}
