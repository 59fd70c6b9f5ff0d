#pragma once

#include "platform/image/Image.h"

#include <QDateTime>
#include <QString>

#include <functional>
#include <optional>

namespace lumenfold {

class AppConfig;
class Pasteboard;

/// The two things that can be done with a screenshot without the online service. Keeps no state; main thread.
class ActionHandler {
public:
    using Clock = std::function<QDateTime()>;

    /// The collaborators must outlive this object. `now` gives the time that names a saved file.
    ActionHandler(Pasteboard &pasteboard, const AppConfig &config, Clock now = &QDateTime::currentDateTime);

    /// Replaces the contents of the pasteboard by the image and, where its PNG bytes are ready, those bytes.
    ///
    /// A fresh capture is still being encoded. It is not waited for: the pasteboard offers the PNG of the image that it
    /// was given, and only a program that pastes before the encoding has ended waits for it. An image that cannot be
    /// encoded leaves the image object alone on the pasteboard; nothing is reported.
    void copyToClipboard(const Image &image) const;

    /// Writes the PNG into the save folder under the name of this second, replacing a file of that name; either the
    /// whole file appears or nothing changes. Waits for a running encoding. The path of the file, absolute; nothing
    /// when the image has no PNG (silently) or cannot be written (logged). The folder is not created.
    std::optional<QString> saveToDisk(const Image &image) const; // NOLINT(modernize-use-nodiscard): a card ignores it

private:
    Pasteboard &m_pasteboard;
    const AppConfig &m_config;
    Clock m_now;
};

} // namespace lumenfold
