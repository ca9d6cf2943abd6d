#pragma once

#include "JsonText.h"

#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace DevService {

/// Arguments that the service cannot read: status 400 and the text, without the sentence that names the function.
class BadArguments : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A missing or invalid access token: status 401.
class AccessRefused : public std::runtime_error {
public:
    /// @param i_tag the reason, as in "expired_access_token"
    using std::runtime_error::runtime_error;
};

/// A call that was understood and refused: status 409 with a tree of tags.
class RouteError : public std::exception {
public:
    /// @param i_tags from the outermost to the innermost, as in "path", "conflict", "file"
    explicit RouteError(std::vector<std::string> i_tags);

    /// A member beside the innermost tag that holds a JSON value.
    RouteError& With(std::string i_name, std::string i_json);

    /// The form for an upload's refused path: the inner tags are under "reason", beside an upload session's id.
    RouteError& AsUploadFailure();

    const char* what() const noexcept override { return "refused by the route"; }

    /// The tags as in "path/conflict/file/..": the service adds up to three dots, so nobody may rely on the end.
    const std::string& Summary() const { return m_summary; }

    std::string Json() const;

    /// The tree of tags alone, as in an entry of a batch.
    std::string ErrorJson() const;

private:
    void WriteError(JsonWriter& io_json) const;
    void WriteTags(JsonWriter& io_json, std::span<const std::string> i_tags) const;

    std::vector<std::string> m_tags;
    std::string m_summary;
    std::vector<std::pair<std::string, std::string>> m_members;
    bool m_is_upload_failure = false;
};

} // namespace DevService
