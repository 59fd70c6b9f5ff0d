#pragma once

// What nearly every test reads, directly or through the headers of the program. Compiled once (see CMakeLists.txt); no
// source includes this file itself, so each still names what it uses.
#include "tests/support/unit/LogWatch.h"

#include <QCoroTask>
#include <QDebug>
#include <QImage>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <tl/expected.hpp>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <vector>
