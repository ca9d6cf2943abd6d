#include "auth/WebBrowserControl.h"

#include "core/trace/Check.h"

// What the container returns where it has nothing to do: fixed results, which the browser relies on.

// IOleInPlaceSite and IOleClientSite: the browser fills its window and is never saved.

HRESULT STDMETHODCALLTYPE WebBrowserControl::ContextSensitiveHelp(BOOL) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::CanInPlaceActivate() noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::OnUIActivate() noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::Scroll(SIZE) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::OnUIDeactivate(BOOL) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::DiscardUndoState() noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::DeactivateAndUndo() noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::OnPosRectChange(const RECT*) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::SaveObject() noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::GetMoniker(DWORD, DWORD, IMoniker** o_moniker) noexcept {
    TRACE_FUNCTION();
    if (o_moniker != nullptr)
        *o_moniker = nullptr;
    return TRACE_RESULT(E_NOTIMPL);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::GetContainer(IOleContainer** o_container) noexcept {
    TRACE_FUNCTION();
    if (o_container != nullptr)
        *o_container = nullptr;
    return TRACE_RESULT(E_NOINTERFACE);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::ShowObject() noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::OnShowWindow(BOOL) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::RequestNewObjectLayout() noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(E_NOTIMPL);
}

// IStorage: it must exist, but it stores nothing.

HRESULT STDMETHODCALLTYPE WebBrowserControl::CreateStream(const OLECHAR*, DWORD, DWORD, DWORD,
                                                          IStream** o_stream) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(o_stream != nullptr, E_INVALIDARG);
    *o_stream = nullptr;
    return TRACE_RESULT(E_NOTIMPL);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::OpenStream(const OLECHAR*, void*, DWORD, DWORD,
                                                        IStream** o_stream) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(o_stream != nullptr, E_INVALIDARG);
    *o_stream = nullptr;
    return TRACE_RESULT(E_NOTIMPL);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::CreateStorage(const OLECHAR*, DWORD, DWORD, DWORD,
                                                           IStorage** o_storage) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(o_storage != nullptr, E_INVALIDARG);
    *o_storage = nullptr;
    return TRACE_RESULT(E_NOTIMPL);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::OpenStorage(const OLECHAR*, IStorage*, DWORD, SNB, DWORD,
                                                         IStorage** o_storage) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(o_storage != nullptr, E_INVALIDARG);
    *o_storage = nullptr;
    return TRACE_RESULT(E_NOTIMPL);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::EnumElements(DWORD, void*, DWORD, IEnumSTATSTG** o_enum) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(o_enum != nullptr, E_INVALIDARG);
    *o_enum = nullptr;
    return TRACE_RESULT(E_NOTIMPL);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::CopyTo(DWORD, const IID*, SNB, IStorage*) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(E_NOTIMPL);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::MoveElementTo(const OLECHAR*, IStorage*, const OLECHAR*, DWORD) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(E_NOTIMPL);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::Commit(DWORD) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(E_NOTIMPL);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::Revert() noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(E_NOTIMPL);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::DestroyElement(const OLECHAR*) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(E_NOTIMPL);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::RenameElement(const OLECHAR*, const OLECHAR*) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(E_NOTIMPL);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::SetElementTimes(const OLECHAR*, const FILETIME*, const FILETIME*,
                                                             const FILETIME*) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(E_NOTIMPL);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::SetClass(REFCLSID) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::SetStateBits(DWORD, DWORD) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(E_NOTIMPL);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::Stat(STATSTG*, DWORD) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(E_NOTIMPL);
}
