#pragma once

#include "qorv/Host.h"
#include "qorv/Uix.h"
#include "ui/dialog/DialogParameters.h"
#include "ui/list/DialogUi.h"

namespace Ui {

// Ids of the items in the layouts.
inline constexpr wchar_t path_label_id[] = L"lb.path";
inline constexpr wchar_t files_list_id[] = L"lst.files";
inline constexpr wchar_t name_label_id[] = L"lb.name";
inline constexpr wchar_t name_edit_id[] = L"ed.name";
inline constexpr wchar_t filter_combo_id[] = L"cb.filter";
inline constexpr wchar_t choose_user_button_id[] = L"btn.chooseUser";
inline constexpr wchar_t settings_button_id[] = L"btn.settings";
inline constexpr wchar_t ok_button_id[] = L"btn.ok";
inline constexpr wchar_t cancel_button_id[] = L"btn.cancel";
inline constexpr wchar_t command_bar_id[] = L"bar.commands"; // Not in the layouts.

/// The items of a dialog's window. UI thread.
struct DialogItems {
    /// Finds the layout's items, and adds the command bar.
    HRESULT Find(Qorv::IUIX_Obj* i_object, Qorv::IQorv_Inst* i_host_instance, const DialogUi& i_ui);

    /// Gives the window and its items the captions for choosing folders, if that is what the dialog does, and those
    /// that the caller wants.
    HRESULT PutCaptions(Qorv::IUIX_Obj* i_object, Qorv::IQorv_Inst* i_host_instance,
                        const DialogParameters& i_parameters);

    Qorv::ComPtr<Qorv::IUIX_Item> m_path;
    Qorv::ComPtr<Qorv::IUIX_Label> m_path_label;
    Qorv::ComPtr<Qorv::IUIX_Item> m_list;
    Qorv::ComPtr<Qorv::IUIX_List> m_list_rows;
    Qorv::ComPtr<Qorv::IUIX_Item> m_name_label;
    Qorv::ComPtr<Qorv::IUIX_Item> m_name;
    Qorv::ComPtr<Qorv::IUIX_Edit> m_name_edit;
    Qorv::ComPtr<Qorv::IUIX_Item> m_filter;
    Qorv::ComPtr<Qorv::IUIX_Combo> m_filter_combo;
    Qorv::ComPtr<Qorv::IUIX_Item> m_choose_user;
    Qorv::ComPtr<Qorv::IUIX_Item> m_settings;
    Qorv::ComPtr<Qorv::IUIX_Item> m_ok;
    Qorv::ComPtr<Qorv::IUIX_Item> m_cancel;
    Qorv::ComPtr<Qorv::IUIX_CommandBar> m_commands;
};

} // namespace Ui
