#include "afs/AfsTest.h"
#include "ui/dialog/DialogParameters.h"

namespace {

using DevHost::CabNode;

class SettingsCallbacks final : public Qorv::CoClass<SettingsCallbacks, Qorv::IUIX_SettingsBtnCallbacks> {
public:
    HRESULT STDMETHODCALLTYPE OnSettings(HWND) noexcept override { return S_OK; }
};

class DialogParametersTest : public testing::Test {
protected:
    Qorv::ComPtr<CabNode> m_cab = Qorv::Create<CabNode>();
    Ui::DialogParameters m_parameters;

    void Set(const wchar_t* i_id, CabNode::Value i_value) { m_cab->Member(i_id)->SetValue(std::move(i_value)); }
};

TEST_F(DialogParametersTest, ReadsEveryItem) {
    const Qorv::ComPtr<Qorv::IAFS_Name> folder = Qorv::Create<Tests::ForeignName>();
    const auto callbacks = Qorv::Create<SettingsCallbacks>();
    Set(L"Flags", LONG{17});
    Set(L"Title", L"a title");
    Set(L"ActionBtnTitle", L"Do it");
    Set(L"CancelBtnTitle", L"Leave it");
    Set(L"SettingsBtnTitle", L"More");
    Set(L"FileFilters", L"PDF|*.pdf|");
    Set(L"FileFilterIndex", LONG{2});
    Set(L"DefaultExt", L"pdf");
    Set(L"InitialPathName", Qorv::ComPtr<IUnknown>(folder));
    Set(L"InitialFileName", L"letter");
    Set(L"SettingsBtnCallbacks", Qorv::ComPtr<IUnknown>(callbacks));
    ASSERT_HRESULT_SUCCEEDED(m_parameters.LoadFromCab(nullptr, m_cab));
    EXPECT_EQ(17, m_parameters.Flags);
    EXPECT_EQ(L"a title", m_parameters.Title.View());
    EXPECT_EQ(L"Do it", m_parameters.ActionBtnTitle.View());
    EXPECT_EQ(L"Leave it", m_parameters.CancelBtnTitle.View());
    EXPECT_EQ(L"More", m_parameters.SettingsBtnTitle.View());
    EXPECT_EQ(L"PDF|*.pdf|", m_parameters.FileFilters.View());
    EXPECT_EQ(2, m_parameters.FileFilterIndex);
    EXPECT_EQ(L"pdf", m_parameters.DefaultExt.View());
    EXPECT_EQ(folder, m_parameters.InitialPathName);
    EXPECT_EQ(L"letter", m_parameters.InitialFileName.View());
    EXPECT_EQ(callbacks.Get(), m_parameters.SettingsBtnCallbacks.Get());
}

TEST_F(DialogParametersTest, ValuesOfOtherTypesLeaveTheFieldsEmpty) {
    const Qorv::ComPtr<IUnknown> other = Qorv::Create<SettingsCallbacks>();
    Set(L"Flags", L"17");
    Set(L"Title", LONG{5});
    Set(L"FileFilters", CabNode::Dictionary());
    Set(L"FileFilterIndex", CabNode::Array());
    Set(L"DefaultExt", other);
    Set(L"InitialPathName", other);
    Set(L"InitialFileName", CabNode::Array());
    Set(L"SettingsBtnCallbacks", L"callbacks");
    m_parameters.Flags = 4;
    m_parameters.Title = Qorv::Bstr(L"of an earlier call");
    m_parameters.InitialPathName = Qorv::Create<Tests::ForeignName>();
    ASSERT_HRESULT_SUCCEEDED(m_parameters.LoadFromCab(nullptr, m_cab));
    EXPECT_EQ(0, m_parameters.Flags);
    EXPECT_EQ(0, m_parameters.FileFilterIndex);
    for (const std::wstring_view text :
         {m_parameters.Title.View(), m_parameters.FileFilters.View(), m_parameters.DefaultExt.View(),
          m_parameters.InitialFileName.View(), m_parameters.CancelBtnTitle.View()})
        EXPECT_EQ(L"", text);
    EXPECT_EQ(nullptr, m_parameters.InitialPathName);
    EXPECT_EQ(nullptr, m_parameters.SettingsBtnCallbacks);
}

TEST_F(DialogParametersTest, WritesTheFilterIndexAlone) {
    Set(L"Flags", LONG{1});
    Set(L"Title", L"a title");
    ASSERT_HRESULT_SUCCEEDED(m_parameters.LoadFromCab(nullptr, m_cab));
    m_parameters.Flags = 99;
    m_parameters.Title = Qorv::Bstr(L"another");
    m_parameters.FileFilterIndex = 3;
    EXPECT_HRESULT(S_OK, m_parameters.SaveToCab(nullptr, m_cab));
    EXPECT_EQ(L"a title", m_cab->MemberText(L"Title"));
    EXPECT_EQ(CabNode::Value(LONG{1}), m_cab->Member(L"Flags")->GetValue());
    EXPECT_EQ(CabNode::Value(LONG{3}), m_cab->Member(L"FileFilterIndex")->GetValue());
}

TEST_F(DialogParametersTest, ReturnsTheTemplatesFailure) {
    EXPECT_HRESULT(E_INVALIDARG, m_parameters.LoadFromCab(nullptr, nullptr));
    EXPECT_HRESULT(E_INVALIDARG, m_parameters.SaveToCab(nullptr, nullptr));
    m_cab->SetValue(L"no dictionary");
    EXPECT_HRESULT(E_INVALIDARG, m_parameters.LoadFromCab(nullptr, m_cab));
}

} // namespace
