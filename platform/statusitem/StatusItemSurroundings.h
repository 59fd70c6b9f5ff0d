#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace lumenfold {

class Appearance;

/// What a status item takes from the rest of the program.
struct StatusItemSurroundings {
    /// Outlives the item.
    const Appearance &appearance;
    /// Where drawings may be kept for the desktop to read; empty for nowhere.
    QString iconFolder;
    /// Gives a menu of our own its colours.
    std::function<void(QWidget &menu)> prepareMenu = [](QWidget &) {};
};

} // namespace lumenfold
