// The sockets' own header must come before all others of Windows.
#include <winsock2.h>
#include <ws2tcpip.h>

#include "support/DevService.h"

#include "core/trace/Text.h"
#include "dropbox/Json.h" // RapidJSON with the one set of assertions that a program can have.
#include "support/TemporaryFolder.h"

#include <regex>
#include <set>
#include <stdexcept>

namespace Tests::Service {

namespace {

class Socket {
public:
    explicit Socket(const std::wstring& i_address) {
        const std::size_t colon = i_address.rfind(L':');
        if (colon == std::wstring::npos)
            throw std::runtime_error("DEVSERVICE_ADDRESS is not set: run the test by tools/with-service.sh");
        ADDRINFOW* address = nullptr;
        if (GetAddrInfoW(i_address.substr(0, colon).c_str(), i_address.substr(colon + 1).c_str(), nullptr, &address))
            throw std::runtime_error("DEVSERVICE_ADDRESS isn't an address");
        m_socket = socket(address->ai_family, SOCK_STREAM, IPPROTO_TCP);
        const int result = connect(m_socket, address->ai_addr, static_cast<int>(address->ai_addrlen));
        FreeAddrInfoW(address);
        if (result != 0)
            throw std::runtime_error("the development service does not answer");
    }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    ~Socket() { closesocket(m_socket); }

    void Send(const std::string& i_bytes) const {
        for (std::size_t sent = 0; sent < i_bytes.size();) {
            const int size = send(m_socket, &i_bytes[sent], static_cast<int>(i_bytes.size() - sent), 0);
            if (size <= 0)
                throw std::runtime_error("the development service hung up");
            sent += static_cast<std::size_t>(size);
        }
    }

    std::string ReceiveAll() const {
        std::string bytes;
        std::vector<char> piece(65536);
        for (int size; (size = recv(m_socket, piece.data(), static_cast<int>(piece.size()), 0)) > 0;)
            bytes.append(piece.data(), static_cast<std::size_t>(size));
        return bytes;
    }

private:
    SOCKET m_socket = INVALID_SOCKET;
};

void StartSockets() {
    WSADATA data{};
    static const int result = WSAStartup(MAKEWORD(2, 2), &data);
    if (result != 0)
        throw std::runtime_error("Windows Sockets do not start");
}

/// Plain sockets and not WinINet: what WinINet does is under test.
std::string Control(const std::string& i_method, const std::string& i_name, const std::string& i_body = {}) {
    StartSockets();
    const Socket socket(Variable(L"DEVSERVICE_ADDRESS"));
    socket.Send(i_method + " /control/" + i_name + " HTTP/1.1\r\nConnection: close\r\nContent-Length: " +
                std::to_string(i_body.size()) + "\r\n\r\n" + i_body);
    const std::string reply = socket.ReceiveAll();
    const std::size_t head_end = reply.find("\r\n\r\n");
    if (!reply.starts_with("HTTP/1.1 200 ") || head_end == std::string::npos)
        throw std::runtime_error(i_method + " " + i_name + " " + i_body + ": " + reply);
    return reply.substr(head_end + 4);
}

rapidjson::Document Parse(const std::string& i_json) {
    rapidjson::Document document;
    if (document.Parse(i_json.data(), i_json.size()).HasParseError())
        throw std::runtime_error("no JSON: " + i_json);
    return document;
}

/// The service writes each byte as the character with its value.
std::string Bytes(const rapidjson::Value& i_value) {
    const std::wstring text = FromUtf8({i_value.GetString(), i_value.GetStringLength()});
    std::string bytes;
    for (const wchar_t byte : text)
        bytes += static_cast<char>(byte);
    return bytes;
}

std::set<std::string> g_known_tokens;
std::set<std::string> g_valid_tokens; ///< Of those.

} // namespace

std::string Request::Field(const std::string& i_name) const {
    const std::regex field("(^|\\n)" + i_name + ":[ \\t]*([^\\r\\n]*)", std::regex::icase);
    std::smatch match;
    return std::regex_search(fields, match, field) ? match[2].str() : "-";
}

std::vector<Request> Requests() {
    std::vector<Request> requests;
    const rapidjson::Document records = Parse(Control("GET", "requests"));
    for (const auto& record : records.GetArray()) {
        Request request;
        request.host = Bytes(record["host"]);
        request.line = Bytes(record["line"]);
        request.fields = Bytes(record["head"]).substr(request.line.size() + 2);
        request.fields.resize(request.fields.size() - 2); // The empty line that ends the head.
        request.body = Bytes(record["body"]);
        request.body_size = record["body_size"].GetUint64();
        request.body_sha256 = Bytes(record["body_sha256"]);
        request.status = record["status"].GetUint();
        request.is_complete = record["complete"].GetBool();
        requests.push_back(std::move(request));
    }
    return requests;
}

void ClearRequests() {
    Control("DELETE", "requests");
}

void AddFault(const std::string& i_json) {
    Control("POST", "faults", i_json);
}

void ClearFaults() {
    Control("DELETE", "faults");
}

void SetPaging(const std::string& i_json) {
    Control("POST", "page_size", i_json);
}

std::string IssueToken() {
    const rapidjson::Document reply = Parse(Control("POST", "tokens", "{}"));
    const std::string token = reply["access_token"].GetString();
    g_known_tokens.insert(token);
    g_valid_tokens.insert(token);
    return token;
}

void RevokeTokens() {
    for (const std::string& token : std::exchange(g_valid_tokens, {}))
        Control("DELETE", "tokens", R"({"access_token": ")" + token + "\"}");
}

std::vector<std::string> KnownTokens() {
    std::vector<std::string> tokens(g_known_tokens.begin(), g_known_tokens.end());
    if (const std::string token = ToUtf8(Token()); !token.empty())
        tokens.push_back(token);
    return tokens;
}

std::wstring Token(Account i_account) {
    const auto* const file = i_account == Account::First ? "token" : "token.1";
    const std::string token = ReadBytes(std::filesystem::path(Variable(L"DEVSERVICE_STATE")) / file);
    return FromUtf8(token.substr(0, token.find_first_of("\r\n")));
}

std::wstring AuthorizationHeader() {
    return L"Authorization:Bearer " + Token() + L"\n";
}

std::filesystem::path LocalPath(const std::wstring& i_path) {
    return std::filesystem::path(Variable(L"DEVSERVICE_ROOT") + i_path);
}

} // namespace Tests::Service

Tests::ServiceTest::ServiceTest() {
    for (const auto& entry : std::filesystem::directory_iterator(Service::LocalPath(L"/")))
        std::filesystem::remove_all(entry.path());
    Service::ClearFaults();
    Service::SetPaging("{}");
    Service::ClearRequests();
}
