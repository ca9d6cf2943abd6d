#include "support/Outcome.h"

#include "core/trace/Text.h"
#include "http/HttpException.h"

#include <iomanip>
#include <sstream>

namespace Tests {
namespace {

std::string Hexadecimal(HRESULT i_code) {
    std::ostringstream text;
    text << "0x" << std::hex << std::setw(8) << std::setfill('0') << static_cast<unsigned>(i_code);
    return text.str();
}

} // namespace

Outcome OutcomeOf(const std::function<void()>& i_call) {
    try {
        i_call();
        return {};
    } catch (const HResultException& e) {
        return {"HResultException", e.Message(), e.m_hresult, 0, {}, 0};
    } catch (const HttpException& e) {
        return {"HttpException", e.Message(), S_OK, e.Status(), e.ErrorSummary(), 0};
    } catch (const ApiException& e) {
        return {"ApiException", e.Message(), S_OK, 0, {}, e.Error()};
    } catch (const Exception& e) {
        return {"Exception", e.Message(), S_OK, 0, {}, 0};
    } catch (...) {
        return {"other", {}, S_OK, 0, {}, 0};
    }
}

void PrintTo(const Outcome& i_outcome, std::ostream* o_stream) {
    *o_stream << i_outcome.type << " " << ToUtf8(i_outcome.message) << " " << Hexadecimal(i_outcome.code) << " status "
              << i_outcome.status << " " << ToUtf8(i_outcome.error_summary) << " error " << i_outcome.error;
}

testing::AssertionResult IsHResult(const char* i_expected_text, const char* i_actual_text, HRESULT i_expected,
                                   HRESULT i_actual) {
    if (i_expected == i_actual)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << i_actual_text << " is " << Hexadecimal(i_actual) << " and not "
                                       << i_expected_text << ", " << Hexadecimal(i_expected);
}

} // namespace Tests
