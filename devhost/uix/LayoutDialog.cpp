#include "uix/LayoutDialog.h"

#include "services/Failure.h"
#include "uix/WindowPlace.h"

namespace DevHost {
namespace {

using Qorv::ComPtr;

constexpr WORD first_control_id = 100; // Beyond IDOK, IDCANCEL and the system's other ones.

SIZE ContentSize(const Layout& i_layout, const Scale& i_scale) {
    return {i_scale.Pixels(i_layout.width), i_scale.Pixels(i_layout.height)};
}

/// A dialog without items belongs to its sink alone, which follows its size: the user may change it.
DWORD StyleOf(const Layout& i_layout, DWORD i_style) {
    constexpr DWORD usual_style = WS_POPUP | WS_CLIPSIBLINGS | WS_CLIPCHILDREN | WS_CAPTION | WS_SYSMENU;
    if (i_style != 0)
        return i_style;
    return i_layout.items.empty() ? usual_style | WS_THICKFRAME : usual_style;
}

DWORD ExtendedStyleOf(const Layout& i_layout) {
    return i_layout.has_help_button ? WS_EX_DLGMODALFRAME | WS_EX_CONTEXTHELP : WS_EX_DLGMODALFRAME;
}

} // namespace

LayoutDialog::LayoutDialog(const Layout& i_layout, const Frame& i_frame, std::shared_ptr<LoopMonitors> i_monitors)
    : DialogWindow(i_frame.owner, StyleOf(i_layout, i_frame.style), ExtendedStyleOf(i_layout), i_layout.title,
                   ContentSize(i_layout, Scale::OfScreen()))
    , m_scale(Scale::OfScreen())
    , m_content(ContentSize(i_layout, m_scale))
    , m_is_foreground(i_layout.is_foreground)
    , m_font(m_scale.MakeFont(i_layout.font_name, i_layout.font_points))
    , m_scroller(Window())
    , m_monitors(std::move(i_monitors)) {
    CreateItems(i_layout);
    if (i_layout.is_scrollable && !m_items.empty())
        MakeScrollable(i_frame.owner);
}

LayoutDialog::~LayoutDialog() {
    DialogWindow::Destroy();
}

/// A vertical scroll bar takes some of the width that the items need: the window gets so much wider.
void LayoutDialog::MakeScrollable(HWND i_owner) {
    m_scroller.SetContent(m_content);
    RECT client;
    RECT window;
    GetClientRect(Window(), &client);
    GetWindowRect(Window(), &window);
    const LONG missing = m_content.cx - client.right;
    if (missing <= 0)
        return;
    const RECT place = CentredPlace({window.right - window.left + missing, window.bottom - window.top}, i_owner);
    MoveWindow(Window(), static_cast<int>(place.left), static_cast<int>(place.top),
               static_cast<int>(place.right - place.left), static_cast<int>(place.bottom - place.top), FALSE);
    m_scroller.SetContent(m_content);
}

void LayoutDialog::CreateItems(const Layout& i_layout) {
    auto control_id = first_control_id;
    for (const LayoutItem& description : i_layout.items) {
        RECT place = description.place;
        if (description.is_fixed)
            OffsetRect(&place, 0, i_layout.height - i_layout.fixed_height);
        m_items.push_back(DialogItem::Create(description, {Window(), m_scale.Pixels(place), control_id, m_font.get()}));
        if (description.id == i_layout.default_item)
            SendMessageW(Window(), DM_SETDEFID, control_id, 0);
        ++control_id;
    }
}

DialogItem* LayoutDialog::ItemOf(WORD i_control_id) const noexcept {
    const size_t index = size_t{i_control_id} - first_control_id;
    return index < m_items.size() ? m_items[index].get() : nullptr;
}

HRESULT LayoutDialog::Attach(Qorv::IUIX_ObjSink* i_sink) {
    m_sink = i_sink;
    return m_sink->OnAttach(this);
}

HRESULT STDMETHODCALLTYPE LayoutDialog::DoModal(ULONG i_mode, LONG* io_result) noexcept {
    if (io_result == nullptr)
        return E_POINTER;
    if (i_mode != Qorv::UIX_ObjModal_AppModal)
        return E_INVALIDARG;
    const ComPtr<LayoutDialog> self(this); // An event may let go of the last reference.
    return Answer([&] { return RunModal(*m_monitors, *io_result); });
}

HRESULT STDMETHODCALLTYPE LayoutDialog::EndModal(LONG i_result, IUnknown* i_result_object) noexcept {
    if (i_result_object != nullptr)
        return E_INVALIDARG;
    DialogWindow::EndModal(i_result);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE LayoutDialog::Destroy() noexcept {
    const ComPtr<LayoutDialog> self(this);
    DialogWindow::Destroy();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE LayoutDialog::get_ClientRect(RECT* o_rect) noexcept {
    if (o_rect == nullptr)
        return E_POINTER;
    return GetClientRect(Window(), o_rect) ? S_OK : E_UNEXPECTED;
}

HRESULT STDMETHODCALLTYPE LayoutDialog::get_Window(HWND* o_window) noexcept {
    if (o_window == nullptr)
        return E_POINTER;
    *o_window = Window();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE LayoutDialog::put_Title(Qorv::PCStr i_title) noexcept {
    if (i_title == nullptr)
        return E_POINTER;
    return SetWindowTextW(Window(), i_title) ? S_OK : E_UNEXPECTED;
}

HRESULT STDMETHODCALLTYPE LayoutDialog::GetItem(Qorv::PCStr, const IID&, void**) noexcept {
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE LayoutDialog::AddCommandBar(Qorv::PCStr, Qorv::PCStr, const Qorv::UIX_Command*, ULONG,
                                                      Qorv::IUIX_CommandBar**) noexcept {
    return E_NOTIMPL;
}

HRESULT LayoutDialog::OnInit() {
    const HRESULT result = m_sink != nullptr ? m_sink->OnInit() : E_UNEXPECTED;
    if (SUCCEEDED(result) && m_is_foreground)
        SetForegroundWindow(Window());
    return result;
}

void LayoutDialog::OnCommand(WORD i_control_id, WORD i_notification) {
    const DialogItem* const item = ItemOf(i_control_id);
    const auto event = item != nullptr ? item->EventOf(i_notification) : std::nullopt;
    if (!event || m_sink == nullptr)
        return;
    const ComPtr<LayoutDialog> self(this);
    const ComPtr<Qorv::IUIX_ObjSink> sink = m_sink;
    sink->OnItemEvent(item->Id().c_str(), *event, 0);
}

void LayoutDialog::OnSize() {
    const ComPtr<LayoutDialog> self(this);
    m_scroller.Handle(WM_SIZE, 0);
    if (const ComPtr<Qorv::IUIX_ObjSink> sink = m_sink)
        sink->OnSize();
}

void LayoutDialog::OnDestroy() {
    const ComPtr<Qorv::IUIX_ObjSink> sink = std::move(m_sink);
    if (sink == nullptr)
        return;
    sink->OnDestroy();
    sink->OnAttach(nullptr);
}

std::optional<LRESULT> LayoutDialog::OnMessage(UINT i_message, WPARAM i_wparam, LPARAM i_lparam) {
    if (i_message == WM_DRAWITEM) {
        if (const DialogItem* const item = ItemOf(LOWORD(i_wparam)))
            item->Draw(*reinterpret_cast<const DRAWITEMSTRUCT*>(i_lparam));
        return TRUE;
    }
    if (m_scroller.Handle(i_message, i_wparam))
        return 0;
    return std::nullopt;
}

} // namespace DevHost
