// Settings dictionaries and encrypted texts: templates are enforced, and files survive everything.

#include "base/Failure.h"
#include "qorv/Values.h"
#include "services/AuxiliaryService.h"
#include "services/CabFile.h"
#include "services/CryptKey.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace Tests {
namespace {

using DevHost::CabFile;
using DevHost::CabNode;
using DevHost::CryptKey;
using Qorv::ComPtr;

constexpr std::string_view settings_template = R"(<?xml version="1.0" encoding="UTF-8"?>
<CabTemplate>
    <ItemSet id="Inner"><Item id="Depth" type="Int"/></ItemSet>
    <ItemSet id="Texts"><Item type="String"/></ItemSet>
    <ItemSet id="Outer">
        <Item id="Title" type="String"/>
        <Item id="Count" type="Int"/>
        <Item id="Object" type="IUnknown"/>
        <Item id="Sub" type="Dictionary" itemSet="Inner"/>
        <Item id="List" type="Array" itemSet="Texts"/>
    </ItemSet>
    <Root id="Top" type="Dictionary" itemSet="Outer"/>
</CabTemplate>)";

HRESULT Apply(Qorv::IAUX_CabNode* i_node, std::string_view i_template, const wchar_t* i_root = L"Top") {
    return i_node->SetTemplate2(i_template.data(), static_cast<LONG>(i_template.size()), i_root);
}

ComPtr<Qorv::IAUX_CabNode> ItemOf(Qorv::IAUX_CabNode* i_node, const wchar_t* i_id) {
    ComPtr<Qorv::IAUX_CabNode> item;
    EXPECT_EQ(i_node->get_Item(i_id, &item), S_OK);
    return item;
}

LONG TypeOf(Qorv::IAUX_CabNode* i_node) {
    LONG type = -1;
    EXPECT_EQ(i_node->get_Type(&type), S_OK);
    return type;
}

std::wstring TextOf(Qorv::IAUX_CabNode* i_node) {
    Qorv::Bstr text;
    EXPECT_EQ(i_node->get_String(&text), S_OK);
    return std::wstring(text.View());
}

TEST(CabNodeTest, HoldsWhatItsTemplateAllows) {
    const CabNode::Node node = Qorv::Create<CabNode>();
    ComPtr<Qorv::IAUX_CabNode> item;
    EXPECT_EQ(node->get_Item(L"Title", &item), E_INVALIDARG) << "without a template";
    ASSERT_EQ(Apply(node, settings_template), S_OK);
    EXPECT_EQ(node->get_Item(L"Unknown", &item), E_INVALIDARG);
    EXPECT_EQ(item.Get(), nullptr);

    const auto title = ItemOf(node, L"Title");
    EXPECT_EQ(TypeOf(title), Qorv::AUX_CabType_Empty);
    EXPECT_EQ(TextOf(title), L"");
    EXPECT_EQ(title->put_v(Qorv::Variant(LONG{7})), E_INVALIDARG);
    const std::wstring text(L"a\0b \u4E16", 5);
    EXPECT_EQ(title->put_v(Qorv::Variant(Qorv::Bstr(text))), S_OK);
    EXPECT_EQ(TypeOf(title), Qorv::AUX_CabType_String);
    EXPECT_EQ(TextOf(ItemOf(node, L"Title")), text);

    const auto count = ItemOf(node, L"Count");
    EXPECT_EQ(count->put_v(Qorv::Variant(Qorv::Bstr(L"7"))), E_INVALIDARG);
    EXPECT_EQ(count->put_v(Qorv::Variant(LONG{-7})), S_OK);
    Qorv::Variant number;
    EXPECT_EQ(count->get_v(&number), S_OK);
    EXPECT_EQ(number->lVal, -7);
    Qorv::Bstr not_a_text;
    EXPECT_EQ(count->get_String(&not_a_text), E_INVALIDARG);

    const auto object = ItemOf(node, L"Object");
    EXPECT_EQ(object->put_v(Qorv::Variant(static_cast<IUnknown*>(title.Get()))), S_OK);
    Qorv::Variant held;
    EXPECT_EQ(object->get_v(&held), S_OK);
    EXPECT_EQ(held->punkVal, title.Get());

    EXPECT_EQ(TypeOf(ItemOf(node, L"List")), Qorv::AUX_CabType_Array);
    const auto sub = ItemOf(node, L"Sub");
    EXPECT_EQ(TypeOf(sub), Qorv::AUX_CabType_Dictionary);
    EXPECT_EQ(sub->put_v(Qorv::Variant(LONG{7})), E_INVALIDARG);
    EXPECT_EQ(ItemOf(sub, L"Depth")->put_v(Qorv::Variant(LONG{7})), S_OK);
}

