#pragma once

#include "qorv/CoClass.h"

#include <gtest/gtest.h>

namespace Tests {

/// A test after which no COM object of this program is left that was not there before.
class LiveObjectsTest : public testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(m_live_before, Qorv::g_live_objects.load()); }

private:
    const ULONG m_live_before = Qorv::g_live_objects.load();
};

} // namespace Tests
