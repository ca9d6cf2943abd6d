#include "Routes.h"

#include <vector>

#include "Refusal.h"

namespace DevService::TransferRoutes {

namespace {

constexpr std::size_t PieceSize = 256 * 1024;

/// The public service wants upload sessions above 150 MiB. This one takes any size in one request: the limit would only
/// keep people from trying big files.
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

} // namespace

Reply Download(Call& io_call) {
    const std::string path = io_call.arguments.Path("path", PathForm::Read);
    io_call.arguments.Ignore({"rev"});
    io_call.arguments.Finish();
    Storage& storage = io_call.account.storage;
    const Storage::Place place = storage.Require(path, "path");
    if (!place.IsFile())
        throw RouteError({"path", "not_file"});
    FileBody body{std::ifstream(), place.status.size};
    body.stream.rdbuf()->pubsetbuf(nullptr, 0); // it is read in big pieces
    body.stream.open(place.real, std::ios::binary);
    if (!body.stream)
        throw RouteError({"path", "restricted_content"});
    const ItemMetadata metadata = storage.Describe(place, Storage::HashWanted::WhenKnown);
    Reply reply;
    reply.headers = {{"Content-Type", "application/octet-stream"},
                     {"Dropbox-API-Result", MetadataJson(metadata, Tagged::No)},
                     {"ETag", "W/\"" + metadata.revision + "\""},
                     {"Accept-Ranges", "bytes"},
                     {"Original-Content-Length", std::to_string(body.size)}};
    reply.file = std::move(body);
    return reply;
}

Reply Upload(Call& io_call) {
    const StorageWriter::Commit commit = ReadCommit(io_call.arguments);
    io_call.arguments.Finish();
    StorageWriter& writer = io_call.account.writer;
    IncomingFile file(writer.FolderForUpload(commit.path));
    std::vector<char> piece(PieceSize);
    while (const std::size_t size = io_call.exchange.ReadBody(piece))
        file.Write({piece.data(), size});
    try {
        return Reply::Json(MetadataJson(writer.Store(file, commit), Tagged::No));
    } catch (RouteError& error) {
        throw error.AsUploadFailure();
    }
}

} // namespace DevService::TransferRoutes
