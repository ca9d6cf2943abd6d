#include "base/Failure.h"

#include "base/Unicode.h"

#include <array>
#include <cstdint>
#include <cstdio>

namespace DevHost {
namespace {

struct KnownCode {
    std::uint32_t code;
    const wchar_t* words;
};

// The system has no text for these, or none that helps the user.
constexpr KnownCode known_codes[] = {
    {0x821704C7, L"the operation was canceled"},
    {0x80070057, L"an argument is not valid, or the item does not exist"},
    {0x80004001, L"the plug-in does not offer this"},
    {0x80004005, L"the operation failed"},
    {0x8000FFFF, L"this cannot be done in the present state"},
    {0x80070002, L"the file does not exist"},
    {0x80070003, L"the folder does not exist"},
    {0x80070005, L"access is denied"},
    {0x80070020, L"another program has the file open"},
    {0x80070050, L"the file already exists"},
    {0x80070070, L"the disk is full"},
    {0x80072EE2, L"the service did not answer in time"},
    {0x80072EE7, L"the service's address is not known: is there a connection to the internet?"},
    {0x80072EFD, L"no connection to the service"},
    {0x80072EFE, L"the connection to the service broke"},
    {0x80072EFF, L"the connection to the service was reset"},
    {0x80072F05, L"the service's certificate has expired"},
    {0x80072F06, L"the service's certificate is for another host"},
    {0x80072F0D, L"the service's certificate is not trusted"},
    {0x80072F19, L"the service's certificate is not trusted"},
    {0x80072F76, L"the service's answer cannot be understood"},
    {0x80072F78, L"the service's answer cannot be understood"},
    {0x80072F7D, L"the secure connection to the service broke"},
};

} // namespace

Failure::Failure(HRESULT i_code, std::wstring i_text)
    : std::runtime_error(ToUtf8(i_text)), m_code(i_code), m_text(std::move(i_text)) {}

Failure LastErrorFailure(std::wstring_view i_what) {
    const DWORD error = GetLastError();
    const HRESULT code = error == ERROR_SUCCESS ? E_FAIL : HRESULT_FROM_WIN32(error);
    return {code, std::wstring(i_what) + L": " + CodeInWords(code)};
}

std::wstring CodeInWords(HRESULT i_code) {
    for (const KnownCode& known : known_codes)
        if (static_cast<HRESULT>(known.code) == i_code)
            return known.words;
    std::array<wchar_t, 1024> text{};
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                        static_cast<DWORD>(i_code), 0, text.data(), DWORD{text.size()}, nullptr);
    std::wstring words = OneLine({text.data(), length});
    if (!words.empty() && words.back() == L'.')
        words.pop_back();
    return words.empty() ? L"the operation failed" : words;
}

std::wstring ReasonInWords(HRESULT i_code, std::wstring_view i_said) {
    std::wstring said = OneLine(i_said);
    while (!said.empty() && said.back() == L'.')
        said.pop_back();
    const bool is_only_the_code = said.starts_with(L"HRESULT 0x") || said.starts_with(L"GetLastError ");
    return said.empty() || is_only_the_code ? CodeInWords(i_code) : said;
}

void Check(HRESULT i_result, std::wstring_view i_what) {
    if (FAILED(i_result))
        throw Failure(i_result, std::wstring(i_what) + L": " + CodeInWords(i_result));
}

HRESULT AnswerText(std::wstring_view i_text, BSTR* o_text) noexcept {
    if (o_text == nullptr)
        return E_POINTER;
    *o_text = SysAllocStringLen(i_text.data(), static_cast<UINT>(i_text.size()));
    return *o_text != nullptr ? S_OK : E_OUTOFMEMORY;
}

} // namespace DevHost
