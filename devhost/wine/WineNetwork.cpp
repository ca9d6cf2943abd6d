// The sockets' own header must come before all others of Windows.
#include <winsock2.h>
#include <ws2tcpip.h>

#include "wine/WineNetwork.h"

#include <wininet.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <cwchar>
#include <map>
#include <mutex>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>

#ifndef DROPBOX_API_HOST
#define DROPBOX_API_HOST "api.dropboxapi.com"
#endif
#ifndef DROPBOX_CONTENT_HOST
#define DROPBOX_CONTENT_HOST "content.dropboxapi.com"
#endif
#ifndef DROPBOX_WEB_HOST
#define DROPBOX_WEB_HOST "www.dropbox.com"
#endif

namespace DevHost {
namespace {

// ---- Imports ------------------------------------------------------------------------------------------------------

void WriteSlot(ULONG_PTR& io_slot, ULONG_PTR i_value) {
    DWORD protection = 0;
    if (!VirtualProtect(&io_slot, sizeof(io_slot), PAGE_READWRITE, &protection))
        throw std::runtime_error("the import table could not be made writable");
    io_slot = i_value;
    VirtualProtect(&io_slot, sizeof(io_slot), protection, &protection);
}

/// Makes i_module call i_replacement instead of the function i_name of i_library, and returns that function. Finds the
/// import by the address that the loader has put into its slot, whether imported by name or by number.
/// An import that is not required may be missing.
template <typename Function>
Function* ReplaceImport(HMODULE i_module, const wchar_t* i_library, const char* i_name, Function* i_replacement,
                        bool i_is_required = true) {
    const auto original = reinterpret_cast<ULONG_PTR>(GetProcAddress(GetModuleHandleW(i_library), i_name));
    auto* const image = reinterpret_cast<BYTE*>(i_module);
    const auto* const dos_header = reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
    const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(image + dos_header->e_lfanew);
    const IMAGE_DATA_DIRECTORY& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];

