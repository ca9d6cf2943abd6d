#include "Control.h"

#include "Arguments.h"
#include "Refusal.h"

namespace DevService {
namespace {

const char* const done = "{}";

} // namespace

Reply Control::Answer(HttpExchange& io_exchange) {
    const std::string body = io_exchange.ReadWholeBody();
    try {
        return Call(io_exchange.Method(), io_exchange.Target().substr(prefix.size()), body);
    } catch (const BadArguments& error) {
        return Reply::PlainText(std::string(error.what()) + "\n", 400);
    }
}

Reply Control::Call(std::string_view i_method, std::string_view i_name, std::string_view i_body) {
    const auto is = [&](std::string_view i_wanted_method, std::string_view i_wanted_name) {
        return i_method == i_wanted_method && i_name == i_wanted_name;
    };
    if (is("GET", "requests"))
        return Reply::Json(m_service.requests.Json());
    if (is("DELETE", "requests")) {
        m_service.requests.Clear();
        return Reply::Json(done);
    }
    if (is("POST", "faults")) {
        m_service.faults.Add(i_body);
        return Reply::Json(done);
    }
    if (is("DELETE", "faults")) {
        m_service.faults.Clear();
        return Reply::Json(done);
    }
    if (is("POST", "page_size"))
        return SetPaging(i_body);
    if (is("POST", "tokens"))
        return IssueToken(i_body);
    if (is("DELETE", "tokens"))
        return RevokeToken(i_body);
    return Reply::PlainText("there is no such control; see docs/devservice.md\n", 404);
}

Reply Control::SetPaging(std::string_view i_body) {
    constexpr std::uint64_t max_page_size = 1'000'000;
    Arguments arguments(i_body, "page_size");
    const auto size = arguments.OptionalNumber("size", 1, max_page_size);
    const bool has_empty_pages = arguments.Flag("empty_pages", false);
    arguments.Finish();
    m_service.page_size = static_cast<std::size_t>(size.value_or(Paging().page_size));
    m_service.has_empty_pages = has_empty_pages;
    return Reply::Json(done);
}

Reply Control::IssueToken(std::string_view i_body) {
    constexpr std::uint64_t max_seconds = 1'000'000'000;
    Arguments arguments(i_body, "tokens");
    const auto user = arguments.OptionalNumber("user", 0, m_service.accounts.Count() - 1).value_or(0);
    const auto seconds = arguments.OptionalNumber("expires_in", 0, max_seconds);
    arguments.Finish();
    std::optional<Accounts::Clock::duration> lifetime;
    if (seconds)
        lifetime = std::chrono::seconds(*seconds);
    Account& account = m_service.accounts.At(static_cast<std::size_t>(user));
    return Reply::Json("{\"access_token\": \"" + m_service.accounts.IssueToken(account, lifetime) + "\"}");
}

Reply Control::RevokeToken(std::string_view i_body) {
    Arguments arguments(i_body, "tokens");
    const std::string token = arguments.Text("access_token");
    arguments.Finish();
    if (!m_service.accounts.Revoke(token))
        return Reply::PlainText("tokens: there is no such token\n", 404);
    return Reply::Json(done);
}

} // namespace DevService
