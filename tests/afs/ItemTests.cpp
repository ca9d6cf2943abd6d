#include "AfsTest.h"

#include "core/host/StopSignal.h"
#include "qorv/Afs.h"

#include <functional>
#include <thread>

namespace {

using Qorv::ComPtr;
using Qorv::IAFS_Name;
using Qorv::IQorv_CancelFlag;

class ItemTest : public Tests::AfsTest {
protected:
    struct Operation {
        const char* name;
        std::function<HRESULT(IAFS_Name*, IQorv_CancelFlag*)> run;
    };

    /// Every operation that takes a cancel flag, on any name.
    std::vector<Operation> Operations() {
        Qorv::IAFS_FileSys* const fs = m_file_system;
        Qorv::IAFS_Name* const root = m_root;
        return {
            {"BindFlush", [fs](IAFS_Name* n, IQorv_CancelFlag* c) { return fs->BindFlush(n, nullptr, c); }},
            {"EnumFolder",
             [fs](IAFS_Name* n, IQorv_CancelFlag* c) {
                 ComPtr<Qorv::IAFS_EnumFolder> out;
                 return fs->EnumFolder(n, nullptr, c, &out);
             }},
            {"OpenFile",
             [fs](IAFS_Name* n, IQorv_CancelFlag* c) {
                 ComPtr<Qorv::IAFS_File> out;
                 return fs->OpenFile(n, Qorv::AFS_OpenFile_Read, nullptr, c, &out);
             }},
            {"CreateFolder", [fs](IAFS_Name* n, IQorv_CancelFlag* c) { return fs->CreateFolder(n, nullptr, c); }},
            {"Move", [=](IAFS_Name* n, IQorv_CancelFlag* c) { return fs->Move(n, root, nullptr, c); }},
            {"Copy", [=](IAFS_Name* n, IQorv_CancelFlag* c) { return fs->Copy(n, root, nullptr, c); }},
            {"Rename", [=](IAFS_Name* n, IQorv_CancelFlag* c) { return fs->Rename(n, root, nullptr, c); }},
            {"Move to", [=](IAFS_Name* n, IQorv_CancelFlag* c) { return fs->Move(root, n, nullptr, c); }},
            {"Delete", [fs](IAFS_Name* n, IQorv_CancelFlag* c) { return fs->Delete(n, nullptr, c); }},
            {"GetFileInfo",
             [fs](IAFS_Name* n, IQorv_CancelFlag* c) {
                 ComPtr<Qorv::IAFS_FileInfo> out;
                 return fs->GetFileInfo(n, nullptr, c, &out);
             }},
        };
    }
};

TEST_F(ItemTest, ACanceledOperationSendsNothing) {
    auto operations = Operations();
    operations.push_back({"CreateAccount", [this](IAFS_Name*, IQorv_CancelFlag* c) {
                              ComPtr<Qorv::IAFS_AccountData> out;
                              return m_file_system->CreateAccount(nullptr, nullptr, c, &out);
                          }});
    operations.push_back({"BindToPath", [this](IAFS_Name*, IQorv_CancelFlag* c) {
                              return m_file_system->BindToPath(nullptr, nullptr, 0, nullptr, c, nullptr);
                          }});
    operations.push_back({"BindToObject", [this](IAFS_Name*, IQorv_CancelFlag* c) {
                              return m_file_system->BindToObject(nullptr, nullptr, 0, nullptr, c, nullptr);
                          }});
    const auto name = NameOf(L"/a");
    for (const auto& [what, run] : operations) {
        EXPECT_HRESULT(Qorv::ErrorCanceled, run(name, m_canceled)) << what;
        EXPECT_HRESULT(Qorv::ErrorCanceled, run(nullptr, m_canceled)) << what << ": the flag comes first";
    }
    EXPECT_TRUE(Tests::Service::Requests().empty());
}

TEST_F(ItemTest, NamesOfOtherFileSystemsAreRefused) {
    const auto foreign = Qorv::Create<Tests::ForeignName>();
    for (const auto& [what, run] : Operations()) {
        const Tests::LogCapture log;
        EXPECT_HRESULT(E_INVALIDARG, run(foreign, nullptr)) << what;
        const std::string argument = std::string(what) == "Move to" ? "local_new_name" : "local_name";
        EXPECT_TRUE(log.Has("Expression: \"" + argument + " != nullptr\" caused returning ")) << what;
        EXPECT_HRESULT(E_INVALIDARG, run(nullptr, nullptr)) << what;
    }
    ComPtr<IAFS_Name> name;
    const Tests::LogCapture log;
    EXPECT_HRESULT(E_INVALIDARG, m_file_system->StringToName(L"/a", 0, foreign, &name));
    EXPECT_TRUE(log.Has("Expression: \"parent == nullptr || local_parent != nullptr\" caused returning "));
    EXPECT_TRUE(Tests::Service::Requests().empty());
}

TEST_F(ItemTest, FoldersAreCreated) {
    const auto name = NameOf(L"/\xe4 \x4e16");
    EXPECT_HRESULT(S_OK, m_file_system->CreateFolder(name, nullptr, nullptr));
    EXPECT_TRUE(std::filesystem::is_directory(Tests::Service::LocalPath(L"/\xe4 \x4e16")));
    EXPECT_NE(nullptr, Qorv::OwnObject<Name>(name)->GetObject()) << "the name is bound to it";
    EXPECT_HRESULT(E_FAIL, m_file_system->CreateFolder(name, m_details, nullptr));
    EXPECT_NE(std::wstring::npos, m_details->Text().find(L"path/conflict/folder")) << ToUtf8(m_details->Text());
}

TEST_F(ItemTest, MoveTakesFilesOnly) {
    Tests::WriteBytes(Tests::Service::LocalPath(L"/a"), "bytes");
    std::filesystem::create_directory(Tests::Service::LocalPath(L"/Docs"));
    const auto name = NameOf(L"/a");
    EXPECT_HRESULT(S_OK, m_file_system->Move(name, NameOf(L"/Docs/b"), nullptr, nullptr));
    EXPECT_EQ("bytes", Tests::ReadBytes(Tests::Service::LocalPath(L"/Docs/b")));
    EXPECT_FALSE(std::filesystem::exists(Tests::Service::LocalPath(L"/a")));
    EXPECT_EQ(Location(L"/Docs/b"), TextOf(name));

    const Tests::LogCapture log;
    EXPECT_HRESULT(E_INVALIDARG, m_file_system->Move(NameOf(L"/Docs"), NameOf(L"/E"), nullptr, nullptr));
    EXPECT_HRESULT(E_INVALIDARG, m_file_system->Copy(NameOf(L"/missing"), NameOf(L"/E"), nullptr, nullptr));
    EXPECT_TRUE(log.Has("FileSystem::Move<-- Expression: \"file != nullptr\" caused returning "));
    EXPECT_TRUE(log.Has("FileSystem::Copy<-- Expression: \"file != nullptr\" caused returning "));
}

TEST_F(ItemTest, CopyLeavesTheSource) {
    Tests::WriteBytes(Tests::Service::LocalPath(L"/a"), "bytes");
    const auto name = NameOf(L"/a");
    EXPECT_HRESULT(S_OK, m_file_system->Copy(name, NameOf(L"/b"), nullptr, nullptr));
    EXPECT_EQ("bytes", Tests::ReadBytes(Tests::Service::LocalPath(L"/a")));
    EXPECT_EQ("bytes", Tests::ReadBytes(Tests::Service::LocalPath(L"/b")));
    EXPECT_EQ(Location(L"/a"), TextOf(name));
    EXPECT_HRESULT(E_FAIL, m_file_system->Copy(name, NameOf(L"/b"), m_details, nullptr));
    EXPECT_TRUE(m_details->Text().starts_with(L"/b is there already. HTTP 409")) << ToUtf8(m_details->Text());
    EXPECT_NE(std::wstring::npos, m_details->Text().find(L"to/conflict/file")) << ToUtf8(m_details->Text());
    EXPECT_HRESULT(E_FAIL, m_file_system->Rename(name, NameOf(L"/b"), m_details, nullptr));
    EXPECT_TRUE(m_details->Text().starts_with(L"/b is there already. ")) << ToUtf8(m_details->Text());
    EXPECT_HRESULT(E_FAIL, m_file_system->Move(name, NameOf(L"/b"), m_details, nullptr));
    EXPECT_TRUE(m_details->Text().starts_with(L"/b is there already. ")) << ToUtf8(m_details->Text());
    EXPECT_EQ(Location(L"/a"), TextOf(name)) << "it has not moved";
}

TEST_F(ItemTest, ARecordWithoutAPathKeepsThePathThatWasAskedFor) {
    const auto record = [](const std::string& i_call, const std::string& i_body) {
        Tests::Service::AddFault(R"({"path": "2/files/)" + i_call + R"(", "body": ")" + i_body + "\"}");
    };
    const std::string folder = R"({\".tag\": \"folder\", \"name\": \"Docs\"})";
    const auto name = NameOf(L"/Docs");
    record("get_metadata", folder);
    EXPECT_NE(nullptr, Qorv::OwnObject<Name>(name)->BindObject());
    EXPECT_EQ(Location(L"/Docs"), TextOf(name));
    const auto made = NameOf(L"/New");
    record("create_folder", R"({\".tag\": \"folder\", \"name\": \"New\"})");
    EXPECT_HRESULT(S_OK, m_file_system->CreateFolder(made, nullptr, nullptr));
    EXPECT_EQ(Location(L"/New"), TextOf(made));
    record("list_folder", R"({\"entries\": [)" + folder + R"(], \"has_more\": false, \"cursor\": \"c\"})");
    ComPtr<Qorv::IAFS_EnumFolder> children;
    EXPECT_HRESULT(S_OK, m_file_system->EnumFolder(made, nullptr, nullptr, &children));
    ASSERT_NE(nullptr, children);
    ComPtr<Qorv::IAFS_EnumFolderItem> item;
    EXPECT_HRESULT(S_OK, children->Next(&item));
    ComPtr<IAFS_Name> child;
    EXPECT_HRESULT(S_OK, item->get_Name(&child));
    EXPECT_EQ(Location(L"/New/Docs"), TextOf(child));
}

