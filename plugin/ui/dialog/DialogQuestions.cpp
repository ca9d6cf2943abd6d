#include "ui/dialog/DialogQuestions.h"

#include "core/host/LocalizedText.h"
#include "core/host/MessageBox.h"
#include "core/trace/LogText.h"
#include "ui/list/CountText.h"
#include "ui/names/ShortenedName.h"

#include <algorithm>

namespace Ui {
namespace {

constexpr std::size_t most_names = 10; ///< That a question lists.
constexpr std::size_t many_items = 10; ///< From here on, deleting them is worth a warning.
constexpr ULONG yes = 0;               ///< The button of a question that does it.
constexpr ULONG no = 1;                ///< The button that leaves everything as it is.

} // namespace

DialogQuestions::DialogQuestions(Qorv::IQorv_Inst* i_host_instance, HWND i_window)
    : m_host_instance(i_host_instance), m_window(i_window) {
    TRACE_FUNCTION();
}

void DialogQuestions::TellWhyNot(Qorv::PCStr i_text_id, const std::wstring& i_name,
                                 const std::wstring& i_detail) const {
    TRACE_FUNCTION();
    Tell(Text(i_text_id, {ShortenedName(i_name), i_detail}));
}

void DialogQuestions::TellFailure(Qorv::PCStr i_text_id, const Failure& i_failure) const {
    TRACE_FUNCTION();
    Tell(Text(i_text_id, {FailureText(m_host_instance, i_failure)}));
}

bool DialogQuestions::AskToReplace(const std::wstring& i_name) const {
    TRACE_FUNCTION();
    return Ask(Text(L"db.msg.replace", {ShortenedName(i_name)}), Qorv::UIX_MsgBox_IconQuestion,
               {L"db.btn.replace", L"db.btn.cancel"}, no) == yes;
}

bool DialogQuestions::AskToDelete(const std::vector<const FileRow*>& i_rows) const {
    TRACE_FUNCTION();
    const bool has_folder = std::ranges::any_of(i_rows, &FileRow::is_folder);
    std::wstring text;
    if (i_rows.size() == 1)
        text = Text(has_folder ? L"db.msg.deleteFolder" : L"db.msg.deleteFile", {ShortenedName(i_rows.front()->title)});
    else
        text = Text(has_folder ? L"db.msg.deleteSeveral" : L"db.msg.deleteFiles", {CountText(i_rows.size())}) + L"\n" +
               NamesOf(i_rows);
    const bool is_much = has_folder || i_rows.size() >= many_items;
    return Ask(text, is_much ? Qorv::UIX_MsgBox_IconWarning : Qorv::UIX_MsgBox_IconQuestion,
               {L"db.btn.delete", L"db.btn.cancel"}, no) == yes;
}

FailureAnswer DialogQuestions::AskAfterLoadFailure(const std::wstring& i_folder, const Failure& i_failure) const {
    TRACE_FUNCTION();
    const std::wstring text =
        Text(L"db.msg.loadFailed", {ShortenedName(i_folder), FailureText(m_host_instance, i_failure)});
    if (IsSignInNeeded(i_failure)) {
        constexpr FailureAnswer answers[] = {FailureAnswer::sign_in, FailureAnswer::try_again, FailureAnswer::give_up};
        return answers[Ask(text, Qorv::UIX_MsgBox_IconWarning,
                           {L"db.btn.signInAgain", L"db.btn.tryAgain", L"db.btn.cancel"})];
    }
    const ULONG answer = Ask(text, Qorv::UIX_MsgBox_IconWarning, {L"db.btn.tryAgain", L"db.btn.cancel"});
    return answer == 0 ? FailureAnswer::try_again : FailureAnswer::give_up;
}

void DialogQuestions::Tell(const std::wstring& i_text) const {
    TRACE_FUNCTION();
    Ask(i_text, Qorv::UIX_MsgBox_IconWarning, {L"db.btn.ok"});
}

/// The index of the pressed button, or of the last one if none was pressed.
ULONG DialogQuestions::Ask(const std::wstring& i_text, Qorv::UIX_MsgBoxIcon i_icon,
                           std::initializer_list<Qorv::PCStr> i_buttons, ULONG i_default_button) const {
    TRACE_FUNCTION();
    const ULONG last = static_cast<ULONG>(i_buttons.size()) - 1;
    ULONG answer = last;
    if (FAILED(ShowMessageBox(m_host_instance, i_text, i_icon, i_buttons, answer, m_window, i_default_button)) ||
        answer > last)
        answer = last;
    TRACE_TEXT(FormatLogText(L"INFORMATION: '%ls' was answered with '%ls'", i_text.c_str(), i_buttons.begin()[answer]));
    return answer;
}

std::wstring DialogQuestions::Text(Qorv::PCStr i_id, std::initializer_list<std::wstring_view> i_arguments) const {
    TRACE_FUNCTION();
    return FormatString(m_host_instance, i_id, i_arguments);
}

std::wstring DialogQuestions::NamesOf(const std::vector<const FileRow*>& i_rows) const {
    TRACE_FUNCTION();
    std::wstring names;
    for (std::size_t i = 0; i < std::min(i_rows.size(), most_names); ++i)
        names += L"\n" + ShortenedName(i_rows[i]->title);
    if (i_rows.size() > most_names)
        names += L"\n" + Text(L"db.msg.more", {CountText(i_rows.size() - most_names)});
    return names;
}

} // namespace Ui
