// Connections and streamed uploads as WineNetwork.cpp redirects them to a running development service, which
// tools/with-service.sh provides. What arrived is read from the service's folder.

#include "wine/WineNetwork.h"

#include <gtest/gtest.h>
#include <wininet.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

constexpr DWORD status_ok = 200;

struct CloseInternetHandle {
    void operator()(HINTERNET i_handle) const { InternetCloseHandle(i_handle); }
};
using InternetHandle = std::unique_ptr<void, CloseInternetHandle>;

std::wstring Variable(const wchar_t* i_name) {
    std::array<wchar_t, 1024> value{};
    GetEnvironmentVariableW(i_name, value.data(), static_cast<DWORD>(value.size()));
    return value.data();
}

/// Sets an environment variable for a while.
class TemporaryVariable {
public:
    TemporaryVariable(const wchar_t* i_name, const wchar_t* i_value) : m_name(i_name), m_old_value(Variable(i_name)) {
        SetEnvironmentVariableW(i_name, i_value);
    }
    ~TemporaryVariable() { SetEnvironmentVariableW(m_name, m_old_value.empty() ? nullptr : m_old_value.c_str()); }
    TemporaryVariable(const TemporaryVariable&) = delete;
    TemporaryVariable& operator=(const TemporaryVariable&) = delete;

private:
    const wchar_t* m_name;
    std::wstring m_old_value;
};

std::string ReadWholeFile(const std::wstring& i_path) {
    std::ifstream file(std::filesystem::path(i_path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::wstring ServicePath(const std::wstring& i_name) {
    return Variable(L"DEVSERVICE_ROOT") + L"\\" + i_name;
}

std::wstring Authorization() {
    const std::string token = ReadWholeFile(Variable(L"DEVSERVICE_STATE") + L"\\token");
    return L"Authorization: Bearer " + std::wstring(token.begin(), std::find(token.begin(), token.end(), '\n'));
}

/// Bytes with no two blocks alike, so that a lost or repeated one shows.
std::string Document(std::size_t i_size, unsigned i_seed = 1) {
    std::string bytes(i_size, '\0');
    for (char& byte : bytes) {
        i_seed = i_seed * 1103515245 + 12345;
        byte = static_cast<char>(i_seed >> 16);
    }
    return bytes;
}

class Request {
public:
    Request(const wchar_t* i_method, const wchar_t* i_host, INTERNET_PORT i_port, const wchar_t* i_path)
        : m_session(InternetOpenW(L"tests", INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0))
        , m_connection(InternetConnectW(m_session.get(), i_host, i_port, nullptr, nullptr, INTERNET_SERVICE_HTTP, 0, 0))
        , m_request(HttpOpenRequestW(m_connection.get(), i_method, i_path, nullptr, nullptr, nullptr,
                                     i_port == INTERNET_DEFAULT_HTTPS_PORT ? INTERNET_FLAG_SECURE : 0, 0)) {}

    void AddHeader(const std::wstring& i_line) {
        EXPECT_TRUE(HttpAddRequestHeadersW(Get(), i_line.c_str(), static_cast<DWORD>(-1),
                                           HTTP_ADDREQ_FLAG_ADD | HTTP_ADDREQ_FLAG_REPLACE));
    }

    HINTERNET Get() const { return m_request.get(); }

    /// The HTTP status, or the error when i_sent is false or no reply came.
    DWORD Outcome(BOOL i_sent) const {
        DWORD status = 0;
        DWORD size = sizeof(status);
        const DWORD what = HTTP_QUERY_STATUS_CODE | HTTP_QUERY_FLAG_NUMBER;
        return i_sent && HttpQueryInfoW(Get(), what, &status, &size, nullptr) ? status : GetLastError();
    }

    DWORD Send() const { return Outcome(HttpSendRequestW(Get(), nullptr, 0, nullptr, 0)); }

private:
    InternetHandle m_session;
    InternetHandle m_connection;
    InternetHandle m_request;
};

/// A streamed upload. It is dropped if destroyed before End.
class Upload {
public:
    Upload(const std::wstring& i_name, ULONGLONG i_announced_size) {
        m_request.AddHeader(Authorization());
        m_request.AddHeader(L"Content-Type: application/octet-stream");
        m_request.AddHeader(L"Dropbox-API-Arg: {\"path\":\"/" + i_name + L"\",\"mode\":\"overwrite\"}");
        m_request.AddHeader(L"content-length:" + std::to_wstring(i_announced_size));
    }

    bool Begin() { return HttpSendRequestExW(m_request.Get(), nullptr, nullptr, 0, 0); }

    bool Write(std::string_view i_bytes) {
        constexpr std::size_t block_size = 65536;
        for (; !i_bytes.empty(); i_bytes.remove_prefix(std::min(block_size, i_bytes.size()))) {
            const auto size = static_cast<DWORD>(std::min(block_size, i_bytes.size()));
            DWORD written = 0;
            if (!InternetWriteFile(m_request.Get(), i_bytes.data(), size, &written) || written != size)
                return false;
        }
        return true;
    }

    DWORD End() { return m_request.Outcome(HttpEndRequestW(m_request.Get(), nullptr, 0, 0)); }

private:
    Request m_request{L"POST", L"content.dropboxapi.com", INTERNET_DEFAULT_HTTPS_PORT, L"/2/files/upload"};
};

DWORD UploadWhole(const std::wstring& i_name, std::string_view i_bytes) {
    Upload upload(i_name, i_bytes.size());
    return upload.Begin() && upload.Write(i_bytes) ? upload.End() : GetLastError();
}

DWORD AskForAccount() {
    Request request(L"POST", L"api.dropboxapi.com", INTERNET_DEFAULT_HTTPS_PORT, L"/2/users/get_current_account");
    request.AddHeader(Authorization());
    return request.Send();
}

INTERNET_PORT ServicePort() {
    const std::wstring address = Variable(L"DEVSERVICE_ADDRESS");
    return static_cast<INTERNET_PORT>(std::stoi(address.substr(address.rfind(L':') + 1)));
}

/// Asks the service for its record of requests, or with "DELETE" to clear it.
std::string ServiceRecord(const wchar_t* i_method) {
    const Request request(i_method, L"127.0.0.1", ServicePort(), L"/control/requests");
    EXPECT_EQ(request.Send(), status_ok);
    std::string record;
    std::array<char, 65536> block{};
    DWORD size = 0;
    while (InternetReadFile(request.Get(), block.data(), static_cast<DWORD>(block.size()), &size) && size != 0)
        record.append(block.data(), size);
    return record;
}

/// Polls a condition until it holds, for some seconds at most.
template <typename Condition>
bool BecomesTrue(Condition i_condition) {
    const ULONGLONG deadline = GetTickCount64() + 10'000;
    while (!i_condition()) {
        if (GetTickCount64() > deadline)
            return false;
        Sleep(2);
    }
    return true;
}

/// Runs a program and returns its exit code.
DWORD Run(std::wstring i_command_line) {
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, i_command_line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &process))
        return GetLastError();
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD exit_code = 0;
    GetExitCodeProcess(process.hProcess, &exit_code);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return exit_code;
}

/// WinINet keeps connections and trusted authorities per process; what depends on them happens in a fresh one.
DWORD InFreshProcess(const std::wstring& i_what) {
    std::array<wchar_t, MAX_PATH> program{};
    GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size()));
    return Run(L'"' + std::wstring(program.data()) + L"\" " + i_what);
}