TEST_F(ItemTest, ATargetThatCannotBeSentIsRefusedHere) {
    Tests::WriteBytes(Tests::Service::LocalPath(L"/a"), "bytes");
    const auto name = NameOf(L"/a");
    Qorv::OwnObject<Name>(name)->BindObject();
    Tests::Service::ClearRequests();
    for (const wchar_t* const path : {L"/b\n", L"/\xD83D", L"/b\",\"to_path\": \"/c"}) {
        const auto target = NameOf(path);
        const HRESULT invalid_name = HRESULT_FROM_WIN32(ERROR_INVALID_NAME);
        EXPECT_HRESULT(invalid_name, m_file_system->Move(name, target, nullptr, nullptr)) << path;
        EXPECT_HRESULT(invalid_name, m_file_system->Copy(name, target, nullptr, nullptr)) << path;
        EXPECT_HRESULT(invalid_name, m_file_system->Rename(name, target, nullptr, nullptr)) << path;
    }
    EXPECT_TRUE(Tests::Service::Requests().empty());
    EXPECT_EQ(Location(L"/a"), TextOf(name));
}

// A dialog that has closed does not wait for anything.
TEST_F(ItemTest, AStoppedListingEnds) {
    for (const char* const name : {"/a", "/b", "/c"})
        Tests::WriteBytes(Tests::Service::LocalPath(std::wstring(name, name + 2)), "x");
    Tests::Service::SetPaging(R"({"size": 1})");
    Tests::Service::AddFault(R"({"path": "2/files/list_folder/continue", "delay_ms": 20000, "real": true})");
    const auto signal = std::make_shared<StopSignal>();
    HRESULT result = S_OK;
    std::thread worker([&] {
        const StopScope scope(signal);
        ComPtr<Qorv::IAFS_EnumFolder> children;
        result = m_file_system->EnumFolder(m_root, nullptr, nullptr, &children);
    });
    while (Calls("files/list_folder") == 0)
        Sleep(10);
    Sleep(100);
    const ULONGLONG stopped_at = GetTickCount64();
    signal->Stop();
    worker.join();
    EXPECT_LT(GetTickCount64() - stopped_at, 2000U);
    EXPECT_HRESULT(Qorv::ErrorCanceled, result);
    Tests::Service::SetPaging("{}");
}

