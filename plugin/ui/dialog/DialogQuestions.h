#pragma once

#include "qorv/Host.h"
#include "qorv/Uix.h"
#include "ui/dialog/FailureText.h"
#include "ui/dialog/FolderView.h"
#include "ui/list/FileRow.h"

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace Ui {

/// What a dialog asks and tells the user, in message boxes that belong to its window. UI thread. A box that cannot be
/// shown answers like one that was closed.
class DialogQuestions {
public:
    DialogQuestions(Qorv::IQorv_Inst* i_host_instance, HWND i_window);

    /// Tells why something is not done: a localized text with "%1" for the name.
    void TellWhyNot(Qorv::PCStr i_text_id, const std::wstring& i_name) const;

    /// Tells of what failed: a localized text with "%1" for the failure.
    void TellFailure(Qorv::PCStr i_text_id, const Failure& i_failure) const;

    bool AskToReplace(const std::wstring& i_name) const;

    /// Names what goes: the item, or the first of many.
    bool AskToDelete(const std::vector<const FileRow*>& i_rows) const;

    /// Tells why a folder cannot be shown, and asks what now. The folder is given as a person reads it.
    FailureAnswer AskAfterLoadFailure(const std::wstring& i_folder, const Failure& i_failure) const;

private:
    ULONG Ask(const std::wstring& i_text, Qorv::UIX_MsgBoxIcon i_icon,
              std::initializer_list<Qorv::PCStr> i_buttons) const;
    std::wstring Text(Qorv::PCStr i_id, std::initializer_list<std::wstring_view> i_arguments) const;
    std::wstring NamesOf(const std::vector<const FileRow*>& i_rows) const;

    Qorv::ComPtr<Qorv::IQorv_Inst> m_host_instance;
    HWND m_window;
};

} // namespace Ui
