// The checks, the lines that they write, and the boundary where exceptions end.

#include "core/trace/Check.h"
#include "core/trace/ErrorText.h"
#include "core/trace/Text.h"
#include "http/HttpException.h"
#include "qorv/Values.h"
#include "services/ErrorDetails.h"
#include "support/Log.h"
#include "support/Outcome.h"

#include <functional>
#include <stdexcept>

using namespace Tests;

namespace Sample {

HRESULT Returning(const void* i_pointer) {
    TRACE_FUNCTION();
    CHECK_RETURN(i_pointer != nullptr, E_POINTER);
    return TRACE_RESULT(S_FALSE);
}

HRESULT Passing(HRESULT i_result, const wchar_t*, VARIANT_BOOL, int& io_calls) {
    ++io_calls;
    return i_result;
}

HRESULT Calling(HRESULT i_result, int& io_calls) {
    TRACE_FUNCTION();
    CHECK_HRESULT(Passing(i_result, L"a\"b", VARIANT_TRUE, io_calls));
    return TRACE_RESULT(S_OK);
}

int& Throwing(bool i_condition, int& io_calls) {
    TRACE_FUNCTION();
    CHECK_THROW((++io_calls, i_condition), Exception(L"the words"));
    return io_calls;
}

void ThrowingCode(HRESULT i_result, int& io_calls) {
    TRACE_FUNCTION();
    CHECK_HRESULT_THROW(Passing(i_result, L"x", VARIANT_FALSE, io_calls));
}

HRESULT Bounded(const std::function<void()>& i_body, Qorv::IQorv_ErrorDetails* o_details) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(o_details) {
        i_body();
        return TRACE_RESULT(S_OK);
    };
}

HRESULT BoundedCode(const std::function<HRESULT()>& i_body, Qorv::IQorv_ErrorDetails* o_details) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(o_details) {
        CHECK_HRESULT(i_body());
        return TRACE_RESULT(S_OK);
    };
}

HRESULT BoundedCheck() noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_THROW(false, Exception(L"inner"));
        return TRACE_RESULT(S_OK);
    };
}

void Passed(const std::function<void()>& i_body) {
    TRACE_FUNCTION();
    i_body();
}

HRESULT Dangling(bool i_flag) {
    TRACE_FUNCTION();
    if (i_flag)
        CHECK_RETURN(i_flag, E_FAIL);
    else
        return TRACE_RESULT(S_FALSE);
    return TRACE_RESULT(S_OK);
}

} // namespace Sample

