#pragma once

#include "qorv/Base.h"

#include <string>
#include <string_view>

namespace Tests {

/// Sets the debug log's registry switch while it exists, for this process only: other programs don't see it.
class LogSwitch {
public:
    LogSwitch(DWORD i_type, std::string_view i_data);
    /// A switch of the right type.
    explicit LogSwitch(DWORD i_level);
    LogSwitch(const LogSwitch&) = delete;
    LogSwitch& operator=(const LogSwitch&) = delete;
    ~LogSwitch();

private:
    std::wstring m_key_name;
    HKEY m_root = nullptr;
};

/// Lines of a log, each without its head (time and thread).
std::string WithoutHeads(const std::string& i_lines);

/// What this process logs while this exists. Needs a `LogEnvironment`.
class LogCapture {
public:
    LogCapture();

    /// The lines since the capture began, as the file has them.
    std::string Text() const;
    std::string Messages() const { return WithoutHeads(Text()); }
    bool Has(std::string_view i_text) const { return Text().find(i_text) != std::string::npos; }

private:
    std::size_t m_start;
};

} // namespace Tests
