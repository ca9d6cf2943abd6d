#include "auth/WebBrowserDialog.h"

#include "auth/ServicePage.h"
#include "core/host/ModalOwner.h"
#include "core/host/Resource.h"
#include "core/trace/Check.h"

#include <memory>

namespace Qorv {

namespace {

constexpr wchar_t layout_id[] = L"WebBrowserDialog";
constexpr wchar_t log_out_path[] = L"/logout";
/// The service's pages can be larger than the dialog, so the user may resize it.
constexpr DWORD window_style = WS_POPUP | WS_CLIPSIBLINGS | WS_CLIPCHILDREN | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME;

} // namespace

WebBrowserDialog::WebBrowserDialog(IQorv_Inst* i_qorv_instance)
    : _start_url(ServicePage(log_out_path)), _qorv_instance(i_qorv_instance) {
    TRACE_FUNCTION();
}

WebBrowserDialog::~WebBrowserDialog() {
    TRACE_FUNCTION();
}

HRESULT WebBrowserDialog::DoModal(BeforeNavigateHandler i_before_navigate,
                                  NavigateCompleteHandler i_navigate_complete) {
    TRACE_FUNCTION();
    const auto finish = [](WebBrowserDialog* io_dialog) { io_dialog->Finish(); };
    const std::unique_ptr<WebBrowserDialog, decltype(finish)> finish_on_exit(this, finish);
    _before_navigate = std::move(i_before_navigate);
    _navigate_complete = std::move(i_navigate_complete);

    const Resource layouts(MAKEINTRESOURCEW(IDR_LAYOUTS_XML), L"XML");
    const UIX_CreateObjParameters parameters{
        .layout_data = layouts.GetData(),
        .layout_size = static_cast<ULONG>(layouts.GetSize()),
        .layout_id = layout_id,
        .owner = Ui::ModalOwner(_qorv_instance),
        .window_style = window_style,
        .sink = this,
    };
    ComPtr<IUIX_Inst> uix_instance;
    CHECK_HRESULT(_qorv_instance->GetExtension(L"UIX", (IUnknown**)&uix_instance));
    _uix_instance = uix_instance;
    CHECK_HRESULT(uix_instance->CreateObj(&parameters, nullptr));
    CHECK_RETURN(m_pObj != nullptr, E_FAIL);

    const ComPtr<IUIX_Obj> keep_object(m_pObj); // `Destroy` releases the member's reference (`OnAttach`).
    LONG result = IDCANCEL;
    CHECK_HRESULT(m_pObj->DoModal(UIX_ObjModal_AppModal, &result));
    if (m_pObj != nullptr) // Null if the dialog was destroyed with its owner.
        CHECK_HRESULT(m_pObj->Destroy());
    return TRACE_RESULT(S_OK);
}

/// Destroys whatever is left at the end of a run, especially after a failure.
void WebBrowserDialog::Finish() noexcept {
    TRACE_FUNCTION();
    if (const auto object = m_pObj)
        object->Destroy();
    CloseBrowser();
    m_pObj.Reset();
    _uix_instance.Reset();
    _before_navigate = nullptr;
    _navigate_complete = nullptr;
}

HRESULT WebBrowserDialog::Navigate(const std::wstring& i_url) {
    TRACE_FUNCTION();
    CHECK_RETURN(_browser_control != nullptr && _browser_control->GetBrowser() != nullptr, E_UNEXPECTED);
    _browser_control->GetBrowser()->Stop(); // There may be nothing left to stop.
    CHECK_HRESULT(_browser_control->Navigate(i_url));
    return TRACE_RESULT(S_OK);
}

HRESULT WebBrowserDialog::EndModal() {
    TRACE_FUNCTION();
    CHECK_RETURN(m_pObj != nullptr, E_UNEXPECTED);
    CHECK_HRESULT(m_pObj->EndModal(IDOK, nullptr));
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE WebBrowserDialog::OnAttach(IUIX_Obj* i_object) noexcept {
    TRACE_FUNCTION();
    m_pObj = i_object;
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE WebBrowserDialog::OnInit() noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_HRESULT(CreateBrowser());
        CHECK_HRESULT(_browser_control->Navigate(_start_url));
        return TRACE_RESULT(S_OK);
    };
}

HRESULT WebBrowserDialog::CreateBrowser() {
    TRACE_FUNCTION();
    HWND window = nullptr;
    CHECK_HRESULT(m_pObj->get_Window(&window));
    RECT client_rect{};
    CHECK_HRESULT(m_pObj->get_ClientRect(&client_rect));

    _browser_control = Create<WebBrowserControl>();
    CHECK_RETURN(_browser_control != nullptr, E_OUTOFMEMORY);
    CHECK_HRESULT(_browser_control->Init(window, client_rect));

    _events = Create<WebBrowserEvents2>(_before_navigate, _navigate_complete);
    CHECK_RETURN(_events != nullptr, E_OUTOFMEMORY);
    CHECK_HRESULT(_events->Init(_browser_control->GetBrowser()));

    _monitor = Create<AcceleratorMonitor>(_browser_control->GetBrowser());
    CHECK_RETURN(_monitor != nullptr, E_OUTOFMEMORY);
    CHECK_HRESULT(_uix_instance->AddEventLoopMonitor(_monitor));
    return TRACE_RESULT(S_OK);
}

void WebBrowserDialog::CloseBrowser() noexcept {
    TRACE_FUNCTION();
    if (const auto monitor = std::move(_monitor))
        _uix_instance->RemoveEventLoopMonitor(monitor);
    if (const auto events = std::move(_events))
        events->Shutdown();
    if (const auto control = std::move(_browser_control))
        control->Close();
}

HRESULT STDMETHODCALLTYPE WebBrowserDialog::OnSize() noexcept {
    TRACE_FUNCTION();
    if (_browser_control == nullptr)
        return TRACE_RESULT(S_OK); // The window is still being created.
    WebBrowserControl& _control = *_browser_control;
    RECT r{};
    CHECK_HRESULT(m_pObj->get_ClientRect(&r));
    CHECK_HRESULT(_control.SetRect(r));
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE WebBrowserDialog::OnItemEvent(PCStr, ULONG, LONG) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE WebBrowserDialog::OnMessage(UINT, WPARAM, LPARAM) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE WebBrowserDialog::OnDestroy() noexcept {
    TRACE_FUNCTION();
    CloseBrowser(); // Before the browser's window is destroyed.
    return TRACE_RESULT(S_OK);
}

} // namespace Qorv
