#include "editor/EditorModule.h"

#include "platform/memory/FilePages.h"
#include "platform/modules/ProgramModule.h"
#include "platform/sandbox/WebSandbox.h"

#include <QCoreApplication>
#include <QOpenGLContext>

#include <mutex>
#include <optional>

/// The toolkit has it for modules like the web engine, without a public header.
Q_GUI_EXPORT void qt_gl_set_global_share_context(QOpenGLContext *context); // NOLINT(readability-identifier-naming)
Q_GUI_EXPORT QOpenGLContext *qt_gl_global_share_context();                 // NOLINT(readability-identifier-naming)

namespace lumenfold {
namespace {

constexpr QByteArrayView engineFiles = "libQt6WebEngine";

using StartEngine = void();
using MakeView = EditorView *(const EditorView::Options *options, EditorViewClient *client, QWidget *parent);

/// What the module itself gives.
struct Functions {
    StartEngine *startEngine;
    MakeView *makeView;
};

/// The web engine looks at the graphics context that a program makes for it at its start. Ours would wait for a
/// graphics driver then, for an editor that may never open; and the engine is to do without a driver anyway (see
/// module/Plugin.cpp). One that was never brought to life tells it that there is none.
void standInForGraphicsContext()
{
    if (qt_gl_global_share_context() == nullptr) {
        auto *context = new QOpenGLContext;
        context->moveToThread(QCoreApplication::instance()->thread());
        qt_gl_set_global_share_context(context);
    }
}

tl::expected<Functions, QString> functionsOfModule()
{
    const QString file = QStringLiteral("lumenfold_editor.so");
    const auto start = functionOfModule(file, "lumenfoldStartEngine");
    if (!start) {
        return tl::unexpected(start.error());
    }
    const auto make = functionOfModule(file, "lumenfoldMakeEditorView");
    if (!make) {
        return tl::unexpected(make.error());
    }
    return Functions{reinterpret_cast<StartEngine *>(*start), reinterpret_cast<MakeView *>(*make)};
}

} // namespace

tl::expected<EditorModule, EditorModuleTrouble> loadEditorModule()
{
    // The web engine ends the whole program when it finds that it cannot have its sandbox, so that is found out before.
    switch (webSandbox()) {
    case WebSandbox::superuser:
        return tl::unexpected(EditorModuleTrouble{EditorModuleTrouble::Kind::superuser,
                                                  QStringLiteral("the superuser's programs have no sandbox")});
    case WebSandbox::unavailable:
        return tl::unexpected(EditorModuleTrouble{
            EditorModuleTrouble::Kind::noSandbox,
            QStringLiteral("the system does not let programs make user namespaces, which a sandbox needs")});
    case WebSandbox::available:
        break;
    }

    static std::mutex mutex;
    const std::scoped_lock lock(mutex);
    // One that is missing may be installed while the program runs.
    static std::optional<Functions> functions;
    if (!functions) {
        standInForGraphicsContext();
        const auto found = functionsOfModule();
        if (!found) {
            return tl::unexpected(EditorModuleTrouble{EditorModuleTrouble::Kind::missing, found.error()});
        }
        functions = *found;
    }
    // After a time without the editor as well as the first time, it is on the disk alone.
    readFilePagesAhead(engineFiles);
    return EditorModule{
        .startEngine = functions->startEngine,
        .makeView = [make = functions->makeView](
                        const EditorView::Options &options, EditorViewClient &client,
                        QWidget *parent) { return std::unique_ptr<EditorView>(make(&options, &client, parent)); },
    };
}

void giveEngineBack()
{
    giveBackFilePages(engineFiles);
}

} // namespace lumenfold
