#include "ui/dialog/DialogItems.h"

#include "core/host/LocalizedText.h"
#include "core/trace/Check.h"
#include "ui/dialog/DialogCommand.h"

namespace Ui {
namespace {

template <typename Interface>
HRESULT FindItem(Qorv::IUIX_Obj* i_object, Qorv::PCStr i_id, Qorv::ComPtr<Interface>& o_item) {
    TRACE_FUNCTION();
    CHECK_HRESULT(i_object->GetItem(i_id, Interface::Id, reinterpret_cast<void**>(&o_item)));
    return TRACE_RESULT(S_OK);
}

HRESULT PutCaption(Qorv::IUIX_Item* i_item, const Qorv::Bstr& i_caption) {
    TRACE_FUNCTION();
    if (i_caption.Length() > 0)
        CHECK_HRESULT(i_item->put_Text(i_caption));
    return TRACE_RESULT(S_OK);
}

} // namespace

HRESULT DialogItems::Find(Qorv::IUIX_Obj* i_object, Qorv::IQorv_Inst* i_host_instance, const DialogUi& i_ui) {
    TRACE_FUNCTION();
    CHECK_HRESULT(FindItem(i_object, path_label_id, m_path));
    CHECK_HRESULT(FindItem(i_object, path_label_id, m_path_label));
    CHECK_HRESULT(FindItem(i_object, files_list_id, m_list));
    CHECK_HRESULT(FindItem(i_object, files_list_id, m_list_rows));
    CHECK_HRESULT(FindItem(i_object, name_label_id, m_name_label));
    CHECK_HRESULT(FindItem(i_object, name_edit_id, m_name));
    CHECK_HRESULT(FindItem(i_object, name_edit_id, m_name_edit));
    CHECK_HRESULT(FindItem(i_object, filter_combo_id, m_filter));
    CHECK_HRESULT(FindItem(i_object, filter_combo_id, m_filter_combo));
    CHECK_HRESULT(FindItem(i_object, choose_user_button_id, m_choose_user));
    CHECK_HRESULT(FindItem(i_object, settings_button_id, m_settings));
    CHECK_HRESULT(FindItem(i_object, ok_button_id, m_ok));
    CHECK_HRESULT(FindItem(i_object, cancel_button_id, m_cancel));
    const CommandSet commands(i_host_instance, i_ui, CommandSet::Place::bar);
    CHECK_HRESULT(i_object->AddCommandBar(command_bar_id, path_label_id, commands.GetCommands(), commands.GetCount(),
                                          &m_commands));
    return TRACE_RESULT(S_OK);
}

HRESULT DialogItems::PutCaptions(Qorv::IUIX_Obj* i_object, Qorv::IQorv_Inst* i_host_instance,
                                 const DialogParameters& i_parameters) {
    TRACE_FUNCTION();
    if ((i_parameters.Flags & DialogParameters::ChooseFolder) != 0) {
        CHECK_HRESULT(i_object->put_Title(FormatString(i_host_instance, L"db.dlg.chooseFolder").c_str()));
        CHECK_HRESULT(m_ok->put_Text(FormatString(i_host_instance, L"db.btn.choose").c_str()));
        CHECK_HRESULT(m_name_label->put_Text(FormatString(i_host_instance, L"db.lb.folder").c_str()));
    }
    if (i_parameters.Title.Length() > 0)
        CHECK_HRESULT(i_object->put_Title(i_parameters.Title));
    CHECK_HRESULT(PutCaption(m_ok, i_parameters.ActionBtnTitle));
    CHECK_HRESULT(PutCaption(m_cancel, i_parameters.CancelBtnTitle));
    CHECK_HRESULT(PutCaption(m_settings, i_parameters.SettingsBtnTitle));
    return TRACE_RESULT(S_OK);
}

} // namespace Ui
