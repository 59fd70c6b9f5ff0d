#pragma once

#include <QString>
#include <QtGlobal>

#include <tl/expected.hpp>

namespace lumenfold {

/// Loads a module of the program's own (`file`, for example "lumenfold_keyring.so") if it is not loaded yet, and finds
/// the function of that name in it. A module lies beside the program or, installed, in the program's folder for
/// modules, and stays loaded. The error says what was wrong with either place. Any thread.
[[nodiscard]] tl::expected<QFunctionPointer, QString> functionOfModule(const QString &file, const char *name);

} // namespace lumenfold
