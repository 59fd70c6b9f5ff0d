#pragma once

#include <QImage>
#include <QString>

#include <functional>
#include <vector>

namespace lumenfold::test {

/// One state of something that is seen, as it is painted now and on a screen of the program's own scale.
struct Scene {
    /// The name of its file, without an ending.
    QString name;
    std::function<QImage()> paint;
};

/// Every state, in the light and in the dark. Needs an application object for widgets.
[[nodiscard]] std::vector<Scene> allScenes();

} // namespace lumenfold::test
