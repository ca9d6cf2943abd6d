#pragma once

#include "core/host/Resource.h"
#include "host/MainInstance.h"
#include "support/LiveObjectsTest.h"
#include "support/TemporaryFolder.h"

#include <ole2.h>

namespace Tests {

/// A test with the development host and the plug-in's texts, but without the plug-in.
class HostTest : public LiveObjectsTest {
protected:
    void SetUp() override {
        ASSERT_TRUE(SUCCEEDED(OleInitialize(nullptr)));
        m_host = Qorv::Create<DevHost::MainInstance>(m_profile.Path());
        const Resource strings(MAKEINTRESOURCEW(IDR_STRINGS_XML), L"XML");
        ASSERT_EQ(S_OK, m_host->MergeLocalization(strings.OpenStream()));
    }
    void TearDown() override {
        m_host->Close();
        m_host.Reset();
        OleUninitialize();
        LiveObjectsTest::TearDown();
    }

    Qorv::ComPtr<DevHost::MainInstance> m_host;

private:
    const TemporaryFolder m_profile;
};

} // namespace Tests
