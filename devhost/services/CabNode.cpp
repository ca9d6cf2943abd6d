#include "services/CabNode.h"

#include "base/Failure.h"

#include <algorithm>

namespace DevHost {
namespace {

// Item sets may name each other in a circle.
constexpr int max_depth = 32;

} // namespace

HRESULT STDMETHODCALLTYPE CabNode::SetTemplate2(const void* i_data, LONG i_size, Qorv::PCStr i_root_id) noexcept {
    return Answer([&] {
        if (i_data == nullptr || i_size <= 0 || i_root_id == nullptr || !std::holds_alternative<Dictionary>(m_value))
            return E_INVALIDARG;
        const auto cab_template = CabTemplate::Parse(i_data, static_cast<std::size_t>(i_size));
        Apply(cab_template, cab_template->Root(i_root_id), 0);
        return S_OK;
    });
}

void CabNode::Apply(const std::shared_ptr<const CabTemplate>& i_template, const CabTemplate::Item& i_item,
                    int i_depth) {
    if (i_depth > max_depth)
        throw Failure(E_INVALIDARG, L"The settings template is nested too deeply");
    m_template = i_template;
    m_declared = i_item;
    if (i_item.type == Qorv::AUX_CabType_Array && !std::holds_alternative<Array>(m_value))
        m_value = Array();
    if (i_item.type != Qorv::AUX_CabType_Dictionary)
        return;
    if (!std::holds_alternative<Dictionary>(m_value))
        m_value = Dictionary();
    for (const CabTemplate::Item& item : i_template->ItemSet(i_item.item_set))
        Member(item.id)->Apply(i_template, item, i_depth + 1);
}

HRESULT STDMETHODCALLTYPE CabNode::get_Item(Qorv::PCStr i_id, Qorv::IAUX_CabNode** o_item) noexcept {
    if (o_item == nullptr)
        return E_POINTER;
    *o_item = nullptr;
    return Answer([&] {
        if (i_id == nullptr || m_template == nullptr || m_declared.type != Qorv::AUX_CabType_Dictionary)
            return E_INVALIDARG;
        const auto& declared = m_template->ItemSet(m_declared.item_set);
        if (std::ranges::find(declared, i_id, &CabTemplate::Item::id) == declared.end())
            return E_INVALIDARG;
        *o_item = Find(i_id).Detach();
        return S_OK;
    });
}

HRESULT STDMETHODCALLTYPE CabNode::get_Type(LONG* o_type) noexcept {
    if (o_type == nullptr)
        return E_POINTER;
    // In the order of the variant's alternatives.
    constexpr LONG types[] = {Qorv::AUX_CabType_Dictionary, Qorv::AUX_CabType_Empty,    Qorv::AUX_CabType_Int,
                              Qorv::AUX_CabType_String,     Qorv::AUX_CabType_IUnknown, Qorv::AUX_CabType_Array};
    static_assert(std::size(types) == std::variant_size_v<Value>);
    *o_type = types[m_value.index()];
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CabNode::get_v(VARIANT* o_value) noexcept {
    if (o_value == nullptr)
        return E_POINTER;
    VariantInit(o_value);
    if (const auto* number = std::get_if<LONG>(&m_value)) {
        o_value->vt = VT_I4;
        o_value->lVal = *number;
    } else if (const auto* text = std::get_if<std::wstring>(&m_value)) {
        o_value->vt = VT_BSTR;
        return AnswerText(*text, &o_value->bstrVal);
    } else if (const auto* object = std::get_if<Qorv::ComPtr<IUnknown>>(&m_value)) {
        o_value->vt = VT_UNKNOWN;
        object->CopyTo(&o_value->punkVal);
    } else if (!std::holds_alternative<std::monostate>(m_value)) {
        return E_INVALIDARG; // A dictionary is read through its items.
    }
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CabNode::put_v(const VARIANT& i_value) noexcept {
    return Answer([&] {
        const Qorv::AUX_CabType declared = m_template != nullptr ? m_declared.type : Qorv::AUX_CabType_Empty;
        if (declared == Qorv::AUX_CabType_Int && (i_value.vt == VT_I4 || i_value.vt == VT_INT))
            m_value = i_value.lVal;
        else if (declared == Qorv::AUX_CabType_String && i_value.vt == VT_BSTR)
            m_value = std::wstring(i_value.bstrVal != nullptr ? i_value.bstrVal : L"", SysStringLen(i_value.bstrVal));
        else if (declared == Qorv::AUX_CabType_IUnknown && (i_value.vt == VT_UNKNOWN || i_value.vt == VT_DISPATCH))
            m_value = Qorv::ComPtr<IUnknown>(i_value.punkVal);
        else
            return E_INVALIDARG;
        return S_OK;
    });
}

HRESULT STDMETHODCALLTYPE CabNode::get_String(BSTR* o_value) noexcept {
    if (std::holds_alternative<std::monostate>(m_value))
        return AnswerText({}, o_value);
    const auto* text = std::get_if<std::wstring>(&m_value);
    return text != nullptr ? AnswerText(*text, o_value) : E_INVALIDARG;
}

CabNode::Node CabNode::Member(std::wstring_view i_id) {
    if (const Node found = Find(i_id); found != nullptr)
        return found;
    const Node member = Qorv::Create<CabNode>();
    if (member == nullptr)
        throw std::bad_alloc();
    member->m_value = std::monostate();
    std::get<Dictionary>(m_value).emplace_back(i_id, member);
    return member;
}

std::wstring CabNode::MemberText(std::wstring_view i_id) const {
    const Node member = Find(i_id);
    const auto* text = member != nullptr ? std::get_if<std::wstring>(&member->m_value) : nullptr;
    return text != nullptr ? *text : std::wstring();
}

CabNode::Node CabNode::Find(std::wstring_view i_id) const {
    const auto* members = std::get_if<Dictionary>(&m_value);
    if (members == nullptr)
        return nullptr;
    const auto found = std::ranges::find(*members, i_id, &Dictionary::value_type::first);
    return found != members->end() ? found->second : nullptr;
}

} // namespace DevHost
