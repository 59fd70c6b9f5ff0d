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

using StartEngine = void();
using MakeView = EditorView *(const EditorView::Options *options, EditorViewClient *client, QWidget *parent);

/// What the module itself gives.
struct Functions {
    StartEngine *startEngine;
    MakeView *makeView;
};

/// The module once it is loaded. One that is missing may be installed while the program runs.
struct Loaded {
    std::mutex mutex;
    std::optional<Functions> functions;
    /// What the program had in its memory before.
    QSet<QByteArray> otherFiles;

    /// The module, the engine and the libraries that they brought along.
    [[nodiscard]] QSet<QByteArray> files() const { return mappedFiles() - otherFiles; }
};

Loaded &loaded()
{
    static Loaded theOne;
    return theOne;
}

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

    Loaded &module = loaded();
    const std::scoped_lock lock(module.mutex);
    if (!module.functions) {
        standInForGraphicsContext();
        module.otherFiles = mappedFiles();
        const auto found = functionsOfModule();
        if (!found) {
            return tl::unexpected(EditorModuleTrouble{EditorModuleTrouble::Kind::missing, found.error()});
        }
        module.functions = *found;
    }
    // After a time without the editor as well as the first time, it may be on the disk alone.
    readFilePagesAhead(module.files());
    return EditorModule{
        .startEngine = module.functions->startEngine,
        .makeView = [make = module.functions->makeView](
                        const EditorView::Options &options, EditorViewClient &client,
                        QWidget *parent) { return std::unique_ptr<EditorView>(make(&options, &client, parent)); },
    };
}

void giveEngineBack()
{
    Loaded &module = loaded();
    const std::scoped_lock lock(module.mutex);
    if (module.functions) {
        giveBackFilePages(module.files());
    }
}

} // namespace lumenfold
