#include "AfsTest.h"

#include "afs/Session.h"

namespace {

class NameTest : public Tests::AfsTest {};

TEST(LocationText, IsValidOrNot) {
    const struct {
        const wchar_t* text;
        bool is_valid;
    } cases[] = {
        {L"dropbox://abc/Docs", true},
        {L"dropbox://abc/", true},
        {L"dropbox:///Docs", true},
        {L"dropbox://a:b/c", true}, // The user id is not checked.
        {L"dropbox://abc/\x4e16\x754c \xd83d\xde00", true},
        {L"dropbox://abc", false},
        {L"dropbox://", false},
        {L"Dropbox://abc/x", false},
        {L"/Docs", false},
        {L"", false},
        {L"dropbox://abc/a?b", false},
        {L"dropbox://abc/a|b", false},
        {L"dropbox://abc/a:b", false},
        {L"dropbox://abc/a\\b", false},
        {L"dropbox://abc/a\"b", false},
        {L"dropbox://abc/a\x1f", false},
    };
    for (const auto& [text, is_valid] : cases)
        EXPECT_EQ(is_valid, Name::IsStringValid(text)) << text;
}

TEST_F(NameTest, TextsAreResolved) {
    std::filesystem::create_directory(Tests::Service::LocalPath(L"/Docs"));
    const auto docs = NameOf(L"/Docs");
    std::wstring upper_id = m_user_id;
    CharUpperW(upper_id.data());
    const struct {
        std::wstring text;
        Qorv::IAFS_Name* parent;
        std::wstring expected; ///< Empty: E_INVALIDARG.
    } cases[] = {
        {L"report.pdf", docs, Location(L"/Docs/report.pdf")},
        {L"/x", docs, Location(L"/x")},
        {L"sub/", docs, Location(L"/Docs/sub")},
        {L"sub//", docs, Location(L"/Docs/sub/")},
        {L"dropbox://", docs, Location(L"/Docs")},
        {L"dropbox://", m_root, Location(L"")},
        {L"dropbox:///y", docs, Location(L"/y")},
        {L"a b", m_root, Location(L"/a b")},
        {L"dropbox://" + upper_id + L"/x", docs, L"dropbox://" + upper_id + L"/x"},
        {Location(L""), docs, Location(L"")},
        {L"dropbox://somebody/x", docs, L""},
        {L"dropbox://" + m_user_id + L"2/x", docs, L""},
    };
    for (const auto& [text, parent, expected] : cases) {
        Qorv::ComPtr<Qorv::IAFS_Name> name;
        const HRESULT result = m_file_system->StringToName(text.c_str(), 0, parent, &name);
        EXPECT_HRESULT(expected.empty() ? E_INVALIDARG : S_OK, result) << ToUtf8(text);
        if (name != nullptr) {
            EXPECT_EQ(expected, TextOf(name)) << ToUtf8(text);
        }
    }
}

TEST_F(NameTest, TheParentItselfIsGivenBack) {
    const Tests::LogCapture log;
    for (const std::wstring& text : {std::wstring(), TextOf(m_root)}) {
        Qorv::ComPtr<Qorv::IAFS_Name> name;
        EXPECT_HRESULT(S_OK, m_file_system->StringToName(text.c_str(), 0, m_root, &name));
        EXPECT_EQ(m_root, name);
    }
    Qorv::ComPtr<Qorv::IAFS_Name> name;
    EXPECT_HRESULT(E_INVALIDARG, m_file_system->StringToName(L"dropbox://somebody/x", 0, m_root, &name));
    EXPECT_TRUE(
        log.Has("Name::Create<-- Expression \"user_id == path || StringCompare(other_object->GetWeb()->"
                "GetUserInformation()._id, user_id, static_cast<int>(path - user_id)) == 0\" caused throwing "));
}

TEST_F(NameTest, ValidationMakesNoName) {
    EXPECT_HRESULT(S_OK, m_file_system->StringToName(L"dropbox://a/b", 2, nullptr, nullptr));
    Qorv::ComPtr<Qorv::IAFS_Name> name = m_root;
    EXPECT_HRESULT(E_INVALIDARG, m_file_system->StringToName(L"dropbox://a/b?", 2, m_root, &name));
    EXPECT_EQ(nullptr, name);
    EXPECT_HRESULT(E_INVALIDARG, m_file_system->StringToName(L"dropbox://a/b", 0, nullptr, &name));
    EXPECT_HRESULT(E_POINTER, m_file_system->StringToName(nullptr, 0, m_root, &name));
    EXPECT_HRESULT(E_POINTER, m_file_system->StringToName(L"/a", 0, m_root, nullptr));
}

TEST_F(NameTest, TextOfAName) {
    const auto file = NameOf(L"/Docs/a.pdf");
    EXPECT_EQ(Location(L"/Docs/a.pdf"), TextOf(file));
    EXPECT_EQ(L"/Docs/a.pdf", TextOf(file, 2));
    EXPECT_EQ(L"/Docs/a.pdf", TextOf(file, 8));
    EXPECT_EQ(L"", TextOf(m_root, 8));
    EXPECT_EQ(L"a.pdf", TextOf(file, 0, NameOf(L"/docs")));
    EXPECT_EQ(L"s/a.pdf", TextOf(file, 0, NameOf(L"/Doc"))); // No "/" is required between the two.
    EXPECT_EQ(L"", TextOf(file, 0, file));
    const Tests::LogCapture log;
    Qorv::Bstr text;
    EXPECT_HRESULT(E_INVALIDARG, m_file_system->NameToString(file, 0, NameOf(L"/xyz"), &text));
    EXPECT_TRUE(log.Has("Expression: \"path != nullptr\" caused returning \"HRESULT 0x80070057: "));
}

TEST_F(NameTest, ParentsUpToTheRoot) {
    auto name = NameOf(L"/Docs/a.pdf");
    for (const wchar_t* expected : {L"/Docs", L""}) {
        Qorv::ComPtr<Qorv::IAFS_Name> parent;
        EXPECT_HRESULT(S_OK, m_file_system->NameGetParent(name, &parent));
        EXPECT_EQ(Location(expected), TextOf(parent));
        name = parent;
    }
    Qorv::ComPtr<Qorv::IAFS_Name> parent = name;
    EXPECT_HRESULT(S_OK, m_file_system->NameGetParent(name, &parent));
    EXPECT_EQ(nullptr, parent);
    EXPECT_TRUE(Tests::Service::Requests().empty());
}

TEST_F(NameTest, EqualNames) {
    const auto name = NameOf(L"/Docs/\xe4");
    const auto foreign = Qorv::Create<Tests::ForeignName>();
    const struct {
        Qorv::ComPtr<Qorv::IAFS_Name> one, other;
        VARIANT_BOOL are_equal;
        HRESULT result;
    } cases[] = {
        {name, NameOf(L"/docs/\xc4"), VARIANT_TRUE, S_OK},
        {name, NameOf(L"/docs"), VARIANT_FALSE, S_OK},
        {nullptr, nullptr, VARIANT_TRUE, S_OK},
        {name, nullptr, VARIANT_FALSE, S_OK},
        {nullptr, name, VARIANT_FALSE, S_OK},
        {name, foreign, VARIANT_FALSE, E_INVALIDARG},
    };
    for (const auto& [one, other, are_equal, result] : cases) {
        VARIANT_BOOL answer = VARIANT_TRUE;
        EXPECT_HRESULT(result, m_file_system->NamesAreEqual(one, other, &answer));
        EXPECT_EQ(are_equal, answer);
    }
}

TEST_F(NameTest, ChildrenExist) {
    std::filesystem::create_directory(Tests::Service::LocalPath(L"/Docs"));
    Tests::WriteBytes(Tests::Service::LocalPath(L"/Docs/a.pdf"), "a");
    const auto docs = NameOf(L"/Docs");
    const auto child = NameOf(L"/docs/A.PDF");
    const auto is_child = [&](Qorv::IAFS_Name* i_name, Qorv::IAFS_Name* i_parent) {
        VARIANT_BOOL answer = VARIANT_TRUE;
        EXPECT_HRESULT(S_OK, m_file_system->NameIsChildOf(i_name, i_parent, &answer));
        return answer == VARIANT_TRUE;
    };
    EXPECT_TRUE(is_child(child, docs));
    EXPECT_EQ(Location(L"/Docs/a.pdf"), TextOf(child)); // The question bound it.
    EXPECT_FALSE(is_child(NameOf(L"/Docs/missing"), docs));
    EXPECT_FALSE(is_child(NameOf(L"/elsewhere"), docs));
    EXPECT_FALSE(is_child(child, nullptr));

    // A file that cannot be looked up is not taken for a missing one.
    Tests::Service::AddFault(R"({"path": "2/files/get_metadata", "status": 409,
                                 "body": "{\"error_summary\": \"path/restricted_content/.\", \"error\": {}}"})");
    VARIANT_BOOL answer = VARIANT_TRUE;
    EXPECT_HRESULT(E_FAIL, m_file_system->NameIsChildOf(NameOf(L"/Docs/other"), docs, &answer));
}

