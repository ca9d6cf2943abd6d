// What callers and users write: filter strings, quoted lists, extensions, titles, locations.

#include "fuzz/FuzzInput.h"

#include "afs/Location.h"
#include "core/trace/Trace.h"
#include "ui/list/NaturalOrder.h"
#include "ui/names/FilterString.h"
#include "ui/names/NameExtension.h"
#include "ui/names/QuotedNames.h"

#include <algorithm>

namespace Fuzz {
namespace {

using namespace Ui;

const Language filters = {{"PDF files|*.pdf;*.fdf|All files|*.*|", "A|a;.b;*.c;*|", "|", "Text|*.txt"},
                          {"|", "||", ";", "*", "*.*", ".", "*.", ";;", " ", "pdf", "\xC3\xA9"}};

TEST(NamesFuzz, AFilterStringGivesWholeEntriesInItsOrder) {
    ForTexts(filters, [](Random&, const std::wstring& i_input) {
        std::size_t at = 0;
        for (const FilterEntry& entry : ParseFilterString(i_input)) {
            ASSERT_FALSE(entry.text.empty());
            ASSERT_EQ(i_input.compare(at, entry.text.size() + 1, entry.text + L"|"), 0);
            at = i_input.find(L'|', at + entry.text.size() + 1) + 1;
            ASSERT_NE(at, 0u);
            for (const std::wstring& extension : entry.extensions) {
                EXPECT_FALSE(extension.empty());
                EXPECT_EQ(extension.find_first_of(L"|;"), extension.npos);
                EXPECT_TRUE(extension != all_files_extension || entry.extensions.size() == 1);
            }
        }
    });
}

TEST(NamesFuzz, AFilterStringThatWasWrittenIsReadAsItWas) {
    ForChances([](Random& io_random) {
        std::vector<FilterEntry> entries(io_random.Below(5));
        std::wstring filters_text;
        for (FilterEntry& entry : entries) {
            entry.text = L"t" + io_random.Text(L"ab ;*.\u00E9", 6);
            filters_text += entry.text + L"|";
            entry.extensions.resize(1 + io_random.Below(3));
            for (std::wstring& extension : entry.extensions) {
                extension = L"e" + io_random.Text(L"xyz.*", 4);
                filters_text += (&extension == entry.extensions.data() ? L"*." : L";*.") + extension;
            }
            filters_text += L"|";
        }
        const auto read = ParseFilterString(filters_text);
        ASSERT_EQ(read.size(), entries.size());
        for (std::size_t i = 0; i < read.size(); ++i) {
            EXPECT_EQ(read[i].text, entries[i].text);
            EXPECT_EQ(read[i].extensions, entries[i].extensions);
        }
    });
}

const Language lists = {{"\"a.pdf\" \"b.pdf\"", "\"one\"", "a.pdf", "  \"a b\"\"c d\"  "},
                        {"\"", "\"\"", " ", "  ", "ab", "\t", "\" \""}};

TEST(NamesFuzz, AQuotedListHasNamesWithoutQuotesAndBlanksAround) {
    ForTexts(lists, [](Random&, const std::wstring& i_input) {
        const auto names = ParseQuotedNames(i_input);
        EXPECT_EQ(
            names.has_value(), std::ranges::count(i_input, L'"') % 2 == 0 && [&] {
                bool is_inside = false;
                return std::ranges::all_of(i_input, [&](wchar_t i_unit) {
                    is_inside ^= i_unit == L'"';
                    return is_inside || i_unit == L'"' || i_unit == L' ';
                });
            }());
        if (!names)
            return;
        for (const std::wstring& name : *names) {
            EXPECT_GE(name.size(), 2u);
            EXPECT_EQ(name.find(L'"'), name.npos);
            EXPECT_TRUE(name.front() != L' ' && name.back() != L' ');
        }
    });
    ForChances([](Random& io_random) {
        std::vector<std::wstring> names(io_random.Below(6));
        std::wstring text;
        for (std::wstring& name : names) {
            name = L"n" + io_random.Text(L"ab. \u65E5", 8) + L"e";
            text +=
                std::wstring(io_random.Below(3), L' ') + L'"' + std::wstring(io_random.Below(2), L' ') + name + L'"';
        }
        EXPECT_EQ(ParseQuotedNames(text), names);
    });
}

const Language titles = {
    {"Report 2.pdf", "a.tar.gz", ".profile", "folder.x/name", "a.", "Chapter 10", "\xC3\x89tude 007"},
    {".", "..", "/", " ", "0", "9", "00000000000000000000000000001", "\xCC\x81", "a", "\\", ":", "\xE2\x80\x8B", "A",
     "\xC3\xA9"}};

TEST(NamesFuzz, AnExtensionIsTheEndOfTheName) {
    ForTexts(titles, [](Random& io_random, const std::wstring& i_input) {
        TRACE_FUNCTION();
        const auto extension = FindExtension(i_input);
        ASSERT_EQ(extension.has_value(), !i_input.empty());
        if (!extension)
            return;
        EXPECT_EQ(extension->data() + extension->size(), i_input.data() + i_input.size());
        EXPECT_TRUE(extension->empty() || extension->front() == L'.');
        EXPECT_EQ(extension->find(L'/'), extension->npos);
        const std::wstring added = L"e" + io_random.Text(L"xyz", 3);
        std::wstring name = i_input;
        ApplyDefaultExtension(name, added, trace_function.Name());
        EXPECT_TRUE(name.starts_with(i_input));
        const std::wstring once = name;
        if (once.find(L'\0') == once.npos && once.find(L' ') == once.npos) {
            ApplyDefaultExtension(name, added, trace_function.Name());
            EXPECT_EQ(name, once);
        }
    });
}

TEST(NamesFuzz, OnlyEqualTitlesStandAtOnePlace) {
    ForTexts(titles, [](Random& io_random, const std::wstring& i_input) {
        const std::wstring other = MutatedText(io_random, titles);
        EXPECT_EQ(NaturalSortKey(i_input) == NaturalSortKey(other), i_input == other);
    });
    ForChances([](Random& io_random) {
        const std::size_t low = io_random.Below(1'000'000);
        const std::size_t high = low + 1 + io_random.Below(1'000'000'000);
        const std::wstring zeros(io_random.Below(4), L'0');
        EXPECT_LT(NaturalSortKey(L"Part " + zeros + std::to_wstring(low) + L".pdf"),
                  NaturalSortKey(L"Part " + std::to_wstring(high) + L".pdf"));
    });
}

const Language locations = {
    {"dropbox://dbid:AA/Docs/a.pdf", "dropbox://", "/Docs", "Dropbox://x/y", "dropbox://dbid:AA"},
    {"/", "//", "dropbox://", ":", "dbid:AA", "\xC3\x9F", "\xC4\xB0"}};

TEST(NamesFuzz, ALocationIsItsParts) {
    ForTexts(locations, [](Random& io_random, const std::wstring& i_input) {
        const LocationParts parts = SplitLocation(i_input);
        const bool has_prefix = i_input.starts_with(location_prefix);
        EXPECT_EQ(
            (has_prefix ? std::wstring(location_prefix) : std::wstring()).append(parts.user_id).append(parts.path),
            i_input);
        EXPECT_EQ(parts.user_id.find(L'/'), parts.user_id.npos);
        EXPECT_TRUE(!has_prefix || parts.path.empty() || parts.path.front() == L'/');
        const std::wstring parent = io_random.OneIn(2) ? i_input.substr(0, io_random.Below(i_input.size() + 1))
                                                       : MutatedText(io_random, locations);
        const wchar_t* const rest = RestBehindParent(i_input, parent);
        if (i_input.starts_with(parent)) {
            ASSERT_NE(rest, nullptr);
        }
        if (rest != nullptr) {
            EXPECT_EQ(rest, i_input.c_str() + parent.size());
        }
    });
}

} // namespace
} // namespace Fuzz
