#include "Routes.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <vector>

#include "Refusal.h"

namespace DevService::TransferRoutes {

namespace {

/// Collects the request's body. @throws RouteError payload_too_large; what is left of the body is read before the reply
void Receive(Call& io_call, IncomingFile& o_file) {
    const RouteError too_large({"payload_too_large"});
    std::uint64_t room = io_call.service.max_upload;
    if (io_call.exchange.BodySize().value_or(0) > room)
        throw too_large;
    constexpr std::size_t PieceSize = std::size_t{256} << 10;
    std::vector<char> piece(PieceSize);
    while (const std::size_t size = io_call.exchange.ReadBody(piece)) {
        if (size > room) // of a body that came in chunks
            throw too_large;
        o_file.Write({piece.data(), size});
        room -= size;
    }
}

StorageWriter::Commit ReadCommit(Arguments& io_arguments) {
    using Mode = StorageWriter::Commit::Mode;
    StorageWriter::Commit commit;
    commit.path = io_arguments.Path("path", PathForm::WriteOrId);
    const Arguments::Choice mode = io_arguments.OneOf("mode", "add", {"add", "overwrite", "update"});
    commit.mode = mode.tag == "overwrite" ? Mode::Overwrite : mode.tag == "update" ? Mode::Update : Mode::Add;
    commit.revision = mode.value;
    commit.has_autorename = io_arguments.Flag("autorename", false);
    commit.is_strict_conflict = io_arguments.Flag("strict_conflict", false);
    if (const auto time = io_arguments.OptionalText("client_modified")) {
        commit.client_modified = ParseTime(*time);
        if (!commit.client_modified)
            io_arguments.Refuse("client_modified",
                                "time data '" + *time + "' does not match format '%Y-%m-%dT%H:%M:%SZ'");
    }
    commit.content_hash = io_arguments.OptionalText("content_hash");
    io_arguments.Ignore({"mute", "property_groups"});
    return commit;
}

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

/// The bytes that a "Range: bytes=first-last" wants, an empty range when the file has none of them. Several ranges and
/// what cannot be read count as no range, as the standard allows.
std::optional<ByteRange> ReadRange(std::optional<std::string_view> i_header, std::uint64_t i_size) {
    constexpr std::string_view Unit = "bytes=";
    if (!i_header || !i_header->starts_with(Unit))
        return std::nullopt;
    const std::string_view text = i_header->substr(Unit.size());
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

/// The cursor of a session's call: which session, and how much the client believes is there.
struct SessionCursor {
    std::string session_id;
    std::uint64_t offset;
};

SessionCursor ReadCursor(Arguments& io_arguments) {
    constexpr std::uint64_t MaxOffset = (std::uint64_t{1} << 41) - (std::uint64_t{1} << 22);
    Arguments cursor = io_arguments.Object("cursor");
    SessionCursor read{cursor.Text("session_id"), cursor.OptionalNumber("offset", 0, MaxOffset).value_or(0)};
    cursor.Finish();
    return read;
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
    const std::optional<ByteRange> range = ReadRange(io_call.exchange.HeaderValue("Range"), place.status.size);
    const ByteRange sent = range.value_or(ByteRange{0, place.status.size});
    if (sent.begin >= sent.end && range)
        return Reply::PlainText("", 416);
    FileBody body{std::ifstream(), sent.end - sent.begin};
    body.stream.rdbuf()->pubsetbuf(nullptr, 0); // it is read in big pieces
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

Reply Upload(Call& io_call) {
    const StorageWriter::Commit commit = ReadCommit(io_call.arguments);
    io_call.arguments.Finish();
    StorageWriter& writer = io_call.account.writer;
    try {
        IncomingFile file(writer.FolderForUpload(commit.path));
        Receive(io_call, file);
        return Reply::Json(MetadataJson(writer.Store(file, commit), Tagged::No));
    } catch (RouteError& error) {
        throw error.AsUploadFailure();
    }
}

Reply StartSession(Call& io_call) {
    const bool is_closed = io_call.arguments.Flag("close", false);
    io_call.arguments.Ignore({"session_type", "content_hash"});
    io_call.arguments.Finish();
    const std::string id = io_call.account.sessions.Start();
    const auto session = io_call.account.sessions.Lock(id, 0, {});
    try {
        Receive(io_call, session.File());
    } catch (...) {
        io_call.account.sessions.Forget(id); // nobody will ever know it
        throw;
    }
    session.Close(is_closed);
    return Reply::Json("{\"session_id\": \"" + id + "\"}");
}

Reply AppendToSession(Call& io_call) {
    const SessionCursor cursor = ReadCursor(io_call.arguments);
    const bool is_closed = io_call.arguments.Flag("close", false);
    io_call.arguments.Ignore({"content_hash"});
    io_call.arguments.Finish();
    const auto session = io_call.account.sessions.Lock(cursor.session_id, cursor.offset, {});
    session.RequireOpen();
    Receive(io_call, session.File());
    session.Close(is_closed);
    return Reply::Json("null");
}

Reply FinishSession(Call& io_call) {
    const SessionCursor cursor = ReadCursor(io_call.arguments);
    Arguments commit_arguments = io_call.arguments.Object("commit");
    const StorageWriter::Commit commit = ReadCommit(commit_arguments);
    commit_arguments.Finish();
    io_call.arguments.Ignore({"content_hash"});
    io_call.arguments.Finish();
    const auto session = io_call.account.sessions.Lock(cursor.session_id, cursor.offset, "lookup_failed");
    Receive(io_call, session.File());
    const ItemMetadata metadata = io_call.account.writer.Store(session.File(), commit);
    io_call.account.sessions.Forget(cursor.session_id);
    return Reply::Json(MetadataJson(metadata, Tagged::No));
}

} // namespace DevService::TransferRoutes
