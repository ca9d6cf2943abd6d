#pragma once

#include "core/trace/Exceptions.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace Tests {

/// How a call ended: what it threw, all parts of it.
struct Outcome {
    std::string type; ///< The exception's class, "" when nothing was thrown, "other" for a foreign one.
    std::wstring message;
    HRESULT code = S_OK;        ///< Of an HResultException.
    DWORD status = 0;           ///< Of an HttpException.
    std::wstring error_summary; ///< Of an HttpException.
    DWORD error = 0;            ///< Of an ApiException.
};

Outcome OutcomeOf(const std::function<void()>& i_call);

/// For messages of failed assertions.
void PrintTo(const Outcome& i_outcome, std::ostream* o_stream);

testing::AssertionResult IsHResult(const char* i_expected_text, const char* i_actual_text, HRESULT i_expected,
                                   HRESULT i_actual);

} // namespace Tests

/// Shows both codes in hexadecimal.
#define EXPECT_HRESULT(expected, actual) EXPECT_PRED_FORMAT2(::Tests::IsHResult, expected, actual)
