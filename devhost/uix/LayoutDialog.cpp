#include "uix/LayoutDialog.h"

#include "base/Failure.h"
#include "uix/CommandBar.h"
#include "uix/WindowPlace.h"

#include <algorithm>
#include <span>

namespace DevHost {
namespace {

using Qorv::ComPtr;

constexpr WORD first_control_id = 100;               // Above IDOK, IDCANCEL and the system's other ids.
constexpr UINT item_event_message = WM_USER + 0x100; // Above the system's own dialog messages.
constexpr UINT last_message_for_sink = 0xBFFF;       // From WM_APP on.
constexpr int item_gap = 6;                          // Layout units.

SIZE ContentSize(const Layout& i_layout, const Scale& i_scale) {
    return {i_scale.Pixels(i_layout.width), i_scale.Pixels(i_layout.height)};
}

/// The sink alone fills a dialog without items and follows its size, so the user may resize it.
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

LayoutDialog::LayoutDialog(const Layout& i_layout, const Frame& i_frame, std::shared_ptr<LoopMonitors> i_monitors,
                           HostImages& io_images)
    : DialogWindow(i_frame.owner, StyleOf(i_layout, i_frame.style), ExtendedStyleOf(i_layout), i_layout.title,
                   ContentSize(i_layout, Scale::OfScreen()))
    , m_scale(Scale::OfScreen())
    , m_content(ContentSize(i_layout, m_scale))
    , m_is_foreground(i_layout.is_foreground)
    , m_font(m_scale.MakeFont(i_layout.font_name, i_layout.font_points))
    , m_scroller(Window())
    , m_monitors(std::move(i_monitors)) {
    CreateItems(i_layout, io_images);
    if (i_layout.is_scrollable && !m_items.empty())
        MakeScrollable(i_frame.owner);
}

LayoutDialog::~LayoutDialog() {
    DialogWindow::Destroy();
}

/// A vertical scroll bar takes some of the width that the items need, so the window gets that much wider.
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

void LayoutDialog::CreateItems(const Layout& i_layout, HostImages& io_images) {
    for (const LayoutItem& description : i_layout.items) {
        RECT place = description.place;
        if (description.is_fixed)
            OffsetRect(&place, 0, i_layout.height - i_layout.fixed_height);
        ItemPlace item_place = PlaceAt(m_scale.Pixels(place));
        item_place.images = &io_images;
        m_items.push_back(DialogItem::Create(description, item_place));
        if (description.id == i_layout.default_item)
            SendMessageW(Window(), DM_SETDEFID, item_place.control_id, 0);
    }
    for (std::size_t index = 0; index < m_items.size(); ++index) {
        const LayoutItem& description = i_layout.items[index];
        const ComPtr<DialogItem> label = ItemNamed(description.label_id.c_str());
        m_items[index]->SetAccessibleName(description.name, label != nullptr ? label->Window() : nullptr);
    }
}

/// For the next item.
ItemPlace LayoutDialog::PlaceAt(const RECT& i_rect) noexcept {
    return {Window(), i_rect, static_cast<WORD>(first_control_id + m_items.size()), m_font.get(), this};
}

ComPtr<DialogItem> LayoutDialog::ItemOf(UINT_PTR i_control_id) const noexcept {
    const std::size_t index = i_control_id - first_control_id;
    return index < m_items.size() ? m_items[index] : nullptr;
}

ComPtr<DialogItem> LayoutDialog::ItemNamed(Qorv::PCStr i_id) const {
    const auto found = std::ranges::find_if(m_items, [&](const auto& i_item) { return i_item->ItemId() == i_id; });
    return found != m_items.end() ? *found : nullptr;
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
    const ComPtr<LayoutDialog> self(this); // An event handler may release the last reference.
    const HRESULT result = Answer([&] { return RunModal(*m_monitors, *io_result); });
    m_events.clear(); // Events after the end are dropped.
    return result;
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

HRESULT STDMETHODCALLTYPE LayoutDialog::GetItem(Qorv::PCStr i_item_id, const IID& i_interface, void** o_item) noexcept {
    if (i_item_id == nullptr || o_item == nullptr)
        return E_POINTER;
    *o_item = nullptr;
    const ComPtr<DialogItem> item = ItemNamed(i_item_id);
    return item != nullptr ? item->QueryInterface(i_interface, o_item) : E_INVALIDARG;
}

HRESULT STDMETHODCALLTYPE LayoutDialog::AddCommandBar(Qorv::PCStr i_item_id, Qorv::PCStr i_beside_item_id,
                                                      const Qorv::UIX_Command* i_commands, ULONG i_count,
                                                      Qorv::IUIX_CommandBar** o_command_bar) noexcept {
    if (o_command_bar != nullptr)
        *o_command_bar = nullptr;
    if (i_item_id == nullptr || i_beside_item_id == nullptr || (i_commands == nullptr && i_count != 0))
        return E_POINTER;
    if (Window() == nullptr)
        return E_UNEXPECTED;
    return Answer([&] {
        const ComPtr<DialogItem> beside = ItemNamed(i_beside_item_id);
        if (beside == nullptr || ItemNamed(i_item_id) != nullptr)
            return E_INVALIDARG;
        const auto bar = Qorv::Create<CommandBar>(std::span(i_commands, i_count));
        if (bar == nullptr)
            return E_OUTOFMEMORY;
        LayoutItem description;
        description.id = i_item_id;
        bar->SetAccessibleName(L"Tool bar", nullptr);
        bar->Make(description, PlaceAt(TakeRightEnd(*beside, bar->Size())));
        m_items.emplace_back(bar);
        SetWindowPos(bar->Window(), beside->Window(), 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
        if (o_command_bar != nullptr)
            *o_command_bar = ComPtr<CommandBar>(bar).Detach();
        return S_OK;
    });
}

RECT LayoutDialog::PlaceOf(const DialogItem& i_item) const {
    RECT place;
    GetWindowRect(i_item.Window(), &place);
    MapWindowPoints(nullptr, Window(), reinterpret_cast<POINT*>(&place), 2);
    return place;
}

/// Where the other items end, if nothing is between there and the item; else the item's own right edge.
LONG LayoutDialog::FreeRightEdge(const DialogItem& i_item, const RECT& i_place) const {
    RECT beside{i_place.right, i_place.top, i_place.right, i_place.bottom};
    for (const auto& item : m_items)
        if (!item->IsFixed())
            beside.right = std::max(beside.right, PlaceOf(*item).right);
    const bool is_free = std::ranges::none_of(m_items, [&](const auto& i_other) {
        RECT common;
        const RECT place = PlaceOf(*i_other);
        return i_other.Get() != &i_item && IntersectRect(&common, &place, &beside) != FALSE;
    });
    return is_free ? beside.right : i_place.right;
}

/// Makes an item narrower so that something of the given size fits beside it, and returns the place: vertically
/// centred, at the item's right end, or where all items end.
RECT LayoutDialog::TakeRightEnd(const DialogItem& i_item, SIZE i_size) const {
    const RECT place = PlaceOf(i_item);
    const LONG right = FreeRightEdge(i_item, place);
    const LONG top = (place.top + place.bottom - i_size.cy) / 2;
    const RECT end{right - i_size.cx, top, right, top + i_size.cy};
    const LONG width = end.left - m_scale.Pixels(item_gap) - place.left;
    SetWindowPos(i_item.Window(), nullptr, 0, 0, static_cast<int>(std::max(width, LONG{0})),
                 static_cast<int>(place.bottom - place.top), SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    return end;
}

/// The first item gets the focus, unless the sink has chosen another.
HRESULT LayoutDialog::OnInit() {
    if (m_is_foreground) // Before an item takes the focus: the title bar is only notified if this is the first change.
        SetForegroundWindow(Window());
    const HRESULT result = m_sink != nullptr ? m_sink->OnInit() : E_UNEXPECTED;
    if (FAILED(result) || Window() == nullptr)
        return result;
    if (!IsChild(Window(), GetFocus()))
        if (const HWND first = GetNextDlgTabItem(Window(), nullptr, FALSE))
            SendMessageW(Window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(first), TRUE);
    return result;
}

void LayoutDialog::Post(DialogItem& io_item, Qorv::UIX_ItemEventKind i_kind, LONG i_detail) {
    const ItemEvent event{&io_item, i_kind, i_detail};
    if (std::ranges::find(m_events, event) != m_events.end())
        return;
    m_events.push_back(event);
    PostMessageW(Window(), item_event_message, 0, 0);
}

void LayoutDialog::Forget(const DialogItem& i_item) {
    std::erase_if(m_events, [&](const ItemEvent& i_event) { return i_event.item == &i_item; });
}

/// What the mouse has clicked is visible, and must not move away from under it. Items of a hidden window cannot be
/// scrolled.
void LayoutDialog::OnFocus(HWND i_control) {
    if (GetKeyState(VK_LBUTTON) >= 0 && IsWindowVisible(Window()))
        m_scroller.Reveal(i_control);
}

void LayoutDialog::TellFirstEvent() {
    if (m_events.empty() || m_sink == nullptr)
        return;
    const ItemEvent event = std::move(m_events.front());
    m_events.pop_front();
    const ComPtr<LayoutDialog> self(this);
    const ComPtr<Qorv::IUIX_ObjSink> sink = m_sink;
    sink->OnItemEvent(event.item->ItemId().c_str(), event.kind, event.detail);
}

void LayoutDialog::OnCommand(WORD i_control_id, WORD i_notification) {
    if (const ComPtr<DialogItem> item = ItemOf(i_control_id))
        item->OnCommand(i_notification);
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
    m_events.clear();
    sink->OnDestroy();
    sink->OnAttach(nullptr);
}

std::optional<LRESULT> LayoutDialog::OnMessage(UINT i_message, WPARAM i_wparam, LPARAM i_lparam) {
    switch (i_message) {
    case WM_DRAWITEM:
        if (const ComPtr<DialogItem> item = ItemOf(i_wparam))
            item->Draw(*reinterpret_cast<const DRAWITEMSTRUCT*>(i_lparam));
        return TRUE;
    case WM_NOTIFY: {
        auto* const notification = reinterpret_cast<NMHDR*>(i_lparam);
        const ComPtr<DialogItem> item = ItemOf(notification->idFrom);
        return item != nullptr && item->Window() == notification->hwndFrom ? item->OnNotify(*notification) : 0;
    }
    case item_event_message:
        TellFirstEvent();
        return 0;
    default:
        break;
    }
    if (i_message >= WM_APP && i_message <= last_message_for_sink) {
        const ComPtr<LayoutDialog> self(this);
        if (const ComPtr<Qorv::IUIX_ObjSink> sink = m_sink)
            sink->OnMessage(i_message, i_wparam, i_lparam);
        return 0;
    }
    if (m_scroller.Handle(i_message, i_wparam))
        return 0;
    return std::nullopt;
}

} // namespace DevHost