    bool found = false;
    const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(image + directory.VirtualAddress);
    for (; directory.Size != 0 && library->Name != 0; ++library) {
        for (auto* slot = reinterpret_cast<ULONG_PTR*>(image + library->FirstThunk); *slot != 0; ++slot) {
            if (*slot == original) {
                WriteSlot(*slot, reinterpret_cast<ULONG_PTR>(i_replacement));
                found = true;
            }
        }
    }
    if (!found && i_is_required)
        throw std::runtime_error(std::string("there is no import of ") + i_name + " to redirect");
    return reinterpret_cast<Function*>(original);
}

// ---- Where to connect ---------------------------------------------------------------------------------------------

/// Inside this process 127.77.0.1, .2 and .3 stand for these hosts.
constexpr std::array<std::string_view, 3> service_hosts = {DROPBOX_API_HOST, DROPBOX_CONTENT_HOST, DROPBOX_WEB_HOST};
constexpr ULONG first_stand_in = 0x7F4D0001;

constexpr long tunnel_patience_seconds = 30;

sockaddr_in development_service{};

INT WSAAPI GetStandInAddrInfo(PCWSTR i_node, PCWSTR i_service, const ADDRINFOW* i_hints, PADDRINFOW* o_result) {
    for (std::size_t index = 0; i_node != nullptr && index < service_hosts.size(); ++index) {
        const std::wstring name(service_hosts[index].begin(), service_hosts[index].end());
        if (_wcsicmp(i_node, name.c_str()) == 0) {
            const std::wstring stand_in = L"127.77.0." + std::to_wstring(index + 1);
            return GetAddrInfoW(stand_in.c_str(), i_service, i_hints, o_result);
        }
    }
    return GetAddrInfoW(i_node, i_service, i_hints, o_result);
}

/// Waits until the socket can be read (or written, with i_write), blocking or not.
bool WaitForSocket(SOCKET i_socket, bool i_write) {
    fd_set wanted;
    FD_ZERO(&wanted);
    FD_SET(i_socket, &wanted);
    fd_set failed = wanted;
    timeval patience = {tunnel_patience_seconds, 0};
    const int count = select(0, i_write ? nullptr : &wanted, i_write ? &wanted : nullptr, &failed, &patience);
    return count > 0 && FD_ISSET(i_socket, &wanted);
}

bool ConnectToService(SOCKET i_socket) {
    const auto* const address = reinterpret_cast<const sockaddr*>(&development_service);
    return connect(i_socket, address, sizeof(development_service)) == 0 ||
           (WSAGetLastError() == WSAEWOULDBLOCK && WaitForSocket(i_socket, true));
}

bool SendAll(SOCKET i_socket, std::string_view i_text) {
    while (!i_text.empty()) {
        if (!WaitForSocket(i_socket, true))
            return false;
        const int sent = send(i_socket, i_text.data(), static_cast<int>(i_text.size()), 0);
        if (sent <= 0)
            return false;
        i_text.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

/// Reads one reply's head and not a byte more: the rest is for WinINet.
bool ReceiveTunnelReply(SOCKET i_socket) {
    constexpr std::size_t longest_head = 4096;
    std::string head;
    while (!head.ends_with("\r\n\r\n")) {
        char letter = 0;
        if (head.size() == longest_head || !WaitForSocket(i_socket, false) || recv(i_socket, &letter, 1, 0) != 1)
            return false;
        head += letter;
    }
    return head.starts_with("HTTP/1.1 200") || head.starts_with("HTTP/1.0 200");
}

bool OpenTunnel(SOCKET i_socket, std::string_view i_host, u_short i_port) {
    const std::string authority = std::string(i_host) + ":" + std::to_string(i_port);
    const std::string request = "CONNECT " + authority + " HTTP/1.1\r\nHost: " + authority + "\r\n\r\n";
    return ConnectToService(i_socket) && SendAll(i_socket, request) && ReceiveTunnelReply(i_socket);
}

bool IsCallWanted(SOCKET i_socket);

int WSAAPI ConnectThroughService(SOCKET i_socket, const sockaddr* i_address, int i_length) {
    if (!IsCallWanted(i_socket)) {
        WSASetLastError(WSAECONNABORTED);
        return SOCKET_ERROR;
    }
    sockaddr_in address{};
    std::memcpy(&address, i_address, std::min(sizeof(address), static_cast<std::size_t>(i_length)));
    const std::size_t host = ntohl(address.sin_addr.s_addr) - first_stand_in;
    if (address.sin_family != AF_INET || host >= service_hosts.size())
        return connect(i_socket, i_address, i_length);
    if (OpenTunnel(i_socket, service_hosts[host], ntohs(address.sin_port)))
        return 0;
    WSASetLastError(WSAECONNREFUSED);
    return SOCKET_ERROR;
}

std::string ReadServiceAddress() {
    std::array<char, 512> value{};
    const DWORD length = GetEnvironmentVariableA("DEVSERVICE_ADDRESS", value.data(), static_cast<DWORD>(value.size()));
    const std::string address(value.data(), length < value.size() ? length : 0);
    return address == "none" ? std::string() : address;
}

sockaddr_in ResolveServiceAddress(const std::string& i_address) {
    const std::size_t colon = i_address.rfind(':');
    const std::string host = i_address.substr(0, colon);
    const std::string port = colon == std::string::npos ? std::string() : i_address.substr(colon + 1);
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICSERV;
    addrinfo* result = nullptr;
    if (host.empty() || port.empty() || getaddrinfo(host.c_str(), port.c_str(), &hints, &result) != 0)
        throw std::runtime_error("DEVSERVICE_ADDRESS must be host:port or none, but is: " + i_address);
    sockaddr_in address{};
    std::memcpy(&address, result->ai_addr, sizeof(address));
    freeaddrinfo(result);
    return address;
}

/// Wine takes the machine's proxy from the variable http_proxy; it must not get between us and the service.
void BypassProxy() {
    std::wstring hosts;
    for (const std::string_view host : service_hosts)
        hosts.append(host.begin(), host.end()) += L';';
    const wchar_t* const old_hosts = _wgetenv(L"no_proxy");
    _wputenv_s(L"no_proxy", (hosts + (old_hosts == nullptr ? L"" : old_hosts)).c_str());
}

// ---- Requests that are closed by another thread -------------------------------------------------------------------

/// What the threads do with request handles, and the socket that each of them waits for.
class RunningCalls {
public:
    /// The handle's call begins on this thread.
    void Begin(HINTERNET i_request) {
        const std::scoped_lock lock(m_mutex);
        m_calls[GetCurrentThreadId()] = {i_request};
    }
    void End() {
        const std::scoped_lock lock(m_mutex);
        m_calls.erase(GetCurrentThreadId());
    }

    /// This thread is about to wait for the socket; false when its request has been closed.
    bool WaitsFor(SOCKET i_socket) {
        const std::scoped_lock lock(m_mutex);
        const auto call = m_calls.find(GetCurrentThreadId());
        if (call == m_calls.end())
            return true;
        call->second.socket = i_socket;
        return !call->second.is_closed;
    }

    /// Ends the call that another thread has begun with the handle. That may be about to wait and not do so yet.
    void Close(HINTERNET i_request) {
        constexpr int most_attempts = 200; // Milliseconds.
        for (int attempt = 0; attempt < most_attempts && Interrupt(i_request); ++attempt)
            Sleep(1);
    }

private:
    /// Whether the call may still wait. Shutting a socket down does not end the wait for it in Wine; cancelling does.
    bool Interrupt(HINTERNET i_request) {
        const std::scoped_lock lock(m_mutex);
        for (auto& [thread, call] : m_calls) {
            if (call.request != i_request || thread == GetCurrentThreadId())
                continue;
            call.is_closed = true;
            if (call.socket == INVALID_SOCKET)
                return false;
            CancelIoEx(reinterpret_cast<HANDLE>(call.socket), nullptr);
            return true;
        }
        return false;
    }

    struct Call {
        HINTERNET request = nullptr;
        SOCKET socket = INVALID_SOCKET;
        bool is_closed = false;
    };
    std::mutex m_mutex;
    std::map<DWORD, Call> m_calls; ///< By thread.
};

RunningCalls running_calls;

bool IsCallWanted(SOCKET i_socket) {
    return running_calls.WaitsFor(i_socket);
}

class RunningCall {
public:
    explicit RunningCall(HINTERNET i_request) { running_calls.Begin(i_request); }
    ~RunningCall() { running_calls.End(); }
    RunningCall(const RunningCall&) = delete;
    RunningCall& operator=(const RunningCall&) = delete;
};

/// Transfers bytes for the thread's call unless that was closed.
template <typename Transfer>
int TransferForCall(SOCKET i_socket, Transfer i_transfer) {
    if (!running_calls.WaitsFor(i_socket)) {
        WSASetLastError(WSAECONNABORTED);
        return SOCKET_ERROR;
    }
    const int size = i_transfer();
    running_calls.WaitsFor(INVALID_SOCKET);
    return size;
}

int WSAAPI ReceiveForCall(SOCKET i_socket, char* o_data, int i_size, int i_flags) {
    return TransferForCall(i_socket, [&] { return recv(i_socket, o_data, i_size, i_flags); });
}

int WSAAPI SendForCall(SOCKET i_socket, const char* i_data, int i_size, int i_flags) {
    return TransferForCall(i_socket, [&] { return send(i_socket, i_data, i_size, i_flags); });
}

// ---- Streamed uploads ---------------------------------------------------------------------------------------------

/// The requests that HttpSendRequestExW has begun and that have been neither ended nor closed.
class OpenUploads {
public:
    void Add(HINTERNET i_request) {
        const std::scoped_lock lock(m_mutex);
        m_requests.insert(i_request);
    }

    /// Returns whether it was there.
    bool Remove(HINTERNET i_request) {
        const std::scoped_lock lock(m_mutex);
        return m_requests.erase(i_request) == 1;
    }

private:
    std::mutex m_mutex;
    std::set<HINTERNET> m_requests;
};

OpenUploads open_uploads;

// WinINet's own functions. A test program redirects its own imports, so those lead back here.
decltype(&HttpSendRequestExW) wininet_begin = nullptr;
decltype(&HttpEndRequestW) wininet_end = nullptr;
decltype(&InternetCloseHandle) wininet_close = nullptr;
decltype(&HttpSendRequestW) wininet_send = nullptr;
decltype(&InternetReadFile) wininet_read = nullptr;
decltype(&InternetWriteFile) wininet_write = nullptr;

BOOL WINAPI SendCall(HINTERNET i_request, LPCWSTR i_headers, DWORD i_headers_length, LPVOID i_body,
                     DWORD i_body_length) {
    const RunningCall call(i_request);
    return wininet_send(i_request, i_headers, i_headers_length, i_body, i_body_length);
}

BOOL WINAPI ReadCall(HINTERNET i_request, LPVOID o_data, DWORD i_size, LPDWORD o_read) {
    const RunningCall call(i_request);
    return wininet_read(i_request, o_data, i_size, o_read);
}

BOOL WINAPI WriteCall(HINTERNET i_request, LPCVOID i_data, DWORD i_size, LPDWORD o_written) {
    const RunningCall call(i_request);
    return wininet_write(i_request, i_data, i_size, o_written);
}

BOOL WINAPI BeginUpload(HINTERNET i_request, LPINTERNET_BUFFERSW i_buffers, LPINTERNET_BUFFERSW o_buffers,
                        DWORD i_flags, DWORD_PTR i_context) {
    const RunningCall call(i_request);
    const BOOL begun = wininet_begin(i_request, i_buffers, o_buffers, i_flags, i_context);
    if (begun)
        open_uploads.Add(i_request);
    return begun;
}

BOOL WINAPI EndUpload(HINTERNET i_request, LPINTERNET_BUFFERSW o_buffers, DWORD i_flags, DWORD_PTR i_context) {
    open_uploads.Remove(i_request);
    const RunningCall call(i_request);
    return wininet_end(i_request, o_buffers, i_flags, i_context);
}

/// Wine puts the connection of an upload that is closed half-way back into its pool, and the next request's bytes
/// would complete that upload. Ending it first, with no time to wait for the reply, makes Wine drop the connection.
///
/// A call that hangs in another thread goes on after its handle was closed: only its socket can end it.
BOOL WINAPI CloseRequest(HINTERNET i_handle) {
    running_calls.Close(i_handle);
    if (open_uploads.Remove(i_handle)) {
        DWORD milliseconds = 1;
        InternetSetOptionW(i_handle, INTERNET_OPTION_RECEIVE_TIMEOUT, &milliseconds, sizeof(milliseconds));
        wininet_end(i_handle, nullptr, 0, 0);
    }
    return wininet_close(i_handle);
}

} // namespace

bool IsWine() {
    static const bool is_wine = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
    return is_wine;
}

void RedirectWinInet() {
    const std::string address = ReadServiceAddress();
    if (!IsWine() || address.empty())
        return;
    WSADATA data{};
    if (WSAStartup(MAKEWORD(2, 2), &data) != 0)
        throw std::runtime_error("Windows Sockets could not be started");
    development_service = ResolveServiceAddress(address);
    BypassProxy();
    const HMODULE wininet = GetModuleHandleW(L"wininet.dll");
    ReplaceImport(wininet, L"ws2_32.dll", "GetAddrInfoW", &GetStandInAddrInfo);
    ReplaceImport(wininet, L"ws2_32.dll", "connect", &ConnectThroughService);
    ReplaceImport(wininet, L"ws2_32.dll", "recv", &ReceiveForCall);
    ReplaceImport(wininet, L"ws2_32.dll", "send", &SendForCall);
}

void RedirectModuleImports(HMODULE i_module) {
    if (!IsWine())
        return;
    wininet_begin = ReplaceImport(i_module, L"wininet.dll", "HttpSendRequestExW", &BeginUpload);
    wininet_end = ReplaceImport(i_module, L"wininet.dll", "HttpEndRequestW", &EndUpload);
    wininet_close = ReplaceImport(i_module, L"wininet.dll", "InternetCloseHandle", &CloseRequest);
    wininet_send = ReplaceImport(i_module, L"wininet.dll", "HttpSendRequestW", &SendCall, false);
    wininet_read = ReplaceImport(i_module, L"wininet.dll", "InternetReadFile", &ReadCall, false);
    wininet_write = ReplaceImport(i_module, L"wininet.dll", "InternetWriteFile", &WriteCall, false);
}

} // namespace DevHost
