#pragma once

#include "qorv/Base.h"
#include "qorv/UixControls.h"

// The host's UI service ("UIX"), as far as plug-ins need it: images, modal dialogs built from XML layouts, their items,
// message boxes. Everything here belongs to the main thread.

namespace Qorv {

struct IUIX_Obj;

/// One decoded picture.
struct IUIX_Bitmap : IUnknown {
    static constexpr IID Id = {0xbfec748b, 0x3215, 0x42c6, {0xbb, 0x93, 0x21, 0x7e, 0xf9, 0x3e, 0x69, 0xe2}};
    virtual HRESULT STDMETHODCALLTYPE get_Width(ULONG* o_pixels) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Height(ULONG* o_pixels) = 0;
};

/// One picture in several sizes.
struct IUIX_Image : IUnknown {
    static constexpr IID Id = {0x60fb3224, 0xc9ee, 0x40a4, {0xaa, 0x8b, 0xd8, 0x93, 0x8d, 0x7d, 0x72, 0x24}};
    virtual HRESULT STDMETHODCALLTYPE AddBitmap(IUIX_Bitmap* i_bitmap) = 0;
    /// How many bitmaps were added.
    virtual HRESULT STDMETHODCALLTYPE get_Count(ULONG* o_count) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Bitmap(ULONG i_index, IUIX_Bitmap** o_bitmap) = 0;
};

/// The action of a file dialog's options button: an object supplied by the dialog's caller.
struct IUIX_SettingsBtnCallbacks : IUnknown {
    static constexpr IID Id = {0xd2a86f13, 0x4b5e, 0x4e09, {0x9c, 0x71, 0xe8, 0x05, 0xb3, 0x62, 0x1d, 0xf4}};
    /// The button was pressed in the dialog of the given window.
    virtual HRESULT STDMETHODCALLTYPE OnSettings(HWND i_dialog_window) = 0;
};

/// How a dialog runs.
enum UIX_ObjModal : ULONG { UIX_ObjModal_AppModal = 1 };

/// The implementation of a dialog: the plug-in's object that receives the dialog's events. The host holds a reference
/// from `CreateObj` until the dialog is destroyed.
struct IUIX_ObjSink : IUnknown {
    static constexpr IID Id = {0xded68e4e, 0xed25, 0x4406, {0xb1, 0x24, 0x20, 0xe8, 0xe7, 0xd2, 0x85, 0x65}};
    /// The dialog, once it exists; null when it is destroyed, which is the last call.
    virtual HRESULT STDMETHODCALLTYPE OnAttach(IUIX_Obj* i_object) = 0;
    /// The window and its items exist but are not shown yet. A failure ends `DoModal` with its code.
    virtual HRESULT STDMETHODCALLTYPE OnInit() = 0;
    /// The client area has a new size.
    virtual HRESULT STDMETHODCALLTYPE OnSize() = 0;
    /// Something happened to an item (`UIX_ItemEventKind`, which says what the detail is). The control has finished
    /// with it: this call may destroy the dialog.
    virtual HRESULT STDMETHODCALLTYPE OnItemEvent(PCStr i_item_id, ULONG i_kind, LONG i_detail) = 0;
    /// A message from WM_APP to 0xBFFF that the plug-in has posted to the dialog's window.
    virtual HRESULT STDMETHODCALLTYPE OnMessage(UINT i_message, WPARAM i_w_param, LPARAM i_l_param) = 0;
    /// The window is about to be destroyed: release everything attached to it.
    virtual HRESULT STDMETHODCALLTYPE OnDestroy() = 0;
};

/// A dialog. Its layout uses layout units; everything here is in pixels.
struct IUIX_Obj : IUnknown {
    static constexpr IID Id = {0x3f731bee, 0x2c87, 0x4648, {0x80, 0x2d, 0x14, 0x6c, 0x05, 0x39, 0x21, 0x7d}};
    /// Shows the dialog and returns when it is closed; the owner is disabled meanwhile. `io_result` is the result if
    /// the close box or Esc closes it, and receives the result passed to `EndModal`.
    virtual HRESULT STDMETHODCALLTYPE DoModal(ULONG i_mode, LONG* io_result) = 0;
    /// Ends `DoModal` once the current event is over; may be called from inside any event. The result object is
    /// reserved, null.
    virtual HRESULT STDMETHODCALLTYPE EndModal(LONG i_result, IUnknown* i_result_object) = 0;
    /// Destroys the window. Notifies and then releases the sink.
    virtual HRESULT STDMETHODCALLTYPE Destroy() = 0;
    virtual HRESULT STDMETHODCALLTYPE get_ClientRect(RECT* o_rect) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Window(HWND* o_window) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Title(PCStr i_title) = 0;
    /// An item of the layout, with the given interface. E_INVALIDARG if there is no such item, E_NOINTERFACE if it is
    /// of another kind.
    virtual HRESULT STDMETHODCALLTYPE GetItem(PCStr i_item_id, const IID& i_interface, void** o_item) = 0;
    /// Adds a command bar of the given item id. It is placed at the right end of another item, which becomes narrower,
    /// and follows it in the Tab order.
    virtual HRESULT STDMETHODCALLTYPE AddCommandBar(PCStr i_item_id, PCStr i_beside_item_id,
                                                    const UIX_Command* i_commands, ULONG i_count,
                                                    IUIX_CommandBar** o_command_bar) = 0;
};

/// What `IUIX_Inst::CreateObj` makes a dialog from.
struct UIX_CreateObjParameters {
    const void* layout_data = nullptr; ///< An XML document in UTF-8 with root element "dialogs"; read during the call.
    ULONG layout_size = 0;             ///< Bytes.
    PCStr layout_id = nullptr;         ///< Which of the document's dialogs.
    HWND owner = nullptr;              ///< Null for none.
    DWORD window_style = 0;            ///< WS_ bits; 0 for the service's default.
    IUIX_ObjSink* sink = nullptr;      ///< Required.
};

/// One message of the modal loop, before it is dispatched.
struct IUIX_LoopEvent : IUnknown {
    static constexpr IID Id = {0x41c195d9, 0xb33a, 0x4d4a, {0xb7, 0x3a, 0x06, 0x10, 0xd0, 0x62, 0xde, 0xac}};
    virtual HRESULT STDMETHODCALLTYPE get_Window(HWND* o_window) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Message(UINT* o_message) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_WParam(WPARAM* o_w_param) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_LParam(LPARAM* o_l_param) = 0;
    /// A handled message is not dispatched.
    virtual HRESULT STDMETHODCALLTYPE put_Handled(VARIANT_BOOL i_is_handled) = 0;
};

/// Sees the messages of the modal loop.
struct IUIX_EventLoopMonitor : IUnknown {
    static constexpr IID Id = {0x2bcc9d39, 0x6ca6, 0x406a, {0xb6, 0x65, 0x1e, 0x25, 0x7c, 0x6f, 0x26, 0xc5}};
    virtual HRESULT STDMETHODCALLTYPE OnEventLoopMonitor(IUIX_LoopEvent* io_event) = 0;
};

/// Icons of a message box.
enum UIX_MsgBoxIcon : ULONG { UIX_MsgBox_IconNone = 0, UIX_MsgBox_IconWarning = 1, UIX_MsgBox_IconQuestion = 2 };

/// The content of a message box.
struct UIX_MsgBoxParameters {
    HWND owner = nullptr;
    PCStr title = nullptr;
    PCStr text = nullptr;
    ULONG icon = UIX_MsgBox_IconNone;
    const PCStr* buttons = nullptr; ///< Captions, left to right.
    ULONG button_count = 0;
    ULONG default_button = 0; ///< The one that has the focus at first, and that Enter presses. E_INVALIDARG without it.
};

/// The service itself.
struct IUIX_Inst : IUnknown {
    static constexpr IID Id = {0x3de0ecb5, 0x31ef, 0x404a, {0xbf, 0xfa, 0x49, 0x25, 0x78, 0x1a, 0x84, 0xba}};
    /// A new image without bitmaps, for the resources of the given ids.
    virtual HRESULT STDMETHODCALLTYPE CreateImage(const ULONG* i_ids, ULONG i_count, IUIX_Image** o_image) = 0;
    /// Decodes a PNG; the stream is read from its position to its end and not kept.
    virtual HRESULT STDMETHODCALLTYPE CreateBitmapFromStream(IStream* i_stream, IUIX_Bitmap** o_bitmap) = 0;
    /// A new dialog, which is passed to its sink (`OnAttach`). `o_object` may be null. Texts that begin with "$$$." are
    /// ids of localized strings. E_INVALIDARG for a layout that cannot be read or has no such dialog.
    virtual HRESULT STDMETHODCALLTYPE CreateObj(const UIX_CreateObjParameters* i_parameters, IUIX_Obj** o_object) = 0;
    /// One of the host's own images by name, as in a layout's picture: "ico.folder", "ico.folder.opened", "ico.file",
    /// "ico.up", "ico.folder.new", "ico.delete", "ico.refresh". E_INVALIDARG for an unknown name.
    virtual HRESULT STDMETHODCALLTYPE GetImage(PCStr i_name, IUIX_Image** o_image) = 0;
    /// The monitor sees every message of every modal loop until it is removed. The service holds a reference.
    virtual HRESULT STDMETHODCALLTYPE AddEventLoopMonitor(IUIX_EventLoopMonitor* i_monitor) = 0;
    virtual HRESULT STDMETHODCALLTYPE RemoveEventLoopMonitor(IUIX_EventLoopMonitor* i_monitor) = 0;
    /// Shows a message box. `o_answer` is the index of the button pressed; the last one's if the box is closed
    /// otherwise.
    virtual HRESULT STDMETHODCALLTYPE ShowMsgBox(const UIX_MsgBoxParameters* i_parameters, ULONG* o_answer) = 0;
    /// Shows a menu and waits for the user's choice: a command's id, or 0 for none. The place is on the screen.
    virtual HRESULT STDMETHODCALLTYPE ShowMenu(HWND i_owner, POINT i_place, const UIX_Command* i_commands,
                                               ULONG i_count, LONG* o_command_id) = 0;
};

} // namespace Qorv
