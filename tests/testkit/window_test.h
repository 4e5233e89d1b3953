#pragma once

// The fixture of window tests: a scripted user, a virtual clock, a temporary data directory
// and a clean shell record; every window still open at the end is destroyed.

#include "framework/ui/shell.h"
#include "tests/testkit/scripted_user.h"
#include "tests/testkit/temporary_data_directory.h"
#include "tests/testkit/virtual_clock.h"
#include "tests/testkit/window_driver.h"

#include <gtest/gtest.h>

namespace tessaly::testkit {

class WindowTest : public ::testing::Test {
protected:
    void SetUp() override { Shell::current().clearRecord(); }

    void TearDown() override {
        for (Dialog* dialog : Dialog::windows())
            dialog->destroyWindow();
        pumpMessages();
    }

    TemporaryDataDirectory dataDirectory;
    VirtualClock clock;
    ScriptedUser user;
};

} // namespace tessaly::testkit
