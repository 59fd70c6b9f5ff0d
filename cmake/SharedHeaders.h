#pragma once

// What many sources of the program read, directly or through its headers. Compiled once for the builds that tests use
// (see lumenfold_precompile); no source includes this file itself, so each still names what it uses.
#include "platform/geometry/Geometry.h"

#include <QCoroTask>
#include <QDebug>
#include <QImage>
#include <QObject>
#include <QPointer>
#include <QString>

#include <tl/expected.hpp>

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>
