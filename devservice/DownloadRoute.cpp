#include "Refusal.h"
#include "Routes.h"
#include "ServicePath.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace DevService::TransferRoutes {

namespace {

struct ByteRange {
    std::uint64_t begin;
    std::uint64_t end;
};

std::optional<std::uint64_t> ReadNumber(std::string_view i_digits) {
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(i_digits.data(), i_digits.data() + i_digits.size(), number);
    if (error != std::errc() || end != i_digits.data() + i_digits.size())
        return std::nullopt;
    return number;
}

/// The bytes that a "Range: bytes=first-last" wants, an empty range when the file has none of them. Several ranges, or
/// an invalid one, count as none, as the standard allows.
std::optional<ByteRange> ReadRange(std::optional<std::string_view> i_header, std::uint64_t i_size) {
    constexpr std::string_view unit = "bytes=";
    if (!i_header || !i_header->starts_with(unit))
        return std::nullopt;
    const std::string_view text = i_header->substr(unit.size());
    const std::size_t dash = text.find('-');
    if (dash == text.npos)
        return std::nullopt;
    const auto first = ReadNumber(text.substr(0, dash));
    const auto last = ReadNumber(text.substr(dash + 1));
    if (!first && last)
        return ByteRange{i_size - std::min(*last, i_size), i_size};
    if (!first || (!last && dash + 1 < text.size()) || (last && *last < *first))
        return std::nullopt;
    const std::uint64_t end = std::min(last.value_or(i_size), i_size - 1) + 1;
    return i_size == 0 ? ByteRange{0, 0} : ByteRange{*first, end};
}

} // namespace

Reply Download(Call& io_call) {
    const std::string path = io_call.arguments.Path("path", PathForm::Read);
    io_call.arguments.Ignore({"rev"});
    io_call.arguments.Finish();
    Storage& storage = io_call.account.storage;
    const Storage::Place place = storage.Require(path, "path");
    if (!place.IsFile())
        throw RouteError({"path", "not_file"});
    if (!IsDownloadable(place.path.names.back()))
        throw RouteError({"unsupported_file"});
    const std::optional<ByteRange> range = ReadRange(io_call.exchange.HeaderValue("Range"), place.status.size);
    const ByteRange sent = range.value_or(ByteRange{0, place.status.size});
    if (sent.begin >= sent.end && range)
        return Reply::PlainText("", 416);
    FileBody body{std::ifstream(), sent.end - sent.begin};
    body.stream.rdbuf()->pubsetbuf(nullptr, 0); // it is read in large pieces
    body.stream.open(place.real, std::ios::binary);
    body.stream.seekg(static_cast<std::streamoff>(sent.begin));
    if (!body.stream)
        throw RouteError({"path", "restricted_content"});
    const ItemMetadata metadata = storage.Describe(place, Storage::HashWanted::WhenKnown);
    Reply reply;
    reply.headers = {{"Content-Type", "application/octet-stream"},
                     {"Dropbox-API-Result", MetadataJson(metadata, Tagged::No)},
                     {"ETag", "W/\"" + metadata.revision + "\""},
                     {"Accept-Ranges", "bytes"},
                     {"Original-Content-Length", std::to_string(place.status.size)}};
    if (range) {
        reply.status = 206;
        reply.headers.emplace_back("Content-Range", "bytes " + std::to_string(sent.begin) + "-" +
                                                        std::to_string(sent.end - 1) + "/" +
                                                        std::to_string(place.status.size));
    }
    reply.file = std::move(body);
    return reply;
}

} // namespace DevService::TransferRoutes
