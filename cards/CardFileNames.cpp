#include "cards/CardFileNames.h"

namespace lumenfold {
namespace {

constexpr QLatin1String imageSuffix(".png");
constexpr QLatin1String editorSourceSuffix("-source.png");
/// The longest name that the file systems of this world take.
constexpr qsizetype maximumNameBytes = 255;

/// An id must do for the names of both its files.
bool isUsable(const QString &id)
{
    return !id.isEmpty() && id.isValidUtf16() && !id.contains(u'/') && !id.contains(QChar::Null) &&
           id.toUtf8().size() + editorSourceSuffix.size() <= maximumNameBytes;
}

} // namespace

std::optional<QString> imageFileName(const QString &id)
{
    return isUsable(id) ? std::optional(id + imageSuffix) : std::nullopt;
}

std::optional<QString> editorSourceImageFileName(const QString &id)
{
    return isUsable(id) ? std::optional(id + editorSourceSuffix) : std::nullopt;
}

bool isImageFileName(const QString &name)
{
    return name.endsWith(imageSuffix) && name.size() > imageSuffix.size();
}

} // namespace lumenfold