TEST(CabNodeTest, KeepsValuesWhenTheTemplateIsAppliedAgain) {
    const CabNode::Node node = Qorv::Create<CabNode>();
    ASSERT_EQ(Apply(node, settings_template), S_OK);
    ItemOf(node, L"Title")->put_v(Qorv::Variant(Qorv::Bstr(L"kept")));
    ItemOf(node, L"Count")->put_v(Qorv::Variant(LONG{7}));
    ASSERT_EQ(Apply(node, settings_template), S_OK);
    EXPECT_EQ(TextOf(ItemOf(node, L"Title")), L"kept");

    ASSERT_EQ(Apply(node, R"(<CabTemplate><ItemSet id="S"><Item id="Count" type="String"/></ItemSet>
                             <Root id="Top" type="Dictionary" itemSet="S"/></CabTemplate>)"),
              S_OK);
    EXPECT_EQ(TypeOf(ItemOf(node, L"Count")), Qorv::AUX_CabType_Int) << "an old value of another type";
    ComPtr<Qorv::IAUX_CabNode> undeclared;
    EXPECT_EQ(node->get_Item(L"Title", &undeclared), E_INVALIDARG);
    EXPECT_EQ(node->MemberText(L"Title"), L"kept") << "out of the plug-in's reach, not lost";
}

TEST(CabNodeTest, RefusesTemplatesThatAreNone) {
    struct Row {
        const char* name;
        std::string_view document;
    };
    for (const Row& row : {
             Row{"empty", ""},
             Row{"no XML", "CabTemplate"},
             Row{"cut off", settings_template.substr(0, 300)},
             Row{"another document", "<localization/>"},
             Row{"no root", "<CabTemplate/>"},
             Row{"another root", R"(<CabTemplate><Root id="Other" type="Dictionary" itemSet="S"/></CabTemplate>)"},
             Row{"a root of another type", R"(<CabTemplate><Root id="Top" type="Int"/></CabTemplate>)"},
             Row{"an unknown type", R"(<CabTemplate><ItemSet id="S"><Item id="A" type="Float"/></ItemSet>
                                       <Root id="Top" type="Dictionary" itemSet="S"/></CabTemplate>)"},
             Row{"a circle", R"(<CabTemplate><ItemSet id="S"><Item id="A" type="Dictionary" itemSet="S"/></ItemSet>
                                <Root id="Top" type="Dictionary" itemSet="S"/></CabTemplate>)"},
         }) {
        const CabNode::Node node = Qorv::Create<CabNode>();
        EXPECT_EQ(Apply(node, row.document), E_INVALIDARG) << row.name;
    }
}

TEST(CabFileTest, KeepsADictionaryAcrossRuns) {
    const TemporaryFolder folder;
    const CabFile file(folder.Path() / "made" / "settings.json");
    EXPECT_FALSE(file.Exists());
    CabNode::Node node = file.Load();
    ASSERT_EQ(Apply(node, settings_template), S_OK);
    const std::wstring text(L"\" \\ \n \u4E16 \0 end", 13);
    ItemOf(node, L"Title")->put_v(Qorv::Variant(Qorv::Bstr(text)));
    ItemOf(ItemOf(node, L"Sub"), L"Depth")->put_v(Qorv::Variant(LONG{-2147483647}));
    file.Save(*node);

    node = file.Load();
    EXPECT_EQ(node->MemberText(L"Title"), text) << "before a template is applied";
    ASSERT_EQ(Apply(node, settings_template), S_OK);
    EXPECT_EQ(TextOf(ItemOf(node, L"Title")), text);
    EXPECT_EQ(TypeOf(ItemOf(node, L"Count")), Qorv::AUX_CabType_Empty);
    Qorv::Variant depth;
    EXPECT_EQ(ItemOf(ItemOf(node, L"Sub"), L"Depth")->get_v(&depth), S_OK);
    EXPECT_EQ(depth->lVal, -2147483647);
}

TEST(CabFileTest, SetsADamagedFileAside) {
    const TemporaryFolder folder;
    for (const std::string damaged :
         {"", "{\"Title\": \"cut of", "[1, 2]", "{\"Title\": 1.5}", "{\"Title\": \"\xFF\"}"}) {
        const auto path = folder.Path() / "settings.json";
        WriteBytes(path, damaged);
        const CabFile file(path);
        try {
            file.Load();
            ADD_FAILURE() << "no failure for " << damaged;
        } catch (const DevHost::Failure& failure) {
            const std::wstring& message = failure.Text();
            const std::wstring aside = message.substr(message.rfind(path.wstring()));
            EXPECT_EQ(ReadBytes(aside), damaged) << "the bytes are where the message says";
        }
        EXPECT_FALSE(file.Exists());
        EXPECT_EQ(TypeOf(file.Load()), Qorv::AUX_CabType_Dictionary) << "the next run begins anew";
    }
}

