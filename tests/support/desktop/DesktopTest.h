#pragma once

#include "tests/support/desktop/Desktop.h"

#include <gtest/gtest.h>

#include <memory>

namespace lumenfold::test {

/// Equal in size and colour of every pixel. On failure both pictures, and one of where they differ, are kept beside
/// the test's other evidence.
[[nodiscard]] ::testing::AssertionResult samePicture(const QImage &actual, const QImage &expected);

/// A test with a desktop. After a failure the screen, the clipboard and the logs are kept in
/// build/test-failures/<test>/, and the test says so.
class DesktopTest : public ::testing::Test {
protected:
    /// Makes the desktop and starts the program in it.
    Desktop &start(const DesktopOptions &options = {});
    /// Makes the desktop alone.
    Desktop &prepare(const DesktopOptions &options = {});

    void TearDown() override;

    std::unique_ptr<Desktop> m_desktop;
};

} // namespace lumenfold::test
