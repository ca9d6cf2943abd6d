#pragma once

#include "auth/AcceleratorMonitor.h"
#include "auth/WebBrowserControl.h"
#include "auth/WebBrowserEvents2.h"
#include "qorv/CoClass.h"
#include "qorv/Host.h"
#include "qorv/Uix.h"

#include <string>

namespace Qorv {

/// One of the host's modal dialogs, filled by a web browser. Main thread, with OLE initialised. One run at a time;
/// nothing of it is left when `DoModal` returns, however the dialog ended.
class WebBrowserDialog final : public CoClass<WebBrowserDialog, IUIX_ObjSink> {
public:
    /// The browser starts at the service's log-out page, so that the user may sign in to any account.
    explicit WebBrowserDialog(IQorv_Inst* i_qorv_instance);
    ~WebBrowserDialog();

    /// Shows the dialog until the user or `EndModal` closes it: S_OK for both. The handlers are released before it
    /// returns.
    HRESULT DoModal(BeforeNavigateHandler i_before_navigate, NavigateCompleteHandler i_navigate_complete);

    /// Stops the current load and loads another page. May be called from inside the browser's events.
    HRESULT Navigate(const std::wstring& i_url);

    /// Closes the dialog once the current event is over.
    HRESULT EndModal();

    HRESULT STDMETHODCALLTYPE OnAttach(IUIX_Obj* i_object) noexcept override;
    HRESULT STDMETHODCALLTYPE OnInit() noexcept override;
    HRESULT STDMETHODCALLTYPE OnSize() noexcept override;
    HRESULT STDMETHODCALLTYPE OnItemEvent(PCStr i_item_id, ULONG i_kind, LONG i_detail) noexcept override;
    HRESULT STDMETHODCALLTYPE OnMessage(UINT i_message, WPARAM i_w_param, LPARAM i_l_param) noexcept override;
    HRESULT STDMETHODCALLTYPE OnDestroy() noexcept override;

private:
    HRESULT CreateBrowser();
    void CloseBrowser() noexcept;
    void Finish() noexcept;

    const std::wstring _start_url;
    const ComPtr<IQorv_Inst> _qorv_instance;
    ComPtr<IUIX_Inst> _uix_instance;
    ComPtr<IUIX_Obj> m_pObj; ///< The dialog while it exists.
    BeforeNavigateHandler _before_navigate;
    NavigateCompleteHandler _navigate_complete;
    ComPtr<WebBrowserControl> _browser_control;
    ComPtr<WebBrowserEvents2> _events;
    ComPtr<AcceleratorMonitor> _monitor;
};

} // namespace Qorv
