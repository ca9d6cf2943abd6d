#include "support/Log.h"

#include "support/Environments.h"
#include "support/TemporaryFolder.h"

#include <regex>
#include <stdexcept>

namespace Tests {
namespace {

constexpr wchar_t switch_key[] = L"Software\\Talvern Soft\\QorvEditor\\3.0\\Debug";
constexpr wchar_t switch_value[] = L"DropboxLog";

void Check(LSTATUS i_status) {
    if (i_status != ERROR_SUCCESS)
        throw std::runtime_error("the registry cannot be prepared: error " + std::to_string(i_status));
}

HKEY CreateKey(HKEY i_parent, const wchar_t* i_name) {
    HKEY key = nullptr;
    Check(RegCreateKeyExW(i_parent, i_name, 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr, &key, nullptr));
    return key;
}

} // namespace

LogSwitch::LogSwitch(DWORD i_type, std::string_view i_data)
    : m_key_name(L"Software\\ConnectorTests-" + std::to_wstring(GetCurrentProcessId())) {
    m_root = CreateKey(HKEY_CURRENT_USER, m_key_name.c_str());
    const HKEY key = CreateKey(m_root, switch_key);
    Check(RegSetValueExW(key, switch_value, 0, i_type, reinterpret_cast<const BYTE*>(i_data.data()),
                         static_cast<DWORD>(i_data.size())));
    RegCloseKey(key);
    Check(RegOverridePredefKey(HKEY_CURRENT_USER, m_root));
}

LogSwitch::LogSwitch(DWORD i_level) : LogSwitch(REG_DWORD, {reinterpret_cast<const char*>(&i_level), sizeof i_level}) {}

LogSwitch::~LogSwitch() {
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegCloseKey(m_root);
    RegDeleteTreeW(HKEY_CURRENT_USER, m_key_name.c_str());
}

std::string WithoutHeads(const std::string& i_lines) {
    static const std::regex head(R"((^|\n)\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}\|[ 0-9a-f]{4,}\|)");
    return std::regex_replace(i_lines, head, "$1");
}

LogCapture::LogCapture() : m_start(ReadBytes(LogEnvironment::LogPath()).size()) {}

std::string LogCapture::Text() const {
    return ReadBytes(LogEnvironment::LogPath()).substr(m_start);
}

} // namespace Tests
