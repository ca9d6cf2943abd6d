#include "uix/Layout.h"

#include "base/Failure.h"
#include "base/Xml.h"

#include <algorithm>
#include <cwchar>

namespace DevHost {
namespace {

constexpr std::wstring_view localized_prefix = L"$$$.";

// Far beyond any screen: larger values are mistakes, and would overflow when scaled.
constexpr long max_length = 16384;
constexpr double max_font_points = 200;
constexpr wchar_t default_font[] = L"Tahoma";
constexpr double default_font_points = 8.25;

/// Reads the attributes of one element; every complaint names the element and the attribute.
class Attributes {
public:
    explicit Attributes(const XmlElement& i_element) : m_element(i_element) {}

    std::wstring Text(const wchar_t* i_name) const { return m_element.Attribute(i_name); }

    std::wstring Id() const {
        const std::wstring id = Text(L"id");
        if (id.empty())
            Refuse(L"id");
        return id;
    }

    /// 0 if it is missing.
    int Length(const wchar_t* i_name) const {
        const std::wstring text = Text(i_name);
        wchar_t* end = nullptr;
        const long value = std::wcstol(text.c_str(), &end, 10);
        if (*end != L'\0' || value < 0 || value > max_length)
            Refuse(i_name);
        return static_cast<int>(value);
    }

    int PositiveLength(const wchar_t* i_name) const {
        const int length = Length(i_name);
        if (length == 0)
            Refuse(i_name);
        return length;
    }

    double Points(const wchar_t* i_name) const {
        const std::wstring text = Text(i_name);
        if (text.empty())
            return default_font_points;
        wchar_t* end = nullptr;
        const double value = std::wcstod(text.c_str(), &end);
        if (*end != L'\0' || !(value > 0 && value <= max_font_points))
            Refuse(i_name);
        return value;
    }

    bool Switch(const wchar_t* i_name) const {
        const std::wstring text = Text(i_name);
        if (!text.empty() && text != L"true" && text != L"false")
            Refuse(i_name);
        return text == L"true";
    }

    DWORD Flags(const wchar_t* i_name) const {
        constexpr std::wstring_view digits = L"0123456789abcdefABCDEF";
        constexpr std::size_t digit_count = 8;
        const std::wstring text = Text(i_name);
        if (text.empty())
            return 0;
        if (text.size() != digit_count + 1 || text.front() != L'#' ||
            text.find_first_not_of(digits, 1) != std::wstring::npos)
            Refuse(i_name);
        return static_cast<DWORD>(std::wcstoul(text.c_str() + 1, nullptr, 16));
    }

private:
    [[noreturn]] void Refuse(const wchar_t* i_name) const {
        throw Failure(E_INVALIDARG,
                      L"The layout's element \"" + m_element.name + L"\" has a wrong attribute \"" + i_name + L"\"");
    }

    const XmlElement& m_element;
};

LayoutItem ReadItem(const XmlElement& i_element) {
    const Attributes attributes(i_element);
    LayoutItem item;
    item.kind = i_element.name;
    item.id = attributes.Id();
    item.place.left = attributes.Length(L"x");
    item.place.top = attributes.Length(L"y");
    item.place.right = item.place.left + attributes.PositiveLength(L"width");
    item.place.bottom = item.place.top + attributes.PositiveLength(L"height");
    item.is_fixed = attributes.Switch(L"fixed");
    item.style = attributes.Flags(L"style");
    item.draw_text_flags = attributes.Flags(L"drawTextFlags");
    item.scroll_style = attributes.Flags(L"scrollStyle");
    item.text = attributes.Text(L"text");
    item.image = attributes.Text(L"image");
    item.name = attributes.Text(L"name");
    item.label_id = attributes.Text(L"labelledBy");
    return item;
}

Layout ReadDialog(const XmlElement& i_element) {
    const Attributes attributes(i_element);
    Layout layout;
    layout.title = attributes.Text(L"title");
    layout.width = attributes.PositiveLength(L"width");
    layout.height = attributes.PositiveLength(L"height");
    layout.fixed_height = std::min(attributes.Length(L"fixedArea"), layout.height);
    layout.font_name = attributes.Text(L"font").empty() ? default_font : attributes.Text(L"font");
    layout.font_points = attributes.Points(L"fontSize");
    layout.is_foreground = attributes.Switch(L"foreground");
    layout.is_scrollable = attributes.Switch(L"scrollable");
    layout.has_help_button = attributes.Switch(L"contextHelp");
    layout.default_item = attributes.Text(L"defaultItem");
    for (const XmlElement& child : i_element.children) {
        LayoutItem item = ReadItem(child);
        if (std::ranges::find(layout.items, item.id, &LayoutItem::id) != layout.items.end())
            throw Failure(E_INVALIDARG, L"The layout has two items \"" + item.id + L"\"");
        layout.items.push_back(std::move(item));
    }
    return layout;
}

void LocalizeText(std::wstring& io_text, const Localization& i_texts) {
    if (!io_text.starts_with(localized_prefix))
        return;
    if (const auto text = i_texts.Find(io_text.substr(localized_prefix.size())))
        io_text = *text;
}

} // namespace

Layout Layout::Read(const void* i_data, std::size_t i_size, const std::wstring& i_id) {
    const XmlElement document = ParseXml(i_data, i_size);
    if (document.name != L"dialogs")
        throw Failure(E_INVALIDARG, L"The document holds no dialogs");
    for (const XmlElement& element : document.children)
        if (element.name == L"dialog" && element.Attribute(L"id") == i_id)
            return ReadDialog(element);
    throw Failure(E_INVALIDARG, L"There is no dialog \"" + i_id + L"\"");
}

void Layout::Localize(const Localization& i_texts) {
    LocalizeText(title, i_texts);
    for (LayoutItem& item : items) {
        LocalizeText(item.text, i_texts);
        LocalizeText(item.name, i_texts);
    }
}

} // namespace DevHost
