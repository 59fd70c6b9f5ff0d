#include "cards/CardWrites.h"

#include "cards/CardFileNames.h"

#include <algorithm>
#include <utility>

namespace lumenfold {
namespace {

QSet<QString> imageNames(const std::vector<PersistedCard> &cards)
{
    QSet<QString> names;
    for (const PersistedCard &card : cards) {
        if (const auto name = imageFileName(card.id)) {
            names.insert(*name);
        }
        if (const auto name = editorSourceImageFileName(card.id)) {
            names.insert(*name);
        }
    }
    return names;
}

} // namespace

void CardWrites::save(const QString &name, const Image &image)
{
    std::erase_if(m_saves, [&name](const Save &save) { return save.name == name; });
    m_removals.remove(name);
    m_thumbnails.remove(name);
    m_saves.push_back({{name, image}});
}

void CardWrites::remove(const QString &name)
{
    std::erase_if(m_saves, [&name](const Save &save) { return save.name == name; });
    m_removals.insert(name);
    m_thumbnails.remove(name);
}

void CardWrites::list(std::vector<PersistedCard> cards)
{
    // No more than this: two hundred cards that are dismissed one by one make two hundred lists.
    for (AskedSave &save : m_saves) {
        save.isBeforeList = true;
    }
    m_manifest = std::move(cards);
}

void CardWrites::keepThumbnail(const QString &name, const Image &image)
{
    if (!removes(name) && imageToSave(name).value_or(image) == image) {
        m_thumbnails.insert(name, image);
    }
}

std::vector<CardWrites::Save> CardWrites::saves() const
{
    const QSet<QString> kept = namesToKeep();
    std::vector<Save> saves;
    for (const AskedSave &save : m_saves) {
        if (!m_manifest || kept.contains(save.name)) {
            saves.push_back(save);
        }
    }
    return saves;
}

void CardWrites::append(const CardWrites &later)
{
    for (const QString &name : later.m_removals) {
        remove(name);
    }
    // What is saved there either stands in the list or was saved after it.
    if (later.m_manifest) {
        list(*later.m_manifest);
    }
    for (const Save &one : later.saves()) {
        save(one.name, one.image);
    }
    m_imagesOfFiles.insert(m_imagesOfFiles.end(), later.m_imagesOfFiles.begin(), later.m_imagesOfFiles.end());
    m_thumbnails.insert(later.m_thumbnails);
}

std::optional<Image> CardWrites::imageToSave(const QString &name) const
{
    const auto found = std::ranges::find(m_saves, name, &Save::name);
    return found == m_saves.end() || removes(name) ? std::nullopt : std::optional(found->image);
}

bool CardWrites::removes(const QString &name) const
{
    return m_removals.contains(name) || (m_manifest && !namesToKeep().contains(name));
}

QSet<QString> CardWrites::namesToKeep() const
{
    QSet<QString> names = imageNames(m_manifest.value_or(std::vector<PersistedCard>()));
    for (const AskedSave &save : m_saves) {
        if (!save.isBeforeList) {
            names.insert(save.name);
        }
    }
    return names;
}

} // namespace lumenfold
