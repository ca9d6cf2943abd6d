#include "LocalService.h"

#include "Encoding.h"

#include <fstream>
#include <set>
#include <sstream>

namespace fs = std::filesystem;
using namespace DevService;

LocalService::LocalService() : m_folder(fs::temp_directory_path() / ("devservice-test-" + RandomText(9))) {
    Populate();
    fs::create_directories(m_folder / "second");
    m_token = m_service.accounts.IssueToken(m_service.accounts.Add("Dana Sample", "sample", m_folder / "first"));
    m_service.accounts.Add("Robin <second> & Co", "\"quoted\"", m_folder / "second");
    m_server = std::make_unique<Server>(m_service, std::uint16_t{0});
    m_thread = std::thread([this] { m_server->Run(); });
}

LocalService::~LocalService() {
    m_server->Stop();
    m_thread.join();
    fs::remove_all(m_folder);
}

void LocalService::Populate() {
    fs::remove_all(m_folder / "first");
    fs::create_directories(m_folder / "first/Docs/Sub");
    WriteFile("Docs/a.txt", "alpha");
    WriteFile("Docs/Sub/deep.txt", "deep");
    WriteFile("b.txt", "beta");
}

std::string LocalService::Tree() const {
    std::set<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(m_folder / "first"))
        names.insert(fs::relative(entry, m_folder / "first").string() + (entry.is_directory() ? "/" : ""));
    std::string tree;
    for (const std::string& name : names)
        tree += (tree.empty() ? "" : " ") + name;
    return tree;
}

std::string LocalService::ReadFile(const std::string& i_path) const {
    std::ostringstream content;
    content << std::ifstream(m_folder / "first" / i_path, std::ios::binary).rdbuf();
    return content.str();
}

void LocalService::WriteFile(const std::string& i_path, std::string_view i_content) const {
    std::ofstream(m_folder / "first" / i_path, std::ios::binary) << i_content;
}

ServiceClient LocalService::Connect(std::string_view i_host) const {
    return ServiceClient(m_server->Port(), m_service.authority.Pem(), i_host);
}

Answer LocalService::Rpc(const std::string& i_route, const std::string& i_json) const {
    const std::string headers = Authorization() + "Content-Type: application/json\r\n";
    return Connect(api_host).Post("/2/" + i_route, headers, i_json);
}

Answer LocalService::Upload(const std::string& i_arguments, std::string_view i_body) const {
    const std::string headers =
        Authorization() + "Content-Type: application/octet-stream\r\nDropbox-API-Arg: " + i_arguments + "\r\n";
    return Connect(content_host).Post("/2/files/upload", headers, i_body);
}

Answer LocalService::Download(const std::string& i_path) const {
    const std::string headers = Authorization() + "Dropbox-API-Arg: {\"path\": \"" + i_path + "\"}\r\n";
    return Connect(content_host).Post("/2/files/download", headers, "");
}

std::string LocalService::Control(const std::string& i_method, const std::string& i_name,
                                  const std::string& i_body) const {
    const std::string reply =
        ExchangeClear(m_server->Port(), i_method + " /control/" + i_name + " HTTP/1.1\r\nContent-Length: " +
                                            std::to_string(i_body.size()) + "\r\n\r\n" + i_body);
    EXPECT_TRUE(reply.starts_with("HTTP/1.1 200 ")) << reply;
    const std::size_t end = reply.find("\r\n\r\n");
    return end == reply.npos ? std::string() : reply.substr(end + 4);
}

rapidjson::Document LocalService::Requests() const {
    rapidjson::Document requests;
    EXPECT_TRUE(ParseJson(Control("GET", "requests"), requests));
    return requests;
}

rapidjson::Document Json(const Answer& i_answer) {
    rapidjson::Document document;
    EXPECT_TRUE(ParseJson(i_answer.body(), document)) << i_answer.body();
    return document;
}

std::string Member(const rapidjson::Value& i_object, const char* i_name) {
    if (!i_object.IsObject() || !i_object.HasMember(i_name))
        return "<missing>";
    const rapidjson::Value& value = i_object[i_name];
    if (value.IsString())
        return std::string(TextOf(value));
    rapidjson::StringBuffer buffer;
    JsonWriter writer(buffer);
    value.Accept(writer);
    return buffer.GetString();
}