DWORD DevTrust(const std::wstring& i_command) {
    return Run(L'"' + Variable(L"DEVTRUST") + L"\" " + i_command + L" \"" + Variable(L"DEVSERVICE_STATE") +
               L"\\ca.pem\"");
}

const std::string cold_document = Document(300'000);

TEST(WineNetwork, ColdUploadArrivesWholeWhateverProxyTheMachineHas) {
    const TemporaryVariable proxy(L"http_proxy", L"http://127.0.0.1:1");
    EXPECT_EQ(InFreshProcess(L"upload"), status_ok);
    EXPECT_TRUE(ReadWholeFile(ServicePath(L"cold.bin")) == cold_document);
}

TEST(WineNetwork, ConnectionFailsWithoutService) {
    const TemporaryVariable address(L"DEVSERVICE_ADDRESS", L"127.0.0.1:1");
    EXPECT_EQ(InFreshProcess(L"ask"), static_cast<DWORD>(ERROR_INTERNET_CANNOT_CONNECT));
}

TEST(WineNetwork, UnknownAuthorityIsRefused) {
    ASSERT_EQ(InFreshProcess(L"ask"), status_ok);
    ASSERT_EQ(DevTrust(L"remove"), 0U);
    const DWORD error = InFreshProcess(L"ask");
    EXPECT_EQ(DevTrust(L"add"), 0U);
    // Windows and Wine have different codes for it.
    EXPECT_TRUE(error == ERROR_INTERNET_INVALID_CA || error == ERROR_INTERNET_SEC_CERT_ERRORS ||
                error == ERROR_INTERNET_SEC_CERT_REV_FAILED)
        << error;
}

TEST(WineNetwork, ServiceAddressMustHaveHostAndPort) {
    for (const wchar_t* wrong : {L"127.0.0.1", L":80", L"127.0.0.1:", L"127.0.0.1:http"}) {
        const TemporaryVariable address(L"DEVSERVICE_ADDRESS", wrong);
        EXPECT_THROW(DevHost::RedirectWinInet(), std::runtime_error) << wrong;
    }
}

TEST(WineNetwork, OtherHostsAreReachedDirectly) {
    // Asked for a tunnel to it, the service would refuse. A bare system need not know "localhost".
    EXPECT_EQ(Request(L"GET", L"127.0.0.1", ServicePort(), L"/control/requests").Send(), status_ok);
}

TEST(WineNetwork, UploadsOfAllSizesArriveAsAnnounced) {
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{1}, std::size_t{65'536}, std::size_t{65'537}, std::size_t{5'000'000}}) {
        const std::string bytes = Document(size);
        EXPECT_EQ(UploadWhole(L"sizes.bin", bytes), status_ok) << size;
        EXPECT_TRUE(ReadWholeFile(ServicePath(L"sizes.bin")) == bytes) << size;
    }
}

