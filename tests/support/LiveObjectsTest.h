#pragma once

#include "qorv/CoClass.h"

#include <gtest/gtest.h>

namespace Tests {

/// Checks that a test leaves no new COM objects in this program.
class LiveObjectsTest : public testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(m_live_before, Qorv::g_live_objects.load()); }

private:
    const ULONG m_live_before = Qorv::g_live_objects.load();
};

} // namespace Tests
