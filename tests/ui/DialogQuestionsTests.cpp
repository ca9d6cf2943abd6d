// What a dialog asks and tells, as the host's message boxes get it: no windows.

#include "core/trace/Text.h"
#include "support/ForwardingHost.h"
#include "support/HostTest.h"
#include "support/Log.h"
#include "ui/dialog/DialogQuestions.h"
#include "ui/list/CountText.h"

namespace {

using Qorv::ComPtr;

/// Records a message box instead of showing it, and presses a button of it.
class RecordingUi final : public Qorv::CoClass<RecordingUi, Qorv::IUIX_Inst> {
public:
    HRESULT STDMETHODCALLTYPE CreateImage(const ULONG*, ULONG, Qorv::IUIX_Image**) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE CreateBitmapFromStream(IStream*, Qorv::IUIX_Bitmap**) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE CreateObj(const Qorv::UIX_CreateObjParameters*, Qorv::IUIX_Obj**) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetImage(Qorv::PCStr, Qorv::IUIX_Image**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE AddEventLoopMonitor(Qorv::IUIX_EventLoopMonitor*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE RemoveEventLoopMonitor(Qorv::IUIX_EventLoopMonitor*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE ShowMsgBox(const Qorv::UIX_MsgBoxParameters* i_parameters,
                                         ULONG* o_answer) noexcept override {
        text = i_parameters->text;
        icon = i_parameters->icon;
        default_button = i_parameters->buttons[i_parameters->default_button];
        *o_answer = answer;
        return result;
    }
    HRESULT STDMETHODCALLTYPE ShowMenu(HWND, POINT, const Qorv::UIX_Command*, ULONG, LONG*) noexcept override {
        return E_NOTIMPL;
    }

    std::wstring text, default_button;
    ULONG icon = 99;
    ULONG answer = 0;
    HRESULT result = S_OK;
};

class HostWithUi final : public Tests::ForwardingHost<HostWithUi> {
public:
    HostWithUi(ComPtr<Qorv::IQorv_Inst> i_host, ComPtr<RecordingUi> i_ui)
        : ForwardingHost(std::move(i_host)), m_ui(std::move(i_ui)) {}
    HRESULT STDMETHODCALLTYPE GetExtension(Qorv::PCStr, IUnknown** o_service) noexcept override {
        *o_service = ComPtr<IUnknown>(m_ui.Get()).Detach();
        return S_OK;
    }

private:
    ComPtr<RecordingUi> m_ui;
};

class DialogQuestionsTest : public Tests::HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        m_ui = Qorv::Create<RecordingUi>();
        m_questions.emplace(Qorv::Create<HostWithUi>(m_host, m_ui), nullptr);
    }
    void TearDown() override {
        m_questions.reset();
        m_ui.Reset();
        HostTest::TearDown();
    }

    ComPtr<RecordingUi> m_ui;
    std::optional<Ui::DialogQuestions> m_questions;
};

Ui::FileRow Row(const wchar_t* i_title, bool i_is_folder = false) {
    Ui::FileRow row;
    row.title = i_title;
    row.is_folder = i_is_folder;
    return row;
}

TEST_F(DialogQuestionsTest, SuggestsTheSafeAnswer) {
    EXPECT_TRUE(m_questions->AskToReplace(L"a.pdf"));
    EXPECT_EQ(L"Cancel", m_ui->default_button);

    const Ui::FileRow file = Row(L"a.pdf"), folder = Row(L"Docs", true);
    const struct {
        const char* what;
        std::vector<const Ui::FileRow*> rows;
        ULONG icon;
    } cases[] = {
        {"a file", {&file}, Qorv::UIX_MsgBox_IconQuestion},
        {"some files", {&file, &file}, Qorv::UIX_MsgBox_IconQuestion},
        {"many files", std::vector<const Ui::FileRow*>(10, &file), Qorv::UIX_MsgBox_IconWarning},
        {"a folder", {&folder}, Qorv::UIX_MsgBox_IconWarning},
        {"a folder among files", {&file, &folder}, Qorv::UIX_MsgBox_IconWarning},
    };
    for (const auto& test : cases) {
        EXPECT_TRUE(m_questions->AskToDelete(test.rows)) << test.what;
        EXPECT_EQ(test.icon, m_ui->icon) << test.what;
        EXPECT_EQ(L"Cancel", m_ui->default_button) << test.what;
    }
    m_ui->answer = 1;
    EXPECT_FALSE(m_questions->AskToDelete({&file}));
    EXPECT_FALSE(m_questions->AskToReplace(L"a.pdf"));
    m_ui->answer = 0;
    m_ui->result = E_FAIL;
    EXPECT_FALSE(m_questions->AskToDelete({&file})) << "nobody was asked";
}

TEST_F(DialogQuestionsTest, LogsTheAnswer) {
    const Tests::LogCapture log;
    m_ui->answer = 1;
    m_questions->AskToReplace(L"a.pdf");
    EXPECT_TRUE(log.Has("INFORMATION: '\"a.pdf\" already exists. Do you want to replace it?' was answered with "
                        "'db.btn.cancel'"));
}

TEST_F(DialogQuestionsTest, CountsInTheUsersForm) {
    const Ui::FileRow file = Row(L"a.pdf");
    m_questions->AskToDelete(std::vector<const Ui::FileRow*>(10'000, &file));
    EXPECT_TRUE(m_ui->text.find(Ui::CountText(10'000) + L" files") != std::wstring::npos) << ToUtf8(m_ui->text);
}

TEST_F(DialogQuestionsTest, SuggestsToTryAgain) {
    EXPECT_EQ(Ui::FailureAnswer::try_again, m_questions->AskAfterLoadFailure(L"Dropbox", {E_FAIL, {}}));
    EXPECT_EQ(L"&Try again", m_ui->default_button);
}

} // namespace
