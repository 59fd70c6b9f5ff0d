#include "tests/support/fakes/FakeCardStore.h"

namespace lumenfold::test {
namespace {

std::optional<Image> find(const QMap<QString, Image> &images, const QString &id)
{
    const auto found = images.constFind(id);
    return found == images.constEnd() ? std::nullopt : std::optional(*found);
}

} // namespace

void FakeCardStore::saveImage(const Image &image, const QString &id)
{
    calls.append(QStringLiteral("save ") + id);
    images.insert(id, image);
}

void FakeCardStore::saveEditorSourceImage(const Image &image, const QString &id)
{
    calls.append(QStringLiteral("save source ") + id);
    editorSourceImages.insert(id, image);
}

std::optional<Image> FakeCardStore::loadImage(const QString &id)
{
    return find(images, id);
}

std::optional<Image> FakeCardStore::loadEditorSourceImage(const QString &id)
{
    return find(editorSourceImages, id);
}

void FakeCardStore::deleteImage(const QString &id)
{
    calls.append(QStringLiteral("delete ") + id);
    images.remove(id);
    editorSourceImages.remove(id);
}

void FakeCardStore::writeManifest(const std::vector<PersistedCard> &cards)
{
    calls.append(QStringLiteral("manifest"));
    manifest = cards;
}

std::vector<PersistedCard> FakeCardStore::readManifest()
{
    return manifest;
}

} // namespace lumenfold::test
