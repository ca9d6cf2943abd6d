#include "Api.h"

#include "Encoding.h"
#include "Refusal.h"
#include "Routes.h"

#include <boost/beast/core/string.hpp>
#include <openssl/rand.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <iostream>

namespace DevService {

/// How a route takes its arguments.
enum class Style {
    Void,    ///< none: an empty body, or "null"
    Rpc,     ///< JSON in the body
    Upload,  ///< JSON in a header, the body is content
    Download ///< JSON in a header, no body
};

struct Route {
    std::string_view name;
    Host host;
    Style style;
    Reply (*function)(Call&);
};

namespace {

constexpr std::string_view target_prefix = "/2/";
constexpr std::string_view argument_header = "Dropbox-API-Arg";

constexpr std::array routes = {
    Route{"auth/token/revoke", Host::Api, Style::Void, UserRoutes::RevokeToken},
    Route{"check/user", Host::Api, Style::Rpc, UserRoutes::CheckUser},
    Route{"files/copy", Host::Api, Style::Rpc, FileRoutes::Copy},
    Route{"files/copy_v2", Host::Api, Style::Rpc, FileRoutes::CopyV2},
    Route{"files/create_folder", Host::Api, Style::Rpc, FileRoutes::CreateFolder},
    Route{"files/create_folder_v2", Host::Api, Style::Rpc, FileRoutes::CreateFolderV2},
    Route{"files/delete", Host::Api, Style::Rpc, FileRoutes::Delete},
    Route{"files/delete_batch", Host::Api, Style::Rpc, FileRoutes::DeleteBatch},
    Route{"files/delete_batch/check", Host::Api, Style::Rpc, FileRoutes::CheckJob},
    Route{"files/delete_v2", Host::Api, Style::Rpc, FileRoutes::DeleteV2},
    Route{"files/download", Host::Content, Style::Download, TransferRoutes::Download},
    Route{"files/get_metadata", Host::Api, Style::Rpc, FileRoutes::GetMetadata},
    Route{"files/list_folder", Host::Api, Style::Rpc, ListRoutes::ListFolder},
    Route{"files/list_folder/continue", Host::Api, Style::Rpc, ListRoutes::ListFolderContinue},
    Route{"files/list_folder/get_latest_cursor", Host::Api, Style::Rpc, ListRoutes::GetLatestCursor},
    Route{"files/move", Host::Api, Style::Rpc, FileRoutes::Move},
    Route{"files/move_v2", Host::Api, Style::Rpc, FileRoutes::MoveV2},
    Route{"files/upload", Host::Content, Style::Upload, TransferRoutes::Upload},
    Route{"files/upload_session/append_v2", Host::Content, Style::Upload, TransferRoutes::AppendToSession},
    Route{"files/upload_session/finish", Host::Content, Style::Upload, TransferRoutes::FinishSession},
    Route{"files/upload_session/finish_batch", Host::Api, Style::Rpc, TransferRoutes::FinishSessions},
    Route{"files/upload_session/finish_batch/check", Host::Api, Style::Rpc, FileRoutes::CheckJob},
    Route{"files/upload_session/finish_batch_v2", Host::Api, Style::Rpc, TransferRoutes::FinishSessionsV2},
    Route{"files/upload_session/start", Host::Content, Style::Upload, TransferRoutes::StartSession},
    Route{"users/get_current_account", Host::Api, Style::Void, UserRoutes::GetCurrentAccount},
    Route{"users/get_space_usage", Host::Api, Style::Void, UserRoutes::GetSpaceUsage},
};

const Route* FindRoute(std::string_view i_target, Host i_host) {
    i_target = i_target.substr(0, i_target.find('?'));
    if (!i_target.starts_with(target_prefix))
        return nullptr;
    i_target.remove_prefix(target_prefix.size());
    const auto route = std::ranges::find(routes, i_target, &Route::name);
    return route != routes.end() && route->host == i_host ? &*route : nullptr;
}

/// The request's token. @throws BadArguments, AccessRefused
std::string ReadToken(const HttpExchange& i_exchange) {
    constexpr std::string_view scheme = "Bearer ";
    const auto value = i_exchange.HeaderValue("Authorization");
    if (!value)
        throw AccessRefused("invalid_access_token");
    if (!value->starts_with(scheme))
        throw BadArguments(
            "Invalid authorization value in HTTP header \"Authorization\": expected \"Bearer <token>\".");
    const std::string_view token = value->substr(scheme.size());
    const bool is_printable = std::ranges::all_of(token, [](char i_byte) { return i_byte > ' ' && i_byte < 0x7F; });
    if (token.empty() || !is_printable)
        throw BadArguments("The given OAuth 2 access token is malformed.");
    return std::string(token);
}

/// Refuses a request whose body isn't declared as one of the style's types.
void CheckContentType(const HttpExchange& i_exchange, Style i_style) {
    using Types = std::vector<std::string_view>;
    constexpr std::string_view cors_type = "text/plain; charset=dropbox-cors-hack";
    constexpr std::string_view octets = "application/octet-stream";
    static const Types rpc_types = {"application/json", "application/json; charset=utf-8", cors_type};
    static const Types upload_types = {octets, cors_type};
    static const Types download_types = {"", "text/plain", "text/plain; charset=utf-8", cors_type, octets};
    const auto given = i_exchange.HeaderValue("Content-Type");
    const bool may_be_missing = i_style == Style::Void || i_style == Style::Download;
    if (!given && may_be_missing)
        return;
    const Types& types = i_style == Style::Upload     ? upload_types
                         : i_style == Style::Download ? download_types
                                                      : rpc_types;
    const std::string type = ToLower(given.value_or(""));
    if (std::ranges::find(types, type) != types.end())
        return;
    std::string text =
        "Bad HTTP \"Content-Type\" header: \"" + std::string(given.value_or("")) + "\".  Expecting one of ";
    for (const std::string_view expected : types)
        text.append(expected == types.front() ? "\"" : ", \"").append(expected).append("\"");
    throw BadArguments(text + ".");
}

/// The JSON in the header. Clients should escape all but ASCII; UTF-8 is taken as well, anything else is refused.
std::string_view ReadArgumentHeader(const HttpExchange& i_exchange) {
    const auto value = i_exchange.HeaderValue(argument_header);
    if (!value)
        throw BadArguments("Must provide HTTP header \"Dropbox-API-Arg\" or URL parameter \"arg\".");
    return *value;
}

Arguments ReadArguments(HttpExchange& io_exchange, Style i_style) {
    if (i_style == Style::Upload || i_style == Style::Download) {
        Arguments arguments(ReadArgumentHeader(io_exchange), "HTTP header \"Dropbox-API-Arg\"");
        const std::string body = i_style == Style::Download ? io_exchange.ReadWholeBody() : std::string();
        if (!body.empty())
            throw BadArguments("The request body is supposed to be empty, but it isn't; got \"" + body + "\"");
        return arguments;
    }
    const std::string body = io_exchange.ReadWholeBody();
    if (i_style == Style::Rpc)
        return Arguments(body, "request body");
    if (body.empty() && io_exchange.HeaderValue("Content-Type"))
        throw BadArguments("request body: could not decode input as JSON");
    if (!body.empty() && body != "null")
        throw BadArguments("request body: expected null, got value");
    return Arguments("{}", "request body");
}

Reply RefuseAccess(std::string_view i_tag) {
    const RouteError error({std::string(i_tag)});
    Reply reply = Reply::Json(error.Json(), 401);
    reply.headers.emplace_back("WWW-Authenticate", "Bearer realm=\"Dropbox-API\"");
    return reply;
}

Reply RefuseRoute(const RouteError& i_error, Host i_host) {
    Reply reply = Reply::Json(i_error.Json(), 409);
    if (i_host == Host::Content) // the hosts differ in this
        reply.reason = i_error.Summary();
    return reply;
}

std::string NewRequestId() {
    std::array<unsigned char, 16> bytes{};
    RAND_bytes(bytes.data(), static_cast<int>(bytes.size()));
    return Hex(bytes);
}

} // namespace

Reply Api::Answer(HttpExchange& io_exchange, Host i_host) {
    const auto start = std::chrono::steady_clock::now();
    const Route* route = FindRoute(io_exchange.Target(), i_host);
    const bool is_get = io_exchange.Method() == "GET" && route && route->style == Style::Download;
    const bool is_known = route && (io_exchange.Method() == "POST" || is_get);
    Reply reply = is_known ? AnswerRoute(io_exchange, *route)
                           : Reply::Html("<!DOCTYPE html>\n<title>Error (404)</title>\n<h1>Error (404)</h1>\n"
                                         "<p>We can't find the page you're looking for.</p>\n",
                                         404);
    // The public service sends the same call's reply sometimes with a length and sometimes in chunks.
    reply.is_chunked = !reply.file && m_service.json_reply_count++ % 2 == 1;
    const auto time = std::chrono::steady_clock::now() - start;
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(time).count();
    reply.headers.emplace_back("Cache-Control", "no-cache");
    reply.headers.emplace_back("X-Content-Type-Options", "nosniff");
    reply.headers.emplace_back("X-Server-Response-Time", std::to_string(milliseconds));
    reply.headers.emplace_back("X-Dropbox-Request-Id", NewRequestId());
    return reply;
}

Reply Api::AnswerRoute(HttpExchange& io_exchange, const Route& i_route) {
    try {
        return CallRoute(io_exchange, i_route);
    } catch (const BadArguments& error) {
        const std::string function = "Error in call to API function \"" + std::string(i_route.name) + "\": ";
        return Reply::PlainText(function + error.what(), 400);
    } catch (const AccessRefused& error) {
        return RefuseAccess(error.what());
    } catch (const RouteError& error) {
        return RefuseRoute(error, i_route.host);
    } catch (const ConnectionLost&) {
        throw;
    } catch (const std::length_error& error) {
        return Reply::PlainText(error.what(), 413);
    } catch (const std::exception& error) {
        std::cerr << "devservice: " << i_route.name << ": " << error.what() << '\n';
        return Reply::PlainText("", 500);
    }
}

Reply Api::CallRoute(HttpExchange& io_exchange, const Route& i_route) {
    const std::string token = ReadToken(io_exchange);
    Account& account = m_service.accounts.Authenticate(token);
    CheckContentType(io_exchange, i_route.style);
    Arguments arguments = ReadArguments(io_exchange, i_route.style);
    Call call{m_service, io_exchange, account, token, arguments};
    return i_route.function(call);
}

} // namespace DevService
