#include "uix/Edit.h"

#include <oleacc.h>

namespace DevHost {

void Edit::Make(const LayoutItem& i_description, const ItemPlace& i_place) {
    CreateControl(i_description, i_place,
                  {L"EDIT", WS_TABSTOP | ES_LEFT | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE, ROLE_SYSTEM_TEXT});
    Send(EM_SETLIMITTEXT); // As much as the control can hold: it may contain many names.
}

void Edit::OnCommand(WORD i_notification) {
    if (i_notification == EN_CHANGE)
        Post(Qorv::UIX_ItemEvent_Changed);
}

HRESULT STDMETHODCALLTYPE Edit::SelectText(LONG i_first, LONG i_last) noexcept {
    return WithControl([&] {
        const auto length = static_cast<LONG>(Send(WM_GETTEXTLENGTH));
        const LONG last = i_last == -1 ? length : i_last;
        if (i_first < 0 || last < i_first || last > length)
            return E_INVALIDARG;
        Send(EM_SETSEL, static_cast<WPARAM>(i_first), LPARAM{last});
        Send(EM_SCROLLCARET);
        return S_OK;
    });
}

} // namespace DevHost
