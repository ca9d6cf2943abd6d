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

/// What a dialog asks and tells the user, in message boxes owned by its window. UI thread. A box that can't be shown
/// counts as closed without an answer. Long names are shortened, so that the sentence around them can be read.
class DialogQuestions {
public:
    DialogQuestions(Qorv::IQorv_Inst* i_host_instance, HWND i_window);

    /// Says why something isn't done: a localized text with "%1" for the name, and "%2" for what is wrong with it.
    void TellWhyNot(Qorv::PCStr i_text_id, const std::wstring& i_name, const std::wstring& i_detail = {}) const;

    /// Says what failed: a localized text with "%1" for the failure.
    void TellFailure(Qorv::PCStr i_text_id, const Failure& i_failure) const;

    // These two only do it if the user presses the button for it: Enter and Esc leave everything as it is.
    /// Names the file that is there already.
    bool AskToReplace(const std::wstring& i_name) const;
    /// Names what will be deleted: the item, or the first of many. A folder, or many items, are worth a warning.
    bool AskToDelete(const std::vector<const FileRow*>& i_rows) const;

    /// Says why a folder can't be shown, and asks what to do. The folder is given as a person reads it.
    FailureAnswer AskAfterLoadFailure(const std::wstring& i_folder, const Failure& i_failure) const;

private:
    void Tell(const std::wstring& i_text) const;
    ULONG Ask(const std::wstring& i_text, Qorv::UIX_MsgBoxIcon i_icon, std::initializer_list<Qorv::PCStr> i_buttons,
              ULONG i_default_button = 0) const;
    std::wstring Text(Qorv::PCStr i_id, std::initializer_list<std::wstring_view> i_arguments) const;
    std::wstring NamesOf(const std::vector<const FileRow*>& i_rows) const;

    Qorv::ComPtr<Qorv::IQorv_Inst> m_host_instance;
    HWND m_window;
};

} // namespace Ui
