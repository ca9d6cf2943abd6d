#pragma once

#include "qorv/Base.h"

#include <oleidl.h>

namespace DevHost {

/// The methods of IOleObject that an object shown only in place does not need.
class OleObjectStub : public IOleObject {
public:
    static constexpr IID Id = {0x00000112, 0x0000, 0x0000, {0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

    HRESULT STDMETHODCALLTYPE SetHostNames(LPCOLESTR, LPCOLESTR) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetMoniker(DWORD, IMoniker*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE InitFromData(IDataObject*, BOOL, DWORD) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetClipboardData(DWORD, IDataObject**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumVerbs(IEnumOLEVERB**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Update() noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE IsUpToDate() noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetUserType(DWORD, LPOLESTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Advise(IAdviseSink*, DWORD*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumAdvise(IEnumSTATDATA**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetMiscStatus(DWORD, DWORD*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetColorScheme(LOGPALETTE*) noexcept override { return E_NOTIMPL; }
};

} // namespace DevHost
