#include "core/trace/ErrorText.h"

#include <wininet.h>

#include <cwchar>
#include <iterator>

namespace {

constexpr wchar_t no_information[] = L"<no system error information avaliable>"; // Tools rely on the typo.
constexpr DWORD text_capacity = 1024;                                            // Characters.
constexpr DWORD first_internet_error = INTERNET_ERROR_BASE + 1;

/// The message from the system's message table, or from a module's; empty if there is none.
std::wstring SystemMessage(DWORD i_code, HMODULE i_module, DWORD i_language) {
    const DWORD source = i_module != nullptr ? FORMAT_MESSAGE_FROM_HMODULE : FORMAT_MESSAGE_FROM_SYSTEM;
    wchar_t text[text_capacity];
    const DWORD length = FormatMessageW(source | FORMAT_MESSAGE_IGNORE_INSERTS, i_module, i_code, i_language, text,
                                        text_capacity, nullptr);
    return {text, length};
}

/// What the server said about the failed request.
std::wstring LastResponse() {
    DWORD error = 0;
    DWORD length = 0;
    InternetGetLastResponseInfoW(&error, nullptr, &length);
    std::wstring text(length + 1, L'\0');
    length = static_cast<DWORD>(text.size());
    if (!InternetGetLastResponseInfoW(&error, text.data(), &length))
        return {};
    text.resize(length);
    return text;
}

std::wstring WindowsErrorMessage(DWORD i_error, DWORD i_language) {
    if (i_error == ERROR_SUCCESS)
        return {};
    if (i_error == ERROR_INTERNET_EXTENDED_ERROR)
        return LastResponse();
    return SystemMessage(i_error, i_error >= first_internet_error ? GetModuleHandleW(L"wininet.dll") : nullptr,
                         i_language);
}

std::wstring OrNoInformation(std::wstring i_message) {
    return i_message.empty() ? no_information : std::move(i_message);
}

} // namespace

std::wstring HResultText(HRESULT hr, DWORD i_language) {
    wchar_t code[32];
    std::swprintf(code, std::size(code), L"HRESULT 0x%.8x: ", static_cast<unsigned>(hr));
    return code + OrNoInformation(SystemMessage(static_cast<DWORD>(hr), nullptr, i_language));
}

std::wstring LastErrorText(DWORD i_language) {
    const DWORD error = GetLastError();
    std::wstring text =
        L"GetLastError " + std::to_wstring(error) + L": " + OrNoInformation(WindowsErrorMessage(error, i_language));
    SetLastError(error); // The caller may need the code as well.
    return text;
}
