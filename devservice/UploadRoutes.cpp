#include "Batches.h"
#include "Refusal.h"
#include "Routes.h"

#include <vector>

namespace DevService::TransferRoutes {

namespace {

/// Collects the request's body. @throws RouteError payload_too_large; what is left of the body is read before the reply
void Receive(Call& io_call, IncomingFile& o_file) {
    const RouteError too_large({"payload_too_large"});
    std::uint64_t room = io_call.service.max_upload;
    if (io_call.exchange.BodySize().value_or(0) > room)
        throw too_large;
    constexpr std::size_t piece_size = std::size_t{256} << 10;
    std::vector<char> piece(piece_size);
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

/// The cursor of a session's call: the session, and how many bytes the client believes are there.
struct SessionCursor {
    std::string session_id;
    std::uint64_t offset;
};

SessionCursor ReadCursor(Arguments& io_arguments) {
    constexpr std::uint64_t max_offset = (std::uint64_t{1} << 41) - (std::uint64_t{1} << 22);
    Arguments cursor = io_arguments.Object("cursor");
    SessionCursor read{cursor.Text("session_id"), cursor.OptionalNumber("offset", 0, max_offset).value_or(0)};
    cursor.Finish();
    return read;
}

/// How a session becomes a file.
struct Ending {
    SessionCursor cursor;
    StorageWriter::Commit commit;
};

Ending ReadEnding(Arguments& io_arguments) {
    Ending ending{ReadCursor(io_arguments), {}};
    Arguments commit = io_arguments.Object("commit");
    ending.commit = ReadCommit(commit);
    commit.Finish();
    io_arguments.Ignore({"content_hash"});
    io_arguments.Finish();
    return ending;
}

/// Ends sessions that were closed with their last bytes.
BatchResult FinishEach(Call& io_call) {
    std::vector<Ending> endings;
    for (Arguments& entry : io_call.arguments.Objects("entries", BatchResult::max_size))
        endings.push_back(ReadEnding(entry));
    io_call.arguments.Finish();
    Account& account = io_call.account;
    BatchResult result;
    for (const Ending& ending : endings)
        result.Add([&] {
            const std::string& id = ending.cursor.session_id;
            const auto session = account.sessions.Lock(id, ending.cursor.offset, "lookup_failed");
            session.RequireClosed();
            const ItemMetadata metadata = account.writer.Store(session.File(), ending.commit);
            account.sessions.Forget(id);
            return MetadataMembers(metadata);
        });
    return result;
}

} // namespace

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
        io_call.account.sessions.Forget(id); // no client will ever know its id
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
    const Ending ending = ReadEnding(io_call.arguments);
    UploadSessions& sessions = io_call.account.sessions;
    const auto session = sessions.Lock(ending.cursor.session_id, ending.cursor.offset, "lookup_failed");
    Receive(io_call, session.File());
    const ItemMetadata metadata = io_call.account.writer.Store(session.File(), ending.commit);
    sessions.Forget(ending.cursor.session_id);
    return Reply::Json(MetadataJson(metadata, Tagged::No));
}

Reply FinishSessions(Call& io_call) {
    return Reply::Json(io_call.account.jobs.Launch(FinishEach(io_call)));
}

Reply FinishSessionsV2(Call& io_call) {
    return Reply::Json("{" + FinishEach(io_call).Entries() + "}");
}

} // namespace DevService::TransferRoutes
