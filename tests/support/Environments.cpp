#include "support/Environments.h"

#include "core/trace/Trace.h"
#include "support/DevService.h"
#include "support/Log.h"
#include "wine/WineNetwork.h"

namespace Tests {

void LogEnvironment::SetUp() {
    m_folder.emplace();
    m_variable.emplace(L"TMP", m_folder->Path().wstring());
    const LogSwitch log_to_file(2);
    InitLog();
    ASSERT_TRUE(IsLogEnabled());
}

void LogEnvironment::TearDown() {
    const std::string log = ReadBytes(LogPath());
    for (const std::string& token : Service::KnownTokens())
        EXPECT_EQ(log.find(token), std::string::npos) << "an access token came into the log";
    CloseLog();
    m_variable.reset();
    m_folder.reset();
}

std::filesystem::path LogEnvironment::LogPath() {
    return std::filesystem::path(Variable(L"TMP")) / "Qorvx-Dropbox.log";
}

void ServiceEnvironment::SetUp() {
    DevHost::RedirectWinInet();
    DevHost::RedirectModuleImports(GetModuleHandleW(nullptr));
}

} // namespace Tests
