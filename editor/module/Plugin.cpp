/// What the module gives to the program.
#include "editor/module/HandOverSender.h"
#include "editor/module/WebEngineView.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QQuickWindow>

#include <dlfcn.h>

namespace {

/// A variable of the environment as long as this lives: not for the programs that are started from here.
class OwnVariable {
public:
    OwnVariable(const char *name, const QByteArray &value)
        : m_name(name), m_wasSet(qEnvironmentVariableIsSet(name)), m_before(qgetenv(name))
    {
        qputenv(name, value);
    }
    OwnVariable(const OwnVariable &) = delete;
    OwnVariable &operator=(const OwnVariable &) = delete;
    ~OwnVariable()
    {
        if (m_wasSet) {
            qputenv(m_name, m_before);
        } else {
            qunsetenv(m_name);
        }
    }

private:
    const char *m_name;
    const bool m_wasSet;
    const QByteArray m_before;
};

/// Starts the web engine, which the first profile of a program does.
///
/// It draws with the processor. Its other way runs the graphics driver inside this process, which lives for weeks: a
/// driver's crash would take the cards along, and the driver's memory, larger than that of the whole rest of the
/// program, would stay after the window is closed.
class EngineStart {
public:
    EngineStart()
    {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
        // Every process of the engine's is forked from one that waits for that behind the walls of the sandbox. The
        // second one, for processes that do without a sandbox, would be there for nobody: we have none of these.
        const OwnVariable flags(flagsVariable, qgetenv(flagsVariable) + " --disable-gpu --no-unsandboxed-zygote");
        const OwnVariable preloaded("LD_PRELOAD", withLeanStart(qgetenv("LD_PRELOAD")));
        // The engine asks the toolkit for what the driver can do, for which the toolkit would load it.
        const OwnVariable integration("QT_XCB_GL_INTEGRATION", "none");
        s_otherHandler = qInstallMessageHandler(leaveOutWhatIsMeant);
        lumenfold::HandOverSender::registerScheme();
        const QWebEngineProfile first;
    }

private:
    /// What every process of the engine's begins with (see webprocess/), which lies beside this module; the program
    /// works without.
    static QByteArray withLeanStart(const QByteArray &others)
    {
        Dl_info module{};
        if (::dladdr(reinterpret_cast<const void *>(&leaveOutWhatIsMeant), &module) == 0) {
            return others;
        }
        const QFileInfo file(QFileInfo(QFile::decodeName(module.dli_fname)).dir(),
                             QStringLiteral("lumenfold_webprocess.so"));
        const QByteArray path = QFile::encodeName(file.absoluteFilePath());
        // The loader knows no way to write these in a list.
        if (!file.exists() || path.contains(' ') || path.contains(':')) {
            return others;
        }
        return others.isEmpty() ? path : path + ':' + others;
    }

    static constexpr const char *flagsVariable = "QTWEBENGINE_CHROMIUM_FLAGS";

    /// The engine warns that it draws without a driver, now or when its threads get there, and tells at length with
    /// which settings it starts. For as long as the program runs, like the module.
    static void leaveOutWhatIsMeant(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        const bool isTalk =
            qstrcmp(context.category, "qt.webenginecontext") == 0 && (type == QtDebugMsg || type == QtInfoMsg);
        if (!isTalk && !message.startsWith(u"No suitable graphics backend found")) {
            s_otherHandler(type, context, message);
        }
    }

    static inline QtMessageHandler s_otherHandler = nullptr;
};

} // namespace

extern "C" Q_DECL_EXPORT void lumenfoldStartEngine()
{
    static const EngineStart start;
}

extern "C" Q_DECL_EXPORT lumenfold::EditorView *lumenfoldMakeEditorView(const lumenfold::EditorView::Options *options,
                                                                        lumenfold::EditorViewClient *client,
                                                                        QWidget *parent)
{
    return new lumenfold::WebEngineView(*options, *client, parent);
}