TEST_F(ItemTest, RenameAndDeleteTakeFoldersToo) {
    std::filesystem::create_directories(Tests::Service::LocalPath(L"/Docs/sub"));
    const auto name = NameOf(L"/Docs");
    EXPECT_HRESULT(S_OK, m_file_system->Rename(name, NameOf(L"/Papers"), nullptr, nullptr));
    EXPECT_TRUE(std::filesystem::is_directory(Tests::Service::LocalPath(L"/Papers/sub")));
    EXPECT_EQ(Location(L"/Papers"), TextOf(name));
    EXPECT_HRESULT(S_OK, m_file_system->Delete(name, nullptr, nullptr));
    EXPECT_FALSE(std::filesystem::exists(Tests::Service::LocalPath(L"/Papers")));

    EXPECT_HRESULT(E_FAIL, m_file_system->Delete(m_root, m_details, nullptr));
    EXPECT_EQ(L"Root folder cannot be deleted", m_details->Text());
    const Tests::LogCapture log;
    EXPECT_HRESULT(E_INVALIDARG, m_file_system->Delete(NameOf(L"/missing"), nullptr, nullptr));
    EXPECT_TRUE(log.Has("FileSystem::Delete<-- Expression: \"object != nullptr\" caused returning "));
}

TEST_F(ItemTest, NothingMovesBetweenAccounts) {
    Tests::WriteBytes(Tests::Service::LocalPath(L"/a"), "bytes");
    const auto other_root = Bind(Tests::Service::Token(Tests::Service::Account::Second));
    ComPtr<IAFS_Name> other;
    EXPECT_HRESULT(S_OK, m_file_system->StringToName(L"/a", 0, other_root, &other));
    Tests::Service::ClearRequests();
    const auto name = NameOf(L"/a");
    EXPECT_HRESULT(E_INVALIDARG, m_file_system->Move(name, other, m_details, nullptr));
    EXPECT_HRESULT(E_INVALIDARG, m_details->Code());
    EXPECT_HRESULT(E_INVALIDARG, m_file_system->Copy(name, other, nullptr, nullptr));
    EXPECT_HRESULT(E_INVALIDARG, m_file_system->Rename(name, other, nullptr, nullptr));
    EXPECT_TRUE(Tests::Service::Requests().empty());
}

