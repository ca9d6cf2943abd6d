#pragma once

#include "JsonText.h"
#include "Server.h"
#include "Service.h"
#include "ServiceClient.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <thread>

/// A running service over a small folder, removed with the test:
///   Docs/ Docs/a.txt ("alpha") Docs/Sub/ Docs/Sub/deep.txt ("deep") b.txt ("beta")
/// A second account has an empty folder.
class LocalService : public testing::Test {
protected:
    LocalService();
    ~LocalService() override;

    /// Makes the first account's folder as above, and nothing else in it.
    void Populate();

    /// Sorted names of everything below the first account's folder, folders with "/", separated by spaces; hidden ones
    /// too.
    std::string Tree() const;
    std::string ReadFile(const std::string& i_path) const;
    void WriteFile(const std::string& i_path, std::string_view i_content) const;

    ServiceClient Connect(std::string_view i_host) const;

    /// One call on a separate connection, with the first account's token.
    Answer Rpc(const std::string& i_route, const std::string& i_json) const;
    Answer Upload(const std::string& i_arguments, std::string_view i_body) const;
    Answer Download(const std::string& i_path) const;

    /// A request to the control interface, which must succeed. @returns the reply's body
    std::string Control(const std::string& i_method, const std::string& i_name, const std::string& i_body = {}) const;

    /// The recorded requests, parsed.
    rapidjson::Document Requests() const;

    std::string Authorization() const { return "Authorization:Bearer " + m_token + "\r\n"; }

    std::filesystem::path m_folder;
    DevService::Service m_service;
    std::unique_ptr<DevService::Server> m_server;
    std::string m_token;

private:
    std::thread m_thread;
};

/// The reply's body, parsed.
rapidjson::Document Json(const Answer& i_answer);

/// A member of an object as text: a string as it is, anything else as JSON.
std::string Member(const rapidjson::Value& i_object, const char* i_name);
