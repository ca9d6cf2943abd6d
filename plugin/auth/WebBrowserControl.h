#pragma once

#include "qorv/CoClass.h"

#include <exdisp.h>
#include <oleidl.h>

#include <string>

/// IOleInPlaceSite, with its base interface listed explicitly for `QueryInterface`.
struct InPlaceSite : IOleInPlaceSite {
    static constexpr IID Id = __uuidof(IOleInPlaceSite);
    using Base = IOleWindow;
};

/// The smallest OLE container that can hold the system's WebBrowser control: its site, and a storage that stores
/// nothing. The browser and its container hold each other until `Close`. Main thread.
class WebBrowserControl final : public Qorv::CoClass<WebBrowserControl, InPlaceSite, IOleClientSite, IStorage> {
public:
    WebBrowserControl();
    ~WebBrowserControl();

    /// Creates the browser and shows it in the rectangle of the parent's client area, in pixels. `Close` must follow,
    /// even after a failure.
    HRESULT Init(HWND i_parent_window, const RECT& rect);

    /// Moves the browser.
    HRESULT SetRect(const RECT& i_rect);

    /// Starts loading a page.
    HRESULT Navigate(const std::wstring& i_url);

    /// Null before `Init` and after `Close`.
    IWebBrowser2* GetBrowser() const noexcept;

    /// Closes and releases the browser in any state. May be called again.
    void Close() noexcept;

    // IOleInPlaceSite
    HRESULT STDMETHODCALLTYPE GetWindow(HWND* o_window) noexcept override;
    HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL i_enter_mode) noexcept override;
    HRESULT STDMETHODCALLTYPE CanInPlaceActivate() noexcept override;
    HRESULT STDMETHODCALLTYPE OnInPlaceActivate() noexcept override;
    HRESULT STDMETHODCALLTYPE OnUIActivate() noexcept override;
    HRESULT STDMETHODCALLTYPE GetWindowContext(IOleInPlaceFrame** o_frame, IOleInPlaceUIWindow** o_document_window,
                                               RECT* o_rect, RECT* o_clip_rect,
                                               OLEINPLACEFRAMEINFO* io_frame_info) noexcept override;
    HRESULT STDMETHODCALLTYPE Scroll(SIZE i_extent) noexcept override;
    HRESULT STDMETHODCALLTYPE OnUIDeactivate(BOOL i_is_undoable) noexcept override;
    HRESULT STDMETHODCALLTYPE OnInPlaceDeactivate() noexcept override;
    HRESULT STDMETHODCALLTYPE DiscardUndoState() noexcept override;
    HRESULT STDMETHODCALLTYPE DeactivateAndUndo() noexcept override;
    HRESULT STDMETHODCALLTYPE OnPosRectChange(const RECT* i_rect) noexcept override;

    // IOleClientSite
    HRESULT STDMETHODCALLTYPE SaveObject() noexcept override;
    HRESULT STDMETHODCALLTYPE GetMoniker(DWORD i_assign, DWORD i_which, IMoniker** o_moniker) noexcept override;
    HRESULT STDMETHODCALLTYPE GetContainer(IOleContainer** o_container) noexcept override;
    HRESULT STDMETHODCALLTYPE ShowObject() noexcept override;
    HRESULT STDMETHODCALLTYPE OnShowWindow(BOOL i_is_shown) noexcept override;
    HRESULT STDMETHODCALLTYPE RequestNewObjectLayout() noexcept override;

    // IStorage
    HRESULT STDMETHODCALLTYPE CreateStream(const OLECHAR* i_name, DWORD i_mode, DWORD i_reserved1, DWORD i_reserved2,
                                           IStream** o_stream) noexcept override;
    HRESULT STDMETHODCALLTYPE OpenStream(const OLECHAR* i_name, void* i_reserved1, DWORD i_mode, DWORD i_reserved2,
                                         IStream** o_stream) noexcept override;
    HRESULT STDMETHODCALLTYPE CreateStorage(const OLECHAR* i_name, DWORD i_mode, DWORD i_reserved1, DWORD i_reserved2,
                                            IStorage** o_storage) noexcept override;
    HRESULT STDMETHODCALLTYPE OpenStorage(const OLECHAR* i_name, IStorage* i_priority, DWORD i_mode, SNB i_exclude,
                                          DWORD i_reserved, IStorage** o_storage) noexcept override;
    HRESULT STDMETHODCALLTYPE CopyTo(DWORD i_exclude_count, const IID* i_exclude_ids, SNB i_exclude_names,
                                     IStorage* i_destination) noexcept override;
    HRESULT STDMETHODCALLTYPE MoveElementTo(const OLECHAR* i_name, IStorage* i_destination, const OLECHAR* i_new_name,
                                            DWORD i_flags) noexcept override;
    HRESULT STDMETHODCALLTYPE Commit(DWORD i_flags) noexcept override;
    HRESULT STDMETHODCALLTYPE Revert() noexcept override;
    HRESULT STDMETHODCALLTYPE EnumElements(DWORD i_reserved1, void* i_reserved2, DWORD i_reserved3,
                                           IEnumSTATSTG** o_enum) noexcept override;
    HRESULT STDMETHODCALLTYPE DestroyElement(const OLECHAR* i_name) noexcept override;
    HRESULT STDMETHODCALLTYPE RenameElement(const OLECHAR* i_name, const OLECHAR* i_new_name) noexcept override;
    HRESULT STDMETHODCALLTYPE SetElementTimes(const OLECHAR* i_name, const FILETIME* i_created,
                                              const FILETIME* i_accessed, const FILETIME* i_modified) noexcept override;
    HRESULT STDMETHODCALLTYPE SetClass(REFCLSID i_class) noexcept override;
    HRESULT STDMETHODCALLTYPE SetStateBits(DWORD i_bits, DWORD i_mask) noexcept override;
    HRESULT STDMETHODCALLTYPE Stat(STATSTG* o_statistics, DWORD i_flags) noexcept override;

private:
    HWND GetControl() const noexcept;
    void UnlockRunning() noexcept;

    HWND _parent_window = nullptr;
    Qorv::ComPtr<IOleObject> _ole_object;
    Qorv::ComPtr<IOleInPlaceObject> _ole_in_place_object;
    Qorv::ComPtr<IWebBrowser2> _web_browser2;
    RECT _rect{};
    bool _is_locked = false; ///< `OnInPlaceActivate` locks the browser running; `Close` has to unlock it.
};