class EncryptionTest : public testing::Test {
protected:
    HRESULT Decrypt(const std::wstring& i_cipher_text, std::wstring& o_text) {
        const ComPtr<Qorv::IAUX_String> input = String(i_cipher_text);
        ComPtr<Qorv::IAUX_String> output;
        const HRESULT result = m_service->DecryptString(m_key, input, &output);
        if (output != nullptr)
            o_text = TextOf(output);
        return result;
    }

    std::wstring Encrypt(const std::wstring& i_text) {
        ComPtr<Qorv::IAUX_String> output;
        EXPECT_EQ(m_service->EncryptString(m_key, String(i_text), &output), S_OK);
        return TextOf(output);
    }

    ComPtr<Qorv::IAUX_String> String(const std::wstring& i_text) {
        ComPtr<Qorv::IAUX_String> result;
        EXPECT_EQ(m_service->CreateString(nullptr, &result), S_OK);
        EXPECT_EQ(result->put_Value(Qorv::Bstr(i_text)), S_OK);
        return result;
    }

    static std::wstring TextOf(Qorv::IAUX_String* i_string) {
        Qorv::Bstr text;
        EXPECT_EQ(i_string->get_Value(&text), S_OK);
        return std::wstring(text.View());
    }

    TemporaryFolder m_folder;
    ComPtr<DevHost::AuxiliaryService> m_service = Qorv::Create<DevHost::AuxiliaryService>();
    ComPtr<CryptKey> m_key = CryptKey::Load(m_folder.Path() / "keys" / "a.key", true);
};

TEST_F(EncryptionTest, GivesTheTextBackToTheSameKey) {
    for (const std::wstring& text :
         {std::wstring(), std::wstring(L"sl.token"), std::wstring(L"\0\u4E16\xD800", 3), std::wstring(5000, L'x')}) {
        const std::wstring cipher_text = Encrypt(text);
        EXPECT_EQ(cipher_text.find(L"token"), cipher_text.npos);
        EXPECT_TRUE(std::ranges::all_of(cipher_text, [](wchar_t i_c) { return i_c > L' ' && i_c < 0x7F; }));
        std::wstring clear = L"not decrypted";
        EXPECT_EQ(Decrypt(cipher_text, clear), S_OK);
        EXPECT_EQ(clear, text);
    }
    const std::wstring cipher_text = Encrypt(L"text");
    std::wstring clear;
    m_key = CryptKey::Load(m_folder.Path() / "keys" / "a.key", false);
    EXPECT_EQ(Decrypt(cipher_text, clear), S_OK) << "the key is kept";
    m_key = CryptKey::Load(m_folder.Path() / "keys" / "b.key", true);
    EXPECT_EQ(Decrypt(cipher_text, clear), E_INVALIDARG) << "another key";
    EXPECT_EQ(CryptKey::Load(m_folder.Path() / "keys" / "c.key", false).Get(), nullptr);
}

TEST_F(EncryptionTest, RefusesWhatItDidNotWrite) {
    std::wstring clear;
    const std::wstring cipher_text = Encrypt(L"sl.token");
    for (const std::wstring& text : {std::wstring(), std::wstring(L"sl.token"), cipher_text + L"A", cipher_text + L"\n",
                                     cipher_text.substr(0, cipher_text.find(L':') + 1), L" " + cipher_text})
        EXPECT_EQ(Decrypt(text, clear), E_INVALIDARG);
    for (std::size_t i = 0; i < cipher_text.size(); ++i) {
        std::wstring damaged = cipher_text;
        damaged[i] ^= 1;
        EXPECT_EQ(Decrypt(damaged, clear), E_INVALIDARG) << "flipped at " << i;
        EXPECT_EQ(Decrypt(cipher_text.substr(0, i), clear), E_INVALIDARG) << "cut at " << i;
    }
    ComPtr<Qorv::IAUX_String> output;
    EXPECT_EQ(m_service->DecryptString(nullptr, String(cipher_text), &output), E_POINTER)
        << "a missing key doesn't mean clear text";
}

TEST_F(EncryptionTest, NeverReplacesADamagedKey) {
    const auto path = m_folder.Path() / "keys" / "a.key";
    WriteBytes(path, "short");
    EXPECT_THROW(static_cast<void>(CryptKey::Load(path, true)), DevHost::Failure);
    EXPECT_EQ(ReadBytes(path), "short");
}

} // namespace
} // namespace Tests
