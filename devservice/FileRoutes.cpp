#include "Refusal.h"
#include "Routes.h"

#include <optional>
#include <vector>

namespace DevService::FileRoutes {

namespace {

std::string AsMember(const ItemMetadata& i_metadata, Tagged i_tagged) {
    return "\"metadata\": " + MetadataJson(i_metadata, i_tagged);
}

/// The current versions' reply.
Reply InObject(const ItemMetadata& i_metadata, Tagged i_tagged) {
    return Reply::Json("{" + AsMember(i_metadata, i_tagged) + "}");
}

ItemMetadata CreateFolderOf(Call& io_call) {
    Arguments& arguments = io_call.arguments;
    const std::string path = arguments.Path("path", PathForm::Write);
    const bool has_autorename = arguments.Flag("autorename", false);
    arguments.Finish();
    return io_call.account.writer.CreateFolder(path, has_autorename);
}

struct Deletion {
    std::string path;
    std::optional<std::string> parent_revision; ///< the file's, when the client knows it
};

Deletion ReadDeletion(Arguments& io_arguments) {
    Deletion deletion{io_arguments.Path("path", PathForm::WriteOrId), io_arguments.OptionalText("parent_rev")};
    io_arguments.Finish();
    return deletion;
}

ItemMetadata CarryOut(Call& io_call, const Deletion& i_deletion) {
    return io_call.account.writer.Delete(i_deletion.path, i_deletion.parent_revision);
}

ItemMetadata DeleteOf(Call& io_call) {
    return CarryOut(io_call, ReadDeletion(io_call.arguments));
}

ItemMetadata RelocateOf(Call& io_call, StorageWriter::Relocation i_what) {
    Arguments& arguments = io_call.arguments;
    const std::string from = arguments.Path("from_path", PathForm::WriteOrId);
    const std::string to = arguments.Path("to_path", PathForm::WriteOrId);
    const bool has_autorename = arguments.Flag("autorename", false);
    arguments.Ignore({"allow_shared_folder", "allow_ownership_transfer"}); // there is nobody to share with
    arguments.Finish();
    return io_call.account.writer.Relocate(i_what, from, to, has_autorename);
}

} // namespace

Reply GetMetadata(Call& io_call) {
    Arguments& arguments = io_call.arguments;
    const std::string path = arguments.Text("path");
    if (path.empty() || path == "/")
        arguments.Refuse("path", "The root folder is unsupported.");
    arguments.Path("path", PathForm::Read);
    // include_media_info is obsolete, but clients still send it.
    arguments.Ignore(
        {"include_media_info", "include_deleted", "include_has_explicit_shared_members", "include_property_groups"});
    arguments.Finish();
    Storage& storage = io_call.account.storage;
    const ItemMetadata metadata = storage.Describe(storage.Require(path, "path"), Storage::HashWanted::WhenQuick);
    return Reply::Json(MetadataJson(metadata, Tagged::Yes));
}

Reply CreateFolder(Call& io_call) {
    return Reply::Json(MetadataJson(CreateFolderOf(io_call), Tagged::No));
}

Reply CreateFolderV2(Call& io_call) {
    return InObject(CreateFolderOf(io_call), Tagged::No);
}

Reply Delete(Call& io_call) {
    return Reply::Json(MetadataJson(DeleteOf(io_call), Tagged::Yes));
}

Reply DeleteV2(Call& io_call) {
    return InObject(DeleteOf(io_call), Tagged::Yes);
}

Reply DeleteBatch(Call& io_call) {
    std::vector<Deletion> deletions;
    for (Arguments& entry : io_call.arguments.Objects("entries", BatchResult::max_size))
        deletions.push_back(ReadDeletion(entry));
    io_call.arguments.Finish();
    BatchResult result;
    for (const Deletion& deletion : deletions)
        result.Add([&] { return AsMember(CarryOut(io_call, deletion), Tagged::Yes); });
    return Reply::Json(io_call.account.jobs.Launch(result));
}

Reply CheckJob(Call& io_call) {
    const std::string id = io_call.arguments.Text("async_job_id");
    io_call.arguments.Finish();
    return Reply::Json(io_call.account.jobs.Check(id));
}

Reply Copy(Call& io_call) {
    return Reply::Json(MetadataJson(RelocateOf(io_call, StorageWriter::Relocation::Copy), Tagged::Yes));
}

Reply CopyV2(Call& io_call) {
    return InObject(RelocateOf(io_call, StorageWriter::Relocation::Copy), Tagged::Yes);
}

Reply Move(Call& io_call) {
    return Reply::Json(MetadataJson(RelocateOf(io_call, StorageWriter::Relocation::Move), Tagged::Yes));
}

Reply MoveV2(Call& io_call) {
    return InObject(RelocateOf(io_call, StorageWriter::Relocation::Move), Tagged::Yes);
}

} // namespace DevService::FileRoutes
