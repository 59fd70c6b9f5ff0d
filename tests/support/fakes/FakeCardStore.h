#pragma once

#include "cards/CardStore.h"

#include <QMap>
#include <QStringList>

namespace lumenfold::test {

/// A card store in memory.
class FakeCardStore : public CardStore {
public:
    void saveImage(const Image &image, const QString &id) override;
    void saveEditorSourceImage(const Image &image, const QString &id) override;
    [[nodiscard]] std::optional<Image> loadImage(const QString &id) override;
    [[nodiscard]] std::optional<Image> loadEditorSourceImage(const QString &id) override;
    void deleteImage(const QString &id) override;
    void writeManifest(const std::vector<PersistedCard> &cards) override;
    [[nodiscard]] std::vector<PersistedCard> readManifest() override;

    /// What was asked for that changes the store, in order: "save <id>", "save source <id>", "delete <id>", "manifest".
    QStringList calls;
    QMap<QString, Image> images;
    QMap<QString, Image> editorSourceImages;
    std::vector<PersistedCard> manifest;
};

} // namespace lumenfold::test
