#include "Reply.h"

#include <boost/beast/http/status.hpp>

namespace DevService {
namespace {

Reply Make(std::string_view i_type, std::string_view i_body, unsigned i_status) {
    Reply reply;
    reply.status = i_status;
    reply.headers.emplace_back("Content-Type", i_type);
    reply.body = i_body;
    return reply;
}

} // namespace

std::string_view Reply::Reason() const {
    if (!reason.empty())
        return reason;
    const auto known = boost::beast::http::int_to_status(status);
    if (known == boost::beast::http::status::unknown)
        return {};
    const auto phrase = boost::beast::http::obsolete_reason(known);
    return {phrase.data(), phrase.size()};
}

Reply Reply::Json(std::string_view i_json, unsigned i_status) {
    return Make("application/json", i_json, i_status);
}

Reply Reply::PlainText(std::string_view i_text, unsigned i_status) {
    return Make("text/plain; charset=utf-8", i_text, i_status);
}

Reply Reply::Html(std::string_view i_html, unsigned i_status) {
    return Make("text/html; charset=utf-8", i_html, i_status);
}

} // namespace DevService
