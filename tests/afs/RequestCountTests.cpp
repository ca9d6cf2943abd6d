// How many requests each task takes: over a distant service an extra round trip is what people feel most. The reasons
// are in docs/performance.md.

#include "AfsTest.h"

#include "qorv/Afs.h"

#include <filesystem>

namespace {

using Qorv::ComPtr;
using Requests = std::vector<std::string>;

class RequestCountTest : public Tests::AfsTest {
protected:
    static constexpr ULONG existing = Qorv::AFS_OpenFile_OpenExisting;
    static constexpr ULONG replaced = Qorv::AFS_OpenFile_CreateAlways;
    static constexpr ULONG read = Qorv::AFS_OpenFile_Read;
    static constexpr ULONG write = Qorv::AFS_OpenFile_Write;

    /// The API calls of a task, in order.
    template <typename Task>
    Requests Of(Task i_task) {
        Tests::Service::ClearRequests();
        i_task();
        Requests calls;
        for (const auto& request : Tests::Service::Requests()) {
            const std::string_view line = request.line; // "POST /2/files/download HTTP/1.1"
            const std::size_t begin = line.find("/2/") + 3;
            calls.emplace_back(line.substr(begin, line.find(' ', begin) - begin));
        }
        return calls;
    }

    void Save(const ComPtr<Qorv::IAFS_File>& i_file) {
        Tests::WriteAll(i_file, "text");
        EXPECT_HRESULT(S_OK, i_file->Close(nullptr, nullptr));
    }

    std::vector<ComPtr<Qorv::IAFS_Name>> Browse(Qorv::IAFS_Name* i_folder) {
        ComPtr<Qorv::IAFS_EnumFolder> items;
        EXPECT_HRESULT(S_OK, m_file_system->EnumFolder(i_folder, nullptr, nullptr, &items));
        std::vector<ComPtr<Qorv::IAFS_Name>> names;
        for (ComPtr<Qorv::IAFS_EnumFolderItem> item; items->Next(&item) == S_OK; item.Reset()) {
            ComPtr<Qorv::IAFS_FileInfo> information;
            names.emplace_back();
            EXPECT_HRESULT(S_OK, item->get_Name(&names.back()));
            EXPECT_HRESULT(S_OK, m_file_system->GetFileInfo(names.back(), nullptr, nullptr, &information));
        }
        return names;
    }
};

TEST_F(RequestCountTest, OpeningAndBrowsing) {
    std::filesystem::create_directory(Tests::Service::LocalPath(L"/Docs"));
    for (const wchar_t* const path : {L"/Docs/a", L"/Docs/b", L"/Docs/c"})
        Tests::WriteBytes(Tests::Service::LocalPath(path), "bytes");
    EXPECT_EQ(Of([&] { m_root = Bind(Tests::Service::Token()); }),
              (Requests{"users/get_current_account", "users/get_current_account"}));

    const auto folder = NameOf(L"/Docs");
    std::vector<ComPtr<Qorv::IAFS_Name>> names;
    EXPECT_EQ(Of([&] { names = Browse(folder); }), (Requests{"files/get_metadata", "files/list_folder"}));
    EXPECT_EQ(Of([&] { Browse(folder); }), (Requests{"files/list_folder"}));
    ASSERT_EQ(names.size(), 3U);

    ComPtr<Qorv::IAFS_File> file;
    EXPECT_EQ(Of([&] { EXPECT_HRESULT(S_OK, Open(names[0], read | existing, file)); }),
              (Requests{"files/get_metadata"}));
    EXPECT_EQ(Of([&] { Tests::ReadAll(file); }), (Requests{"files/download"}));
    EXPECT_EQ(Of([&] { file->Close(nullptr, nullptr); }), Requests{});
    EXPECT_EQ(Of([&] { file = Opened(L"/Docs/b", read | existing); }), (Requests{"files/get_metadata"}));
    EXPECT_EQ(Of([&] { Tests::ReadAll(file); }), (Requests{"files/download"}));
    file->Close(nullptr, nullptr);
}

TEST_F(RequestCountTest, Saving) {
    Tests::WriteBytes(Tests::Service::LocalPath(L"/a"), "bytes");
    auto file = Opened(L"/a", read | write | existing);
    Tests::ReadAll(file);
    EXPECT_EQ(Of([&] {
                  EXPECT_HRESULT(S_OK, file->SetSize(0, nullptr, nullptr));
                  EXPECT_HRESULT(S_OK, file->SetPos(0, 0));
                  Save(file);
              }),
              (Requests{"files/upload"}));
    EXPECT_EQ(Of([&] { Save(Opened(L"/a", write | replaced)); }), (Requests{"files/get_metadata", "files/upload"}));
    EXPECT_EQ(Of([&] { Save(Opened(L"/new", write | replaced)); }),
              (Requests{"files/get_metadata", "files/get_metadata", "files/upload", "files/upload"}));
}

TEST_F(RequestCountTest, Rearranging) {
    Tests::WriteBytes(Tests::Service::LocalPath(L"/a"), "bytes");
    const auto folder = NameOf(L"/Docs");
    EXPECT_EQ(Of([&] { EXPECT_HRESULT(S_OK, m_file_system->CreateFolder(folder, nullptr, nullptr)); }),
              (Requests{"files/create_folder"}));
    const auto name = Browse(m_root).back();
    const auto moved = NameOf(L"/Docs/b");
    const auto copy = NameOf(L"/c");
    EXPECT_EQ(Of([&] { EXPECT_HRESULT(S_OK, m_file_system->Rename(name, NameOf(L"/b"), nullptr, nullptr)); }),
              (Requests{"files/move", "files/get_metadata"}));
    EXPECT_EQ(Of([&] { EXPECT_HRESULT(S_OK, m_file_system->Move(name, moved, nullptr, nullptr)); }),
              (Requests{"files/move", "files/get_metadata"}));
    EXPECT_EQ(Of([&] { EXPECT_HRESULT(S_OK, m_file_system->Copy(name, copy, nullptr, nullptr)); }),
              (Requests{"files/copy"}));
    EXPECT_EQ(Of([&] { EXPECT_HRESULT(S_OK, m_file_system->Delete(name, nullptr, nullptr)); }),
              (Requests{"files/delete"}));
}

} // namespace