// The item is where it should be, so the error must not read as a failure of the move.
TEST_F(ItemTest, AFailureBehindAMoveSaysThatItMoved) {
    Tests::WriteBytes(Tests::Service::LocalPath(L"/a"), "bytes");
    const auto name = NameOf(L"/a");
    Tests::Service::AddFault(R"({"path": "2/files/get_metadata", "skip": 1, "status": 409,
                                 "body": "{\"error_summary\": \"path/locked/.\", \"error\": {}}"})");
    EXPECT_HRESULT(E_FAIL, m_file_system->Move(name, NameOf(L"/b"), m_details, nullptr));
    EXPECT_TRUE(m_details->Text().starts_with(L"The item was moved, ")) << ToUtf8(m_details->Text());
    EXPECT_TRUE(m_details->Text().ends_with(L" (path/locked/.)")) << ToUtf8(m_details->Text());
    EXPECT_EQ(Location(L"/b"), TextOf(name));
    EXPECT_EQ("bytes", Tests::ReadBytes(Tests::Service::LocalPath(L"/b")));
}

TEST_F(ItemTest, DialogsCheckTheirArguments) {
    const auto parameters = Qorv::Create<DevHost::CabNode>();
    ComPtr<Qorv::IAFS_NamesCollection> names;
    LONG choice = 0;
    const auto show = [&](ULONG i_type, IAFS_Name* i_initial_folder) {
        return m_file_system->ShowDlg(i_type, parameters, i_initial_folder, nullptr, &names, &choice);
    };
    const Tests::LogCapture log;
    EXPECT_HRESULT(E_INVALIDARG, show(3, nullptr));
    EXPECT_HRESULT(E_INVALIDARG, show(Qorv::AFS_Dlg_OpenFiles, nullptr));
    EXPECT_TRUE(log.Has("\"i_dialog_type == Qorv::AFS_Dlg_OpenFiles || i_dialog_type == Qorv::AFS_Dlg_SaveFile || "
                        "i_dialog_type == Qorv::AFS_Dlg_SelectFolder\""));
    EXPECT_TRUE(log.Has("Expression: \"parameters_initial_folder != nullptr\" caused returning "));
    parameters->Member(L"InitialPathName")->SetValue(ComPtr<IUnknown>(m_root.Get()));
    EXPECT_HRESULT(E_INVALIDARG,
                   show(Qorv::AFS_Dlg_OpenFiles, Bind(Tests::Service::Token(Tests::Service::Account::Second))));
    EXPECT_TRUE(log.Has("\"initial_folder->GetSession()->GetWeb()->GetWeb()->GetUserInformation()._id == "
                        "parameters_initial_folder->GetSession()->GetWeb()->GetWeb()->GetUserInformation()._id\""));
    EXPECT_HRESULT(E_POINTER, m_file_system->ShowDlg(0, parameters, nullptr, nullptr, &names, nullptr));
    EXPECT_TRUE(log.Has("Expression: \"o_user_choise != nullptr\" caused returning "));
}

} // namespace
