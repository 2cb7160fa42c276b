#pragma once

#include "common/Session.h"
#include "support/TestInstallation.h"

#include <gtest/gtest.h>

namespace pvardo::test {

// A test that runs in a fresh temporary installation: before each test the
// session's folders point at it. A fixture that adds its own set-up calls
// InstallationTest::SetUp() first.
class InstallationTest : public ::testing::Test
{
protected:
    void SetUp() override { installation.applyTo(session()); }

    TestInstallation installation;
};

} // namespace pvardo::test
