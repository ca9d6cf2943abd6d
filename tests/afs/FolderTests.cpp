#include "AfsTest.h"

#include <algorithm>

namespace {

class FolderTest : public Tests::AfsTest {
protected:
    std::vector<std::wstring> Titles(Qorv::IAFS_EnumFolder* i_children) {
        std::vector<std::wstring> titles;
        for (;;) {
            Qorv::ComPtr<Qorv::IAFS_EnumFolderItem> item;
            const HRESULT result = i_children->Next(&item);
            if (result != S_OK) {
                EXPECT_HRESULT(S_FALSE, result);
                EXPECT_EQ(nullptr, item);
                return titles;
            }
            Qorv::ComPtr<Qorv::IAFS_Name> name;
            EXPECT_HRESULT(S_OK, item->get_Name(&name));
            titles.push_back(TextOf(name, Qorv::AFS_Name2String_ForDisplay));
        }
    }

    Qorv::ComPtr<Qorv::IAFS_FileInfo> InfoOf(const std::wstring& i_path) {
        Qorv::ComPtr<Qorv::IAFS_FileInfo> info;
        EXPECT_HRESULT(S_OK, m_file_system->GetFileInfo(NameOf(i_path), nullptr, nullptr, &info));
        return info;
    }
};

TEST_F(FolderTest, AListingIsASnapshot) {
    std::filesystem::create_directories(Tests::Service::LocalPath(L"/Docs/sub"));
    Tests::WriteBytes(Tests::Service::LocalPath(L"/Docs/\x4e16\x754c.pdf"), "x");
    Qorv::ComPtr<Qorv::IAFS_EnumFolder> children;
    ASSERT_EQ(S_OK, m_file_system->EnumFolder(NameOf(L"/Docs"), nullptr, nullptr, &children));
    Tests::WriteBytes(Tests::Service::LocalPath(L"/Docs/later"), "x");
    Tests::Service::ClearRequests();

    auto titles = Titles(children);
    EXPECT_TRUE(Titles(children).empty());
    EXPECT_HRESULT(S_OK, children->Reset(nullptr, nullptr));
    EXPECT_EQ(titles, Titles(children));
    std::ranges::sort(titles);
    EXPECT_EQ((std::vector<std::wstring>{L"/Docs/sub", L"/Docs/\x4e16\x754c.pdf"}), titles);
    EXPECT_TRUE(Tests::Service::Requests().empty()) << "the listing is not fetched again, its names are bound";

    EXPECT_HRESULT(Qorv::ErrorCanceled, children->Reset(nullptr, m_canceled));
    const Tests::LogCapture log;
    EXPECT_HRESULT(E_POINTER, children->Next(nullptr));
    EXPECT_TRUE(log.Has("EnumFolder::Next<-- Expression: \"out_enum_item\" caused returning \"HRESULT 0x80004003: "));
}

TEST_F(FolderTest, ALongListingComesInPages) {
    for (int i = 0; i < 25; ++i)
        Tests::WriteBytes(Tests::Service::LocalPath(L"/" + std::to_wstring(i)), "");
    Tests::Service::SetPaging(R"({"size": 10, "empty_pages": true})");
    Qorv::ComPtr<Qorv::IAFS_EnumFolder> children;
    ASSERT_EQ(S_OK, m_file_system->EnumFolder(m_root, nullptr, nullptr, &children));
    EXPECT_EQ(25U, Titles(children).size());
}

TEST_F(FolderTest, OnlyFoldersAreListed) {
    Tests::WriteBytes(Tests::Service::LocalPath(L"/a"), "a");
    for (const wchar_t* path : {L"/a", L"/missing"}) {
        Qorv::ComPtr<Qorv::IAFS_EnumFolder> children;
        EXPECT_HRESULT(E_FAIL, m_file_system->EnumFolder(NameOf(path), m_details, nullptr, &children));
        EXPECT_EQ(L"Cannot enumerate non-existing folder", m_details->Text());
    }
}

TEST_F(FolderTest, InformationOfAFile) {
    Tests::WriteBytes(Tests::Service::LocalPath(L"/a.pdf"), "12345");
    const auto info = InfoOf(L"/A.pdf");
    Qorv::Bstr title;
    EXPECT_HRESULT(S_OK, info->get_Title(&title));
    EXPECT_EQ(L"a.pdf", title.View());
    ULONG attributes = 1;
    EXPECT_HRESULT(S_OK, info->get_Attributes(&attributes));
    EXPECT_EQ(0U, attributes);
    ULONGLONG size = 0;
    EXPECT_HRESULT(S_OK, info->get_Size(&size));
    EXPECT_EQ(5U, size);
    ULONGLONG created = 1;
    ULONGLONG accessed = 0;
    ULONGLONG written = 1;
    EXPECT_HRESULT(S_OK, info->get_CreationTime(&created));
    EXPECT_HRESULT(S_OK, info->get_LastAccessTime(&accessed));
    EXPECT_HRESULT(S_OK, info->get_LastWriteTime(&written));
    EXPECT_EQ(0U, created);
    EXPECT_EQ(written, accessed);
    EXPECT_LT(0x01D0000000000000U, written); // After 2014.
    EXPECT_HRESULT(E_NOTIMPL, info->get_Prop(L"x", nullptr));
}

TEST_F(FolderTest, InformationOfAFolderAndOfNothing) {
    std::filesystem::create_directory(Tests::Service::LocalPath(L"/Docs"));
    const auto info = InfoOf(L"/Docs");
    ULONG attributes = 0;
    EXPECT_HRESULT(S_OK, info->get_Attributes(&attributes));
    EXPECT_EQ(0x100000U, attributes);
    ULONGLONG value = 7;
    EXPECT_HRESULT(E_INVALIDARG, info->get_Size(&value));
    EXPECT_HRESULT(S_OK, info->get_LastWriteTime(&value));
    EXPECT_EQ(0U, value);
    Qorv::ComPtr<Qorv::IAFS_FileInfo> none;
    EXPECT_HRESULT(E_INVALIDARG, m_file_system->GetFileInfo(NameOf(L"/missing"), nullptr, nullptr, &none));
}

} // namespace
