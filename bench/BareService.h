#pragma once

#include "http/InternetHandle.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace Bench {

/// The plain reference: the service's calls over WinINet and nothing else. Throws std::runtime_error.
class BareService {
public:
    BareService();

    /// Reads one of the account's files to its end and returns its size.
    std::uint64_t Download(const std::wstring& i_path, std::vector<char>& io_buffer) const;

    /// Sends `i_size` bytes, the buffer over and over.
    void Upload(const std::wstring& i_path, std::uint64_t i_size, const std::vector<char>& i_buffer) const;

    /// Fetches all pages of a folder's listing, each as text for `i_take`. Only the next cursor is looked at.
    void FetchListing(const std::string& i_path, std::vector<char>& io_buffer,
                      const std::function<void(const std::string&)>& i_take) const;

private:
    Http::InternetHandle Open(HINTERNET i_host, const wchar_t* i_call, const std::wstring& i_headers) const;
    std::string FetchPage(const wchar_t* i_call, const std::string& i_arguments, std::vector<char>& io_buffer) const;

    std::wstring m_authorization;
    Http::InternetHandle m_internet;
    Http::InternetHandle m_api;
    Http::InternetHandle m_content;
};

} // namespace Bench
