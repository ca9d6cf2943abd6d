#pragma once

#include "qorv/CoClass.h"
#include "qorv/Uix.h"
#include "uix/DialogItem.h"
#include "uix/DialogWindow.h"
#include "uix/Scale.h"
#include "uix/Scroller.h"

#include <deque>
#include <memory>
#include <vector>

namespace DevHost {

/// A plug-in's dialog, built from its layout. Main thread only.
///
/// It and its sink refer to each other until `Destroy`; an unreferenced one destroys itself.
class LayoutDialog final : public Qorv::CoClass<LayoutDialog, Qorv::IUIX_Obj>,
                           private DialogWindow,
                           private ItemEvents {
public:
    struct Frame {
        HWND owner = nullptr;
        DWORD style = 0; ///< WS_ bits, 0 for the usual ones.
    };

    /// Throws a `Failure`.
    LayoutDialog(const Layout& i_layout, const Frame& i_frame, std::shared_ptr<LoopMonitors> i_monitors,
                 HostImages& io_images);
    ~LayoutDialog();

    /// Attaches the sink to the dialog.
    HRESULT Attach(Qorv::IUIX_ObjSink* i_sink);

    HRESULT STDMETHODCALLTYPE DoModal(ULONG i_mode, LONG* io_result) noexcept override;
    HRESULT STDMETHODCALLTYPE EndModal(LONG i_result, IUnknown* i_result_object) noexcept override;
    HRESULT STDMETHODCALLTYPE Destroy() noexcept override;
    HRESULT STDMETHODCALLTYPE get_ClientRect(RECT* o_rect) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Window(HWND* o_window) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Title(Qorv::PCStr i_title) noexcept override;
    HRESULT STDMETHODCALLTYPE GetItem(Qorv::PCStr i_item_id, const IID& i_interface, void** o_item) noexcept override;
    HRESULT STDMETHODCALLTYPE AddCommandBar(Qorv::PCStr i_item_id, Qorv::PCStr i_beside_item_id,
                                            const Qorv::UIX_Command* i_commands, ULONG i_count,
                                            Qorv::IUIX_CommandBar** o_command_bar) noexcept override;

private:
    struct ItemEvent {
        Qorv::ComPtr<DialogItem> item;
        Qorv::UIX_ItemEventKind kind;
        LONG detail;

        bool operator==(const ItemEvent&) const = default;
    };

    void MakeScrollable(HWND i_owner);
    void CreateItems(const Layout& i_layout, HostImages& io_images);
    Qorv::ComPtr<DialogItem> ItemOf(UINT_PTR i_control_id) const noexcept;
    Qorv::ComPtr<DialogItem> ItemNamed(Qorv::PCStr i_id) const;
    ItemPlace PlaceAt(const RECT& i_rect) noexcept;
    RECT PlaceOf(const DialogItem& i_item) const;
    LONG FreeRightEdge(const DialogItem& i_item, const RECT& i_place) const;
    RECT TakeRightEnd(const DialogItem& i_item, SIZE i_size) const;

    void Post(DialogItem& io_item, Qorv::UIX_ItemEventKind i_kind, LONG i_detail) override;
    void Forget(const DialogItem& i_item) override;
    void OnFocus(HWND i_control) override;
    void TellFirstEvent();

    HRESULT OnInit() override;
    void OnCommand(WORD i_control_id, WORD i_notification) override;
    void OnSize() override;
    void OnDestroy() override;
    std::optional<LRESULT> OnMessage(UINT i_message, WPARAM i_wparam, LPARAM i_lparam) override;

    Scale m_scale;
    SIZE m_content; ///< The layout's size in pixels.
    bool m_is_foreground;
    Font m_font;
    Scroller m_scroller;
    std::vector<Qorv::ComPtr<DialogItem>> m_items; ///< Their control ids follow their order.
    std::deque<ItemEvent> m_events;                ///< Still to be reported to the sink.
    std::shared_ptr<LoopMonitors> m_monitors;
    Qorv::ComPtr<Qorv::IUIX_ObjSink> m_sink; ///< Null before `Attach` and once the window is destroyed.
};

} // namespace DevHost
