#include "browser/FormSubmission.h"

#include "base/Unicode.h"
#include "browser/Url.h"

namespace DevHost {
namespace {

using Kind = PageBlock::Kind;

std::string EncodeForForm(std::wstring_view i_text) {
    constexpr std::string_view unchanged = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789*-._";
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string encoded;
    for (const char character : ToUtf8(i_text)) {
        const auto byte = static_cast<unsigned char>(character);
        if (unchanged.find(character) != std::string_view::npos)
            encoded += character;
        else if (character == ' ')
            encoded += '+';
        else
            encoded.append({'%', digits[byte >> 4], digits[byte & 15]});
    }
    return encoded;
}

} // namespace

WebRequest SubmitForm(const Page& i_page, const std::wstring& i_page_url, std::size_t i_button,
                      const std::function<std::wstring(std::size_t)>& i_entry) {
    const std::size_t form_index = i_page.blocks[i_button].form;
    std::string data;
    for (std::size_t index = 0; index < i_page.blocks.size(); ++index) {
        const PageBlock& block = i_page.blocks[index];
        const bool is_field = block.kind == Kind::Field || block.kind == Kind::Password;
        const bool is_sent =
            is_field || block.kind == Kind::Hidden || (block.kind == Kind::Button && index == i_button);
        if (block.form != form_index || block.name.empty() || !is_sent)
            continue;
        data += data.empty() ? "" : "&";
        data += EncodeForForm(block.name) + "=" + EncodeForForm(is_field ? i_entry(index) : block.value);
    }
    const PageForm form = form_index < i_page.forms.size() ? i_page.forms[form_index] : PageForm{};
    const Url action = Url(i_page_url).Resolve(form.action).WithoutFragment();
    if (form.is_post)
        return {action.Text(), std::move(data), true};
    return {action.WithQuery(FromUtf8(data)).Text(), {}, false};
}

} // namespace DevHost