TEST(WineNetwork, MoreThanFourGibibytesAreAnnounced) {
    ServiceRecord(L"DELETE");
    ASSERT_TRUE(Upload(L"huge.bin", 5'000'000'000).Begin());
    // The service records a dropped upload when it notices its end.
    EXPECT_TRUE(BecomesTrue([] { return ServiceRecord(L"GET").find("5000000000") != std::string::npos; }));
}

TEST(WineNetwork, DroppedUploadLeavesTheOldFileAndTheNextCallAlone) {
    struct Case {
        std::size_t announced;
        std::size_t written;
    };
    const std::string old_bytes = Document(1000, 7);
    ASSERT_EQ(UploadWhole(L"dropped.bin", old_bytes), status_ok);
    for (const auto& [announced, written] : {Case{1'000'000, 0}, Case{1'000'000, 500'000}, Case{1'000'000, 999'999}}) {
        {
            Upload upload(L"dropped.bin", announced);
            ASSERT_TRUE(upload.Begin() && upload.Write(Document(written)));
        }
        const std::string next_bytes = Document(165, static_cast<unsigned>(written));
        EXPECT_EQ(UploadWhole(L"next.bin", next_bytes), status_ok) << written;
        EXPECT_TRUE(ReadWholeFile(ServicePath(L"next.bin")) == next_bytes) << written;
        EXPECT_TRUE(ReadWholeFile(ServicePath(L"dropped.bin")) == old_bytes) << written;
    }
}

TEST(WineNetwork, ThreadsDropAndFinishUploadsSideBySide) {
    ASSERT_EQ(AskForAccount(), status_ok); // Wine may abort when several threads meet a server for the first time
    ASSERT_EQ(UploadWhole(L"warm.bin", "x"), status_ok);
    const auto drop_and_finish = [](unsigned i_thread) {
        for (unsigned round = 0; round < 5; ++round) {
            {
                Upload dropped(L"side.bin", 2000);
                EXPECT_TRUE(dropped.Begin() && dropped.Write(Document(1999)));
            }
            const std::wstring name = L"thread" + std::to_wstring(i_thread) + L".bin";
            const std::string bytes = Document(100'000, 100 * i_thread + round);
            EXPECT_EQ(UploadWhole(name, bytes), status_ok) << i_thread;
            EXPECT_TRUE(ReadWholeFile(ServicePath(name)) == bytes) << i_thread;
        }
    };
    std::vector<std::thread> threads;
    for (unsigned thread = 0; thread < 3; ++thread)
        threads.emplace_back(drop_and_finish, thread);
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_FALSE(std::filesystem::exists(ServicePath(L"side.bin")));
}

} // namespace

int main(int i_count, char** i_arguments) {
    testing::InitGoogleTest(&i_count, i_arguments);
    DevHost::RedirectWinInet();
    DevHost::RedirectModuleImports(GetModuleHandleW(nullptr));
    if (i_count == 2) { // started by InFreshProcess
        const std::string_view what = i_arguments[1];
        return static_cast<int>(what == "upload" ? UploadWhole(L"cold.bin", cold_document) : AskForAccount());
    }
    return RUN_ALL_TESTS();
}
