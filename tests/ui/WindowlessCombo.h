#pragma once

#include "qorv/CoClass.h"
#include "qorv/Uix.h"
#include "qorv/Values.h"

#include <string>
#include <vector>

namespace Tests {

/// A combo without a window.
class Combo final : public Qorv::CoClass<Combo, Qorv::IUIX_Combo> {
public:
    struct Item {
        std::wstring text, hint;
        Qorv::PARAM_T param;
    };

    HRESULT STDMETHODCALLTYPE Clear() noexcept override {
        items.clear();
        selected = -1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE InsertItem(LONG i_index, Qorv::PCStr i_text, Qorv::PCStr i_hint, Qorv::IUIX_Image*,
                                         Qorv::PARAM_T i_param, ULONG) noexcept override {
        if (static_cast<LONG>(items.size()) == capacity)
            return E_OUTOFMEMORY;
        items.insert(i_index < 0 ? items.end() : items.begin() + i_index, Item{i_text, i_hint, i_param});
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_Count(LONG* o_count) noexcept override {
        *o_count = static_cast<LONG>(items.size());
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_SelItem(LONG* o_index) noexcept override {
        *o_index = selected;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE put_SelItem(LONG i_index) noexcept override {
        selected = i_index;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetItemText(LONG i_index, BSTR* o_text) noexcept override {
        if (!Has(i_index))
            return E_INVALIDARG;
        *o_text = Qorv::Bstr(items[static_cast<std::size_t>(i_index)].text).Detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetItemParam(LONG i_index, Qorv::PARAM_T* o_param) noexcept override {
        if (!Has(i_index) || i_index == unreadable)
            return E_INVALIDARG;
        *o_param = items[static_cast<std::size_t>(i_index)].param;
        return S_OK;
    }

    std::vector<Item> items;
    LONG selected = -1;
    LONG capacity = 100;
    LONG unreadable = -1; ///< The item whose parameter cannot be read.

private:
    bool Has(LONG i_index) const noexcept { return i_index >= 0 && i_index < static_cast<LONG>(items.size()); }
};

} // namespace Tests
