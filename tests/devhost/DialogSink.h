#pragma once

#include "qorv/CoClass.h"
#include "qorv/Uix.h"

#include <functional>
#include <string>
#include <vector>

namespace Tests {

/// What a dialog tells its sink about an item.
struct ItemEvent {
    std::wstring item;
    ULONG kind = 0;
    LONG detail = 0;
};

/// A dialog's sink that records what it is told, and runs what a test provides.
class DialogSink final : public Qorv::CoClass<DialogSink, Qorv::IUIX_ObjSink> {
public:
    HRESULT STDMETHODCALLTYPE OnAttach(Qorv::IUIX_Obj* i_object) noexcept override {
        events.emplace_back(i_object != nullptr ? L"attach" : L"detach");
        dialog = i_object;
        return attach_result;
    }
    HRESULT STDMETHODCALLTYPE OnInit() noexcept override {
        events.emplace_back(L"init");
        return on_init ? on_init() : S_OK;
    }
    HRESULT STDMETHODCALLTYPE OnSize() noexcept override {
        events.emplace_back(L"size");
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OnItemEvent(Qorv::PCStr i_item_id, ULONG i_kind, LONG i_detail) noexcept override {
        events.push_back(NameOf(i_kind) + L" " + i_item_id +
                         (HasDetail(i_kind) ? L" " + std::to_wstring(i_detail) : L""));
        if (on_event)
            on_event({i_item_id, i_kind, i_detail});
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OnMessage(UINT i_message, WPARAM i_w_param, LPARAM i_l_param) noexcept override {
        events.push_back(L"message " + std::to_wstring(i_message) + L" " + std::to_wstring(i_w_param) + L" " +
                         std::to_wstring(i_l_param));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OnDestroy() noexcept override {
        events.emplace_back(L"destroy");
        if (on_destroy)
            on_destroy();
        return S_OK;
    }

    HWND Window() const {
        HWND window = nullptr;
        dialog->get_Window(&window);
        return window;
    }

    Qorv::ComPtr<Qorv::IUIX_Obj> dialog;
    std::vector<std::wstring> events;
    std::function<HRESULT()> on_init;
    std::function<void(const ItemEvent&)> on_event;
    std::function<void()> on_destroy;
    HRESULT attach_result = S_OK;

private:
    static std::wstring NameOf(ULONG i_kind) {
        constexpr const wchar_t* names[] = {L"?",      L"click",  L"changed", L"selection", L"activated",
                                            L"column", L"edited", L"menu",    L"command"};
        return names[i_kind < std::size(names) ? i_kind : 0];
    }
    /// The place of a menu differs on every screen.
    static bool HasDetail(ULONG i_kind) {
        return i_kind == Qorv::UIX_ItemEvent_Activated || i_kind == Qorv::UIX_ItemEvent_ColumnClicked ||
               i_kind == Qorv::UIX_ItemEvent_RowEdited || i_kind == Qorv::UIX_ItemEvent_Command;
    }
};

} // namespace Tests
