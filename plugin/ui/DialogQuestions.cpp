#include "ui/DialogQuestions.h"

#include "core/MessageBox.h"
#include "core/Trace.h"

#include <algorithm>

namespace Ui {
namespace {

constexpr std::size_t most_names = 10; ///< That a question lists.

/// The index of the button that was pressed, the last one's when none was.
ULONG Ask(Qorv::IQorv_Inst* i_host_instance, const std::wstring& i_text, Qorv::UIX_MsgBoxIcon i_icon,
          std::initializer_list<Qorv::PCStr> i_buttons) {
    TRACE_FUNCTION();
    const ULONG last = static_cast<ULONG>(i_buttons.size()) - 1;
    ULONG answer = last;
    return SUCCEEDED(ShowMessageBox(i_host_instance, i_text, i_icon, i_buttons, answer)) ? answer : last;
}

std::wstring NamesOf(Qorv::IQorv_Inst* i_host_instance, const std::vector<const FileRow*>& i_rows) {
    TRACE_FUNCTION();
    std::wstring names;
    for (std::size_t i = 0; i < std::min(i_rows.size(), most_names); ++i)
        names += L"\n" + i_rows[i]->title;
    if (i_rows.size() > most_names)
        names += L"\n" + FormatString(i_host_instance, L"db.msg.more", {std::to_wstring(i_rows.size() - most_names)});
    return names;
}

} // namespace

void TellWhyNot(Qorv::IQorv_Inst* i_host_instance, Qorv::PCStr i_text_id, const std::wstring& i_name) {
    TRACE_FUNCTION();
    Ask(i_host_instance, FormatString(i_host_instance, i_text_id, {i_name}), Qorv::UIX_MsgBox_IconWarning,
        {L"db.btn.ok"});
}

void TellFailure(Qorv::IQorv_Inst* i_host_instance, Qorv::PCStr i_text_id, const Failure& i_failure) {
    TRACE_FUNCTION();
    TellWhyNot(i_host_instance, i_text_id, FailureText(i_host_instance, i_failure));
}

bool AskToReplace(Qorv::IQorv_Inst* i_host_instance, const std::wstring& i_name) {
    TRACE_FUNCTION();
    return Ask(i_host_instance, FormatString(i_host_instance, L"db.msg.replace", {i_name}),
               Qorv::UIX_MsgBox_IconQuestion, {L"db.btn.replace", L"db.btn.cancel"}) == 0;
}

bool AskToDelete(Qorv::IQorv_Inst* i_host_instance, const std::vector<const FileRow*>& i_rows) {
    TRACE_FUNCTION();
    std::wstring text;
    if (i_rows.size() == 1)
        text = FormatString(i_host_instance, i_rows.front()->is_folder ? L"db.msg.deleteFolder" : L"db.msg.deleteFile",
                            {i_rows.front()->title});
    else
        text = FormatString(i_host_instance, L"db.msg.deleteSeveral", {std::to_wstring(i_rows.size())}) + L"\n" +
               NamesOf(i_host_instance, i_rows);
    return Ask(i_host_instance, text, Qorv::UIX_MsgBox_IconQuestion, {L"db.btn.delete", L"db.btn.cancel"}) == 0;
}

FailureAnswer AskAfterLoadFailure(Qorv::IQorv_Inst* i_host_instance, const std::wstring& i_folder,
                                  const Failure& i_failure) {
    TRACE_FUNCTION();
    const std::wstring text =
        FormatString(i_host_instance, L"db.msg.loadFailed", {i_folder, FailureText(i_host_instance, i_failure)});
    if (IsSignInNeeded(i_failure)) {
        constexpr FailureAnswer answers[] = {FailureAnswer::sign_in, FailureAnswer::try_again, FailureAnswer::give_up};
        return answers[Ask(i_host_instance, text, Qorv::UIX_MsgBox_IconWarning,
                           {L"db.btn.signInAgain", L"db.btn.tryAgain", L"db.btn.cancel"})];
    }
    const ULONG answer =
        Ask(i_host_instance, text, Qorv::UIX_MsgBox_IconWarning, {L"db.btn.tryAgain", L"db.btn.cancel"});
    return answer == 0 ? FailureAnswer::try_again : FailureAnswer::give_up;
}

} // namespace Ui
