#include "BareService.h"

#include "dropbox/ServiceConfiguration.h"
#include "support/DevService.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

namespace Bench {
namespace {

using Http::InternetHandle;
namespace ServiceConfiguration = Dropbox::ServiceConfiguration;

constexpr DWORD whole_text = static_cast<DWORD>(-1);
constexpr wchar_t json_content[] = L"Content-Type: application/json\r\n";
constexpr wchar_t byte_content[] = L"Content-Type: application/octet-stream\r\n";

void Require(bool i_is_done, const char* i_what) {
    if (!i_is_done)
        throw std::runtime_error(std::string(i_what) + " failed: error " + std::to_string(GetLastError()));
}

InternetHandle Connect(HINTERNET i_internet, const wchar_t* i_host) {
    InternetHandle host(InternetConnectW(i_internet, i_host, INTERNET_DEFAULT_HTTPS_PORT, nullptr, nullptr,
                                         INTERNET_SERVICE_HTTP, 0, 0));
    Require(host != nullptr, "InternetConnect");
    return host;
}

void RequireSuccess(HINTERNET i_request) {
    DWORD status = 0;
    DWORD size = sizeof status;
    Require(HttpQueryInfoW(i_request, HTTP_QUERY_FLAG_NUMBER | HTTP_QUERY_STATUS_CODE, &status, &size, nullptr),
            "HttpQueryInfo");
    if (status != HTTP_STATUS_OK)
        throw std::runtime_error("the service answers " + std::to_string(status));
}

/// Calls `i_take(data, size)` for each piece of the reply's body.
template <typename Take>
void ReadBody(HINTERNET i_request, std::vector<char>& io_buffer, Take&& i_take) {
    for (;;) {
        DWORD size = 0;
        Require(InternetReadFile(i_request, io_buffer.data(), static_cast<DWORD>(io_buffer.size()), &size),
                "InternetReadFile");
        if (size == 0)
            return;
        i_take(io_buffer.data(), size);
    }
}

/// The cursor of a page, empty when it is the last one.
std::string NextCursor(std::string_view i_page) {
    constexpr std::string_view key = "\"cursor\":\"";
    if (i_page.rfind("\"has_more\":true") == i_page.npos)
        return {};
    const std::size_t start = i_page.rfind(key);
    if (start == i_page.npos)
        throw std::runtime_error("the service's listing has no cursor");
    const std::string_view rest = i_page.substr(start + key.size());
    return std::string(rest.substr(0, std::min(rest.find('"'), rest.size())));
}

} // namespace

BareService::BareService()
    : m_authorization(Tests::Service::AuthorizationHeader())
    , m_internet(InternetOpenW(L"Benchmark", INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0)) {
    Require(m_internet != nullptr, "InternetOpen");
    m_api = Connect(m_internet, ServiceConfiguration::api_host);
    m_content = Connect(m_internet, ServiceConfiguration::content_host);
}

InternetHandle BareService::Open(HINTERNET i_host, const wchar_t* i_call, const std::wstring& i_headers) const {
    InternetHandle request(HttpOpenRequestW(i_host, L"POST", i_call, nullptr, nullptr, nullptr,
                                            INTERNET_FLAG_KEEP_CONNECTION | INTERNET_FLAG_SECURE, 0));
    Require(request != nullptr, "HttpOpenRequest");
    const std::wstring headers = m_authorization + i_headers;
    Require(HttpAddRequestHeadersW(request, headers.c_str(), whole_text, HTTP_ADDREQ_FLAG_ADD),
            "HttpAddRequestHeaders");
    return request;
}

std::uint64_t BareService::Download(const std::wstring& i_path, std::vector<char>& io_buffer) const {
    const InternetHandle request =
        Open(m_content, L"2/files/download", L"Dropbox-API-Arg: {\"path\": \"" + i_path + L"\"}\r\n");
    Require(HttpSendRequestW(request, nullptr, 0, nullptr, 0), "HttpSendRequest");
    RequireSuccess(request);
    std::uint64_t total = 0;
    ReadBody(request, io_buffer, [&](const char*, DWORD i_size) { total += i_size; });
    return total;
}

void BareService::Upload(const std::wstring& i_path, std::uint64_t i_size, const std::vector<char>& i_buffer) const {
    const InternetHandle request =
        Open(m_content, L"2/files/upload",
             byte_content + (L"Dropbox-API-Arg: {\"path\": \"" + i_path + L"\",\"mode\": \"overwrite\"}\r\n"));
    INTERNET_BUFFERSW announced{};
    announced.dwStructSize = sizeof announced;
    announced.dwBufferTotal = static_cast<DWORD>(i_size);
    Require(HttpSendRequestExW(request, &announced, nullptr, 0, 0), "HttpSendRequestEx");
    for (std::uint64_t left = i_size; left != 0;) {
        DWORD size = 0;
        Require(InternetWriteFile(request, i_buffer.data(),
                                  static_cast<DWORD>(std::min<std::uint64_t>(left, i_buffer.size())), &size),
                "InternetWriteFile");
        left -= size;
    }
    Require(HttpEndRequestW(request, nullptr, 0, 0), "HttpEndRequest");
    RequireSuccess(request);
    std::vector<char> reply(4096);
    ReadBody(request, reply, [](const char*, DWORD) {});
}

std::string BareService::FetchPage(const wchar_t* i_call, const std::string& i_arguments,
                                   std::vector<char>& io_buffer) const {
    const InternetHandle request = Open(m_api, i_call, json_content);
    std::string arguments = i_arguments; // WinINet wants a pointer that could be written to.
    Require(HttpSendRequestW(request, nullptr, 0, arguments.data(), static_cast<DWORD>(arguments.size())),
            "HttpSendRequest");
    RequireSuccess(request);
    std::string page;
    ReadBody(request, io_buffer, [&](const char* i_data, DWORD i_size) { page.append(i_data, i_size); });
    return page;
}

void BareService::FetchListing(const std::string& i_path, std::vector<char>& io_buffer,
                               const std::function<void(const std::string&)>& i_take) const {
    std::string page = FetchPage(L"2/files/list_folder", "{\"path\": \"" + i_path + "\"}", io_buffer);
    i_take(page);
    for (std::string cursor = NextCursor(page); !cursor.empty(); cursor = NextCursor(page)) {
        page = FetchPage(L"2/files/list_folder/continue", "{\"cursor\": \"" + cursor + "\"}", io_buffer);
        i_take(page);
    }
}

} // namespace Bench