namespace {

std::string Returned(const std::string& i_function, const std::string& i_expression, HRESULT i_code) {
    return i_function + "<-- Expression: \"" + i_expression + "\" caused returning \"" + ToUtf8(HResultText(i_code)) +
           "\"\n";
}

/// The reason that a caller finds in the thread's COM error info; "" if there is none.
std::wstring ErrorInfoText() {
    Qorv::ComPtr<IErrorInfo> info;
    Qorv::Bstr text;
    if (GetErrorInfo(0, &info) != S_OK || FAILED(info->GetDescription(&text)))
        return {};
    return std::wstring(text.View());
}

TEST(CheckTest, ReturnsTheCodeWithTheSentence) {
    const LogCapture null_log;
    EXPECT_HRESULT(E_POINTER, Sample::Returning(nullptr));
    EXPECT_EQ(null_log.Messages(),
              "Sample::Returning--> \n" + Returned("Sample::Returning", "i_pointer != nullptr", E_POINTER));

    const LogCapture log;
    EXPECT_HRESULT(S_FALSE, Sample::Returning(&log));
    EXPECT_EQ(log.Messages(), "Sample::Returning--> \nSample::Returning<-- S_FALSE\n");
}

TEST(CheckTest, ReturnsAFailedCallsCode) {
    int calls = 0;
    const LogCapture log;
    EXPECT_HRESULT(E_ABORT, Sample::Calling(E_ABORT, calls));
    EXPECT_EQ(calls, 1) << "evaluated more than once";
    EXPECT_EQ(log.Messages(),
              "Sample::Calling--> \n" +
                  Returned("Sample::Calling", "Passing(i_result, L\"a\\\"b\", VARIANT_TRUE, io_calls)", E_ABORT));
    EXPECT_HRESULT(S_OK, Sample::Calling(S_FALSE, calls)) << "a success is none to return";
}

TEST(CheckTest, ThrowsWithTheSentence) {
    int calls = 0;
    const LogCapture log;
    const Outcome outcome = OutcomeOf([&] { Sample::Throwing(false, calls); });
    EXPECT_EQ(outcome.type, "Exception");
    EXPECT_EQ(outcome.message, L"the words");
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(log.Messages(), "Sample::Throwing--> \n"
                              "Sample::Throwing<-- Expression \"(++io_calls, i_condition)\" caused throwing \"the "
                              "words\"\n");

    const LogCapture code_log;
    const Outcome code = OutcomeOf([&] { Sample::ThrowingCode(E_ABORT, calls); });
    EXPECT_EQ(code.type, "HResultException");
    EXPECT_HRESULT(E_ABORT, code.code);
    EXPECT_EQ(code_log.Messages(), "Sample::ThrowingCode--> \nSample::ThrowingCode<-- Expression "
                                   "\"Passing(i_result, L\"x\", VARIANT_FALSE, io_calls)\" caused throwing \"" +
                                       ToUtf8(HResultText(E_ABORT)) + "\"\n");
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(OutcomeOf([&] { Sample::ThrowingCode(S_FALSE, Sample::Throwing(true, calls)); }).type, "");
}

TEST(CheckTest, BelongsToItsOwnIf) {
    EXPECT_HRESULT(S_OK, Sample::Dangling(true));
    EXPECT_HRESULT(S_FALSE, Sample::Dangling(false));
}

TEST(CheckTest, KeepsTheLastError) {
    int calls = 0;
    const std::function<void()> functions[] = {
        [&] { Sample::Returning(nullptr); },
        [&] { Sample::Returning(&calls); },
        [&] { Sample::Calling(E_FAIL, calls); },
        [&] { OutcomeOf([&] { Sample::Throwing(false, calls); }); },
        [&] { OutcomeOf([&] { Sample::ThrowingCode(E_FAIL, calls); }); },
        [&] { Trace(L"message", L"result"); },
        [&] { TraceText(FunctionName("void F()"), L"text"); },
    };
    OutcomeOf([] { throw 1; }); // The first throw in a process changes it: that is the runtime, not a check.
    for (const auto& function : functions) {
        SetLastError(1234);
        function();
        EXPECT_EQ(GetLastError(), 1234u) << &function - functions;
    }
}

TEST(CheckTest, AForeignExceptionLeavesAnEmptyResult) {
    const LogCapture log;
    EXPECT_EQ(OutcomeOf([] { Sample::Passed([] { throw 1; }); }).type, "other");
    EXPECT_EQ(log.Messages(), "Sample::Passed--> \nSample::Passed<-- \n");
}

TEST(BoundaryTest, TurnsExceptionsIntoCodes) {
    struct {
        const char* name;
        std::function<void()> body;
        HRESULT code;
        const char* expression; // "" for a success.
        const wchar_t* told;    // What the caller learns in words; "" for the code's own.
    } const rows[] = {
        {"code", [] { throw HResultException(L"why", E_ABORT); }, E_ABORT, "e.m_hresult", L"why"},
        {"code that is a success", [] { throw HResultException(L"why", S_FALSE); }, S_FALSE, "", L"why"},
        {"plain", [] { throw Exception(L"words"); }, E_FAIL, "E_FAIL", L"words"},
        {"words of their own", [] { throw HResultException(L"for the log", E_ABORT, {L"for people"}); }, E_ABORT,
         "e.m_hresult", L"for people"},
        {"platform", [] { throw ApiException(L"words"); }, E_FAIL, "E_FAIL", L"words"},
        {"reply", [] { throw HttpException(nullptr, L"HTTP 409: Conflict"); }, E_FAIL, "E_FAIL", L"HTTP 409: Conflict"},
        {"reply with the service's word", [] { throw HttpException(nullptr, L"HTTP 409: Conflict", L"path/x"); },
         E_FAIL, "E_FAIL", L"HTTP 409: Conflict (path/x)"},
        {"memory", [] { throw std::bad_alloc(); }, E_OUTOFMEMORY, "E_OUTOFMEMORY", L""},
        {"standard", [] { throw std::runtime_error("x"); }, E_FAIL, "E_FAIL", L""},
        {"number", [] { throw 1; }, E_FAIL, "E_FAIL", L""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto details = Qorv::Create<DevHost::ErrorDetails>();
        const LogCapture log;
        EXPECT_HRESULT(row.code, Sample::Bounded(row.body, details));
        const std::wstring told = row.told[0] != L'\0' ? row.told : HResultText(row.code, user_language);
        EXPECT_EQ(details->Text(), told);
        EXPECT_HRESULT(row.code, details->Code());
        EXPECT_EQ(ErrorInfoText(), told);
        EXPECT_EQ(log.Messages(),
                  "Sample::Bounded--> \n" + (FAILED(row.code) ? Returned("Sample::Bounded", row.expression, row.code)
                                                              : std::string("Sample::Bounded<-- \n")));
        EXPECT_HRESULT(row.code, Sample::Bounded(row.body, nullptr)) << "without a details object";
    }
    EXPECT_HRESULT(E_FAIL, Sample::Bounded([] { throw Exception(L"words"); }, nullptr));
    EXPECT_HRESULT(S_OK, Sample::Bounded([] {}, nullptr));
    EXPECT_EQ(ErrorInfoText(), L"") << "a success clears what an earlier call left";
}

TEST(BoundaryTest, ACodeHasWordsAsWell) {
    const std::wstring words = HResultText(E_POINTER, user_language);
    const auto details = Qorv::Create<DevHost::ErrorDetails>();
    EXPECT_HRESULT(E_POINTER, Sample::BoundedCode([] { return Sample::Returning(nullptr); }, details));
    EXPECT_EQ(details->Text(), words);
    EXPECT_EQ(ErrorInfoText(), words);
    EXPECT_HRESULT(E_POINTER, Sample::Returning(nullptr));
    EXPECT_EQ(ErrorInfoText(), words) << "without a boundary too";

    // The call's own words take precedence.
    EXPECT_HRESULT(E_POINTER, Sample::BoundedCode(
                                  [&] {
                                      details->SetError(E_POINTER, L"by the host");
                                      return Sample::BoundedCode([] { return Sample::Returning(nullptr); }, nullptr);
                                  },
                                  details));
    EXPECT_EQ(details->Text(), L"by the host");
    EXPECT_HRESULT(E_FAIL, Sample::BoundedCode(
                               [&] { return Sample::Bounded([] { throw Exception(L"inner"); }, details); }, details));
    EXPECT_EQ(details->Text(), L"inner");
    EXPECT_EQ(ErrorInfoText(), L"inner");
    EXPECT_HRESULT(E_ABORT, Sample::BoundedCode([] { return E_ABORT; }, nullptr));
    EXPECT_EQ(ErrorInfoText(), HResultText(E_ABORT, user_language));
    Sample::Bounded([] { throw HResultException(L"earlier", E_ABORT); }, nullptr);
    EXPECT_HRESULT(E_ABORT, Sample::BoundedCode([] { return E_ABORT; }, nullptr));
    EXPECT_EQ(ErrorInfoText(), HResultText(E_ABORT, user_language))
        << "what an earlier call left is not about this one";

    EXPECT_HRESULT(S_OK, Sample::BoundedCode(
                             [] {
                                 Sample::Returning(nullptr);
                                 return S_OK;
                             },
                             nullptr));
    EXPECT_EQ(ErrorInfoText(), L"") << "a success leaves nothing";
}

TEST(BoundaryTest, AReplyWithoutAStatusIsABrokenConnection) {
    const HttpException reply{nullptr};
    EXPECT_TRUE(reply.Message().starts_with(L"HTTP (failed to get status information): GetLastError "));
    EXPECT_EQ(reply.Reason().words, L"The connection to the service broke");
    SetLastError(ERROR_HTTP_HEADER_NOT_FOUND);
    const HResultException status = NoStatusException();
    EXPECT_TRUE(status.Message().starts_with(L"GetLastError 12150: "));
    EXPECT_HRESULT(HRESULT_FROM_WIN32(ERROR_HTTP_HEADER_NOT_FOUND), status.m_hresult);
    EXPECT_EQ(status.Reason().words, L"The connection to the service broke");
}

TEST(BoundaryTest, WritesItsLineAfterTheChecks) {
    const LogCapture log;
    EXPECT_HRESULT(E_FAIL, Sample::BoundedCheck());
    EXPECT_EQ(log.Messages(), "Sample::BoundedCheck--> \n"
                              "Sample::BoundedCheck<-- Expression \"false\" caused throwing \"inner\"\n" +
                                  Returned("Sample::BoundedCheck", "E_FAIL", E_FAIL));
}

} // namespace
