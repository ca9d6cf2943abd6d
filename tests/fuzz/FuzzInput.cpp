#include "fuzz/FuzzInput.h"

#include "base/Unicode.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>

namespace Fuzz {
namespace {

constexpr std::uint64_t usual_count = 20'000;

std::string g_tried;
std::uint64_t g_number = 0;

/// A trap ends the program at once, without waiting for a debugger.
LONG WINAPI TellAndEnd(EXCEPTION_POINTERS* i_exception) {
    std::fprintf(stderr, "exception 0x%08lx at input %llu: %s\n", i_exception->ExceptionRecord->ExceptionCode,
                 static_cast<unsigned long long>(g_number), g_tried.c_str());
    std::fflush(stderr);
    TerminateProcess(GetCurrentProcess(), EXIT_FAILURE);
    return EXCEPTION_EXECUTE_HANDLER;
}

[[maybe_unused]] const auto g_earlier_filter = SetUnhandledExceptionFilter(TellAndEnd);

void Mutate(Random& io_random, const Language& i_language, std::string& io_text) {
    const std::size_t at = io_random.Below(io_text.size() + 1);
    const std::size_t length = io_random.Below(std::min<std::size_t>(io_text.size() - at, 40) + 1);
    constexpr std::size_t longest = 4'000;
    switch (io_random.Below(7)) {
    case 0:
        io_text.erase(at, length);
        break;
    case 1:
        io_text.insert(at, io_random.Pick(i_language.words));
        break;
    case 2:
        io_text.replace(at, length, io_random.Pick(i_language.words));
        break;
    case 3:
        io_text.insert(at, 1, static_cast<char>(io_random.Below(256)));
        break;
    case 4: // A piece repeated.
        for (std::size_t i = io_random.Below(20); i > 0 && io_text.size() < longest; --i)
            io_text.insert(at, io_text.substr(at, length));
        break;
    case 5: // The end of another example.
        io_text.erase(at);
        io_text += io_random.Pick(i_language.examples);
        break;
    default:
        io_text.resize(at);
    }
}

} // namespace

std::wstring Random::Text(std::wstring_view i_alphabet, std::size_t i_longest) {
    std::wstring text(Below(i_longest + 1), L'\0');
    for (wchar_t& letter : text)
        letter = i_alphabet[Below(i_alphabet.size())];
    return text;
}

std::uint64_t InputCount() {
    static const std::uint64_t count = [] {
        const char* const text = std::getenv("FUZZ_INPUTS");
        return text != nullptr ? std::strtoull(text, nullptr, 10) : usual_count;
    }();
    return count;
}

std::string Mutated(Random& io_random, const Language& i_language) {
    std::string text = io_random.Pick(i_language.examples);
    for (std::size_t i = io_random.Below(6); i > 0; --i)
        Mutate(io_random, i_language, text);
    return text;
}

std::wstring MutatedText(Random& io_random, const Language& i_language) {
    std::wstring text = DevHost::FromUtf8(Mutated(io_random, i_language));
    constexpr std::wstring_view odd = L"\xD800\xDC00\xFFFF\xFEFF\x202E\x200B\x0130\x00DF\x0301\x0000\x001F\x007F";
    for (std::size_t i = io_random.OneIn(3) ? io_random.Below(4) : 0; i > 0; --i)
        text.insert(io_random.Below(text.size() + 1), 1, odd[io_random.Below(odd.size())]);
    return text;
}

void Trying(std::uint64_t i_number, std::string_view i_input) {
    g_number = i_number;
    g_tried = Literal(i_input);
}

void Trying(std::uint64_t i_number, std::wstring_view i_input) {
    g_number = i_number;
    g_tried = Literal(i_input);
}

std::string Literal(std::string_view i_bytes) {
    std::string text;
    for (const char byte : i_bytes)
        if (byte >= ' ' && byte < 0x7F && byte != '"' && byte != '\\') {
            text += byte;
        } else {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\%03o", static_cast<unsigned>(static_cast<unsigned char>(byte)));
            text += escape;
        }
    return "\"" + text + "\"";
}

std::string Literal(std::wstring_view i_text) {
    std::string text;
    for (const wchar_t unit : i_text)
        if (unit >= L' ' && unit < 0x7F && unit != L'"' && unit != L'\\') {
            text += static_cast<char>(unit);
        } else {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(unit));
            text += escape;
        }
    return "L\"" + text + "\"";
}

} // namespace Fuzz
