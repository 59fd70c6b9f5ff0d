#pragma once

#include "settings/SettingsWindow.h"

namespace lumenfold::test {

class FakeSettingsWindow : public SettingsWindow {
public:
    void present() override { ++presentations; }

    int presentations = 0;
};

} // namespace lumenfold::test
