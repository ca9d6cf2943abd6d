// Connections that must not be made.

#include "http/HttpTest.h"

#include "core/trace/Text.h"

using namespace Tests;

namespace {

class RefusedConnectionTest : public HttpTest {
protected:
    /// Runs a program to its end.
    static DWORD Run(const std::wstring& i_command_line) {
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION process{};
        std::wstring command_line = i_command_line;
        if (!CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                            &process))
            return GetLastError();
        WaitForSingleObject(process.hProcess, INFINITE);
        DWORD exit_code = 0;
        GetExitCodeProcess(process.hProcess, &exit_code);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
        return exit_code;
    }

    static std::wstring Quoted(const std::wstring& i_text) { return L'"' + i_text + L'"'; }

    static DWORD ChangeTrust(const wchar_t* i_verb) {
        std::wstring command_line = Quoted(Variable(L"DEVTRUST"));
        command_line.append(L" ").append(i_verb).append(L" ");
        return Run(command_line + Quoted(Variable(L"DEVSERVICE_STATE") + L"\\ca.pem"));
    }

    static bool IsCertificateError(HRESULT i_code) {
        const DWORD error = HRESULT_CODE(i_code);
        return HRESULT_FACILITY(i_code) == FACILITY_WIN32 &&
               (error == ERROR_INTERNET_INVALID_CA || error == ERROR_INTERNET_SEC_CERT_CN_INVALID ||
                error == ERROR_INTERNET_SEC_CERT_ERRORS || error == ERROR_INTERNET_SEC_CERT_REV_FAILED ||
                error == ERROR_INTERNET_SECURITY_CHANNEL_ERROR);
    }
};

TEST_F(RefusedConnectionTest, RefusesAWrongCertificate) {
    // The service's own address, under a name that is not in its certificate.
    auto session = Open(L"127.77.0.1");
    session.SetAuthorizationHeader(Service::AuthorizationHeader());
    for (int i = 0; i < 2; ++i) {
        const Outcome outcome = OutcomeOf([&] { Send(session); });
        EXPECT_EQ(outcome.type, "HResultException");
        EXPECT_TRUE(IsCertificateError(outcome.code)) << testing::PrintToString(outcome);
        EXPECT_TRUE(
            outcome.message.starts_with(L"GetLastError " + std::to_wstring(HRESULT_CODE(outcome.code)) + L": "));
    }
    EXPECT_TRUE(Service::Requests().empty());
    EXPECT_TRUE(
        m_log.Has("`anonymous-namespace'::SendRequest<-- Expression \"HttpSendRequestW(request_handle, headers, "
                  "-1, LPVOID(body), static_cast<DWORD>(body_size))\" caused throwing \"GetLastError "));
}

TEST_F(RefusedConnectionTest, RefusesAnUntrustedAuthority) {
    // A process decides what it trusts with its first connection, so a separate process makes the refused one.
    if (Variable(L"TESTS_WITHOUT_TRUST").empty()) {
        const TemporaryVariable without_trust(L"TESTS_WITHOUT_TRUST", L"1");
        const TemporaryVariable own_end(L"TEST_PREMATURE_EXIT_FILE", L""); // Not for the other process.
        wchar_t program[MAX_PATH];
        GetModuleFileNameW(nullptr, program, MAX_PATH);
        ASSERT_EQ(ChangeTrust(L"remove"), 0u);
        EXPECT_EQ(Run(Quoted(program) + L" --gtest_brief=1 --gtest_filter=*.RefusesAnUntrustedAuthority"), 0u);
        EXPECT_EQ(ChangeTrust(L"add"), 0u);
        return;
    }
    const Outcome call = OutcomeOf([&] { Send(); });
    EXPECT_TRUE(IsCertificateError(call.code)) << testing::PrintToString(call);
    const Outcome upload = OutcomeOf([&] { m_session.CreateRequest(L"", 1).Write("x", 1); });
    EXPECT_TRUE(IsCertificateError(upload.code)) << testing::PrintToString(upload);
    EXPECT_TRUE(Service::Requests().empty());
}

TEST_F(RefusedConnectionTest, ReportsAnUnknownHost) {
    auto session = Open(L"host.invalid");
    const Outcome outcome = OutcomeOf([&] { Send(session); });
    EXPECT_EQ(outcome.type, "HResultException");
    EXPECT_HRESULT(HRESULT_FROM_WIN32(ERROR_INTERNET_NAME_NOT_RESOLVED), outcome.code);
}

TEST_F(RefusedConnectionTest, ServesAfterFailures) {
    Service::AddFault(R"({"path": "2/test", "status": 200, "body": "0123456789", "truncate_body": 3})");
    Service::AddFault(R"({"path": "2/test", "status": 500})");
    Service::AddFault(R"({"path": "2/test", "status": 200, "body": "fine"})");
    EXPECT_EQ(OutcomeOf([&] {
                  auto response = Send();
                  ReadAll(response);
              }).type,
              "HResultException");
    EXPECT_EQ(OutcomeOf([&] { Send(); }).status, 500u);
    auto response = Send();
    EXPECT_EQ(ReadAll(response), "fine");
}

} // namespace
