#pragma once

#include "qorv/CoClass.h"
#include "qorv/Uix.h"

#include <functional>
#include <string>
#include <vector>

namespace Tests {

/// A dialog's sink that writes down what it is told, and does what a test gives it to do.
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
    HRESULT STDMETHODCALLTYPE OnItemEvent(Qorv::PCStr i_item_id, ULONG i_kind, LONG) noexcept override {
        events.emplace_back((i_kind == Qorv::UIX_ItemEvent_Click ? L"click " : L"? ") + std::wstring(i_item_id));
        if (on_click)
            on_click(i_item_id);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OnMessage(UINT, WPARAM, LPARAM) noexcept override { return S_OK; }
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
    std::function<void(const std::wstring&)> on_click;
    std::function<void()> on_destroy;
    HRESULT attach_result = S_OK;
};

} // namespace Tests