// Comparing only the texts does not tell such accounts apart.
TEST_F(NameTest, AUserIdThatBeginsWithAnotherIsNotBelowIt) {
    Tests::WriteBytes(Tests::Service::LocalPath(L"/a"), "a");
    const auto session =
        Qorv::OwnObject<Name>(Bind(Tests::Service::Token(Tests::Service::Account::Second)))->GetSession();
    const auto name = Qorv::Create<Name>(session, L"dropbox://" + m_user_id + L"d/a");
    VARIANT_BOOL answer = VARIANT_TRUE;
    EXPECT_HRESULT(S_OK, m_file_system->NameIsChildOf(name, m_root, &answer));
    EXPECT_EQ(VARIANT_FALSE, answer);
    EXPECT_EQ(nullptr, name->GetObject()) << "bound to an object of another account";
}

TEST_F(NameTest, ABoundNameIsNotAskedForAgain) {
    Tests::WriteBytes(Tests::Service::LocalPath(L"/a"), "a");
    const auto name = OwnName(L"/a");
    const auto object = name->BindObject();
    ASSERT_NE(nullptr, object);
    EXPECT_EQ(object, name->BindObject(Name::BindObjectType::file));
    EXPECT_EQ(nullptr, name->BindObject(Name::BindObjectType::folder));
    EXPECT_EQ(1U, Tests::Service::Requests().size());

    const auto missing = OwnName(L"/b");
    EXPECT_EQ(nullptr, missing->BindObject());
    EXPECT_EQ(nullptr, missing->BindObject());
    EXPECT_EQ(3U, Tests::Service::Requests().size());
}

TEST_F(NameTest, AnotherUsersLocationBindsToNothing) {
    const auto root = Qorv::OwnObject<Name>(m_root);
    const auto foreign = Qorv::Create<Name>(root->GetSession(), L"dropbox://somebody/x");
    EXPECT_EQ(nullptr, foreign->BindObject());
    EXPECT_TRUE(Tests::Service::Requests().empty());
}

TEST_F(NameTest, ObjectsOfAnotherAccountAreRefused) {
    const auto other_root = Qorv::OwnObject<Name>(Bind(Tests::Service::Token(Tests::Service::Account::Second)));
    const auto root = Qorv::OwnObject<Name>(m_root);
    EXPECT_HRESULT(E_INVALIDARG, Tests::OutcomeOf([&] { Name::Create(other_root->GetObject(), root); }).code);
    EXPECT_HRESULT(E_INVALIDARG, Tests::OutcomeOf([&] { root->SetObject({}); }).code);
}

} // namespace
