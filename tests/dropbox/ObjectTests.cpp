// Objects: finding them, listing them, and what they keep.

#include "dropbox/DropboxTest.h"

#include "core/trace/Text.h"

#include <algorithm>
#include <set>

using namespace Tests;

namespace {

class ObjectTest : public DropboxTest {
protected:
    static std::vector<std::wstring> Names(const std::vector<std::shared_ptr<SharePoint::Object>>& i_objects) {
        std::vector<std::wstring> names;
        for (const auto& object : i_objects)
            names.push_back(object->GetInformation()._name);
        std::sort(names.begin(), names.end());
        return names;
    }

    /// "root", "file" or "folder"; "none" for an empty pointer.
    std::string KindOf(const std::shared_ptr<SharePoint::Object>& i_object) const {
        if (i_object == nullptr)
            return "none";
        if (i_object == m_web)
            return "root";
        EXPECT_NE(i_object->AsFile() != nullptr, i_object->AsFolder() != nullptr);
        EXPECT_EQ(i_object->GetWeb(), m_web);
        return i_object->AsFile() != nullptr ? "file" : "folder";
    }
};

TEST_F(ObjectTest, BindsByKind) {
    MakeFolder(L"/Docs");
    MakeFile(L"/Docs/a.txt");
    struct {
        const wchar_t* path;
        Kind kind;
        const char* found;
        std::size_t requests;
    } const rows[] = {
        {L"", Kind::any, "root", 0},
        {L"", Kind::folder, "root", 0},
        {L"", Kind::file, "none", 0},
        {L"/", Kind::any, "root", 0},
        {L"/", Kind::folder, "root", 0},
        {L"/", Kind::file, "none", 0},
        {L"/Docs", Kind::any, "folder", 1},
        {L"/Docs", Kind::folder, "folder", 1},
        {L"/Docs", Kind::file, "none", 1},
        {L"/Docs/a.txt", Kind::any, "file", 1},
        {L"/Docs/a.txt", Kind::folder, "none", 1},
        {L"/docs/A.TXT", Kind::file, "file", 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(ToUtf8(row.path) + " as " + std::to_string(static_cast<int>(row.kind)));
        Service::ClearRequests();
        EXPECT_EQ(KindOf(m_web->BindObject(row.path, row.kind)), row.found);
        EXPECT_EQ(Service::Requests().size(), row.requests);
    }
    const Outcome missing = OutcomeOf([&] { m_web->BindObject(L"/none", Kind::any); });
    EXPECT_EQ(missing.status, 409u);
    EXPECT_TRUE(missing.error_summary.starts_with(L"path/not_found/"));

    for (const char* const kind : {R"(\".tag\": \"deleted\", )", ""}) {
        Service::AddFault(std::string(R"({"path": "2/files/get_metadata", "body": "{)") + kind +
                          R"(\"name\": \"x\"}"})");
        EXPECT_EQ(m_web->BindObject(L"/x", Kind::any), nullptr) << kind;
    }
}

TEST_F(ObjectTest, FindsParents) {
    MakeFolder(L"/a");
    MakeFolder(L"/a/b");
    MakeFile(L"/f");
    struct {
        const wchar_t* path;
        const char* found;
        std::size_t requests;
    } const rows[] = {{L"", "none", 0},  {L"/", "none", 0},      {L"/a", "root", 0},       {L"/missing", "root", 0},
                      {L"a", "root", 0}, {L"/a/b", "folder", 1}, {L"/a/b/c", "folder", 1}, {L"/f/x", "none", 1}};
    for (const auto& row : rows) {
        SCOPED_TRACE(ToUtf8(row.path));
        Service::ClearRequests();
        EXPECT_EQ(KindOf(m_web->GetParentFolder(row.path)), row.found);
        EXPECT_EQ(Service::Requests().size(), row.requests);
    }
    EXPECT_EQ(m_web->GetParentFolder(L"/a/b/c")->GetInformation()._path, L"/a/b");
}

TEST_F(ObjectTest, ListsAllPages) {
    std::vector<std::wstring> expected;
    for (wchar_t letter = L'a'; letter <= L'g'; ++letter) {
        expected.emplace_back(1, letter);
        MakeFile(L"/" + expected.back());
    }
    struct {
        const char* name;
        const char* paging;
        std::size_t requests;
    } const rows[] = {
        {"one page", "{}", 1},
        {"a full page", R"({"size": 7})", 1},
        {"pages of one", R"({"size": 1})", 7},
        {"a short last page", R"({"size": 3})", 3},
        {"some empty", R"({"size": 3, "empty_pages": true})", 5},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Service::SetPaging(row.paging);
        Service::ClearRequests();
        EXPECT_EQ(Names(m_web->GetChildren()), expected);
        const auto requests = Service::Requests();
        EXPECT_EQ(requests.size(), row.requests);
        for (std::size_t i = 1; i < requests.size(); ++i) {
            EXPECT_EQ(requests[i].line, "POST /2/files/list_folder/continue HTTP/1.1");
            EXPECT_TRUE(requests[i].body.starts_with("{\"cursor\": \"") && requests[i].body.ends_with("\"}"));
            EXPECT_EQ(requests[i].Field("Accept"), "application/json; odata=verbose");
            EXPECT_EQ(requests[i].Field("Content-Type"), "application/json");
        }
    }
}

TEST_F(ObjectTest, DoesNotTakeABrokenListingForAShortOne) {
    MakeFile(L"/a");
    MakeFile(L"/b");
    Service::SetPaging(R"({"size": 1})");
    for (const char* const fault : {R"("status": 500)", R"("real": true, "truncate_body": 10)", R"("body": "{}")",
                                    R"("body": "{\"entries\": []}")", R"("body": "")"}) {
        SCOPED_TRACE(fault);
        Service::AddFault(std::string(R"({"path": "2/files/list_folder/continue", )") + fault + "}");
        EXPECT_NE(OutcomeOf([&] { m_web->GetChildren(); }).type, "");
    }
    EXPECT_EQ(m_web->GetChildren().size(), 2u);
}

TEST_F(ObjectTest, TheRootIsAFolderThatStays) {
    EXPECT_EQ(m_web->AsFile(), nullptr);
    EXPECT_EQ(m_web->AsFolder(), m_web);
    EXPECT_EQ(m_web->GetWeb(), m_web);
    const SharePoint::ObjectInformation& information = m_web->GetInformation();
    EXPECT_TRUE(information._is_folder && !information._is_unknown && information._path.empty());

    const Outcome renamed = OutcomeOf([&] { m_web->Rename(L"/x"); });
    EXPECT_EQ(renamed.type, "Exception");
    EXPECT_EQ(renamed.message, L"Root folder cannot be renamed");
    EXPECT_TRUE(m_log.Has("Dropbox::Web::Rename<-- Expression \""));
    EXPECT_TRUE(m_log.Has("\" caused throwing \"Root folder cannot be renamed\"\n"));
    const Outcome deleted = OutcomeOf([&] { m_web->Delete(); });
    EXPECT_EQ(deleted.type, "Exception");
    EXPECT_EQ(deleted.message, L"Root folder cannot be deleted");
    EXPECT_TRUE(m_log.Has("Dropbox::Web::Delete<-- Expression \""));
    EXPECT_TRUE(Service::Requests().empty());
}

TEST_F(ObjectTest, KeepsItsRecordWhenMoved) {
    MakeFile(L"/a.txt", "12345");
    const auto object = Bind(L"/a.txt");
    object->AsFile()->MoveTo(L"/b.txt");
    EXPECT_EQ(object->GetInformation()._path, L"/a.txt");
    EXPECT_EQ(OutcomeOf([&] { object->Refresh(); }).status, 409u);
    EXPECT_EQ(object->GetInformation()._size, 5u) << "a refresh that failed changes nothing";
    EXPECT_EQ(Content(L"/b.txt"), "12345");

    MakeFile(L"/a.txt", "1234567");
    object->Refresh();
    EXPECT_EQ(object->GetInformation()._size, 7u);
}

TEST_F(ObjectTest, AFileHasNoChildren) {
    MakeFile(L"/a.txt");
    const auto object = std::dynamic_pointer_cast<SharePoint::Folder>(Bind(L"/a.txt"));
    ASSERT_NE(object, nullptr);
    EXPECT_TRUE(object->GetChildren().empty());
    EXPECT_TRUE(Service::Requests().empty());
}

TEST_F(ObjectTest, CreatesWhatIsNew) {
    MakeFile(L"/full.txt", "content");
    MakeFolder(L"/Docs");
    const auto file = m_web->CreateFile(L"/full.txt");
    EXPECT_EQ(KindOf(file), "file");
    EXPECT_EQ(file->GetInformation()._size, 0u);
    EXPECT_EQ(file->GetInformation()._path, L"/full.txt");
    EXPECT_GT(file->GetInformation()._modified, 0u);
    EXPECT_EQ(Content(L"/full.txt"), "");

    EXPECT_EQ(KindOf(m_web->CreateFolder(L"/Docs/New")), "folder");
    EXPECT_TRUE(Exists(L"/Docs/New"));
    const Outcome again = OutcomeOf([&] { m_web->CreateFolder(L"/docs"); });
    EXPECT_EQ(again.status, 409u);
    EXPECT_TRUE(again.error_summary.starts_with(L"path/conflict/folder"));
}

} // namespace
