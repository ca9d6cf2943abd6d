#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace DevService {

using Header = std::pair<std::string, std::string>;

/// A part of an open file, sent as a reply's body.
struct FileBody {
    std::ifstream stream; ///< Positioned at the first byte to send.
    std::uint64_t size = 0;
};

/// What the service answers to one request. The headers that describe the body's transfer are not in it.
struct Reply {
    unsigned status = 200;
    std::string reason; ///< Empty: the status's usual phrase, if it has one.
    std::vector<Header> headers;
    std::string body;
    std::optional<FileBody> file; ///< If set, sent in place of `body`.
    bool is_chunked = false;      ///< Sent in chunks, without a Content-Length.

    std::uint64_t BodySize() const { return file ? file->size : body.size(); }
    std::string_view Reason() const;

    static Reply Json(std::string_view i_json, unsigned i_status = 200);
    static Reply PlainText(std::string_view i_text, unsigned i_status);
    static Reply Html(std::string_view i_html, unsigned i_status = 200);
};

} // namespace DevService
