#include "afs/AfsTest.h"
#include "ui/AllocationCount.h"
#include "ui/WindowlessCombo.h"
#include "ui/names/FilesExtensionFilter.h"
#include "ui/names/TypedNames.h"

namespace {

constexpr wchar_t two_types[] = L"PDF files|*.pdf;*.fdf|Text files|*.txt|";

class FilesExtensionFilterTest : public Tests::AfsTest {
protected:
    Qorv::ComPtr<Tests::Combo> m_combo = Qorv::Create<Tests::Combo>();
    FilesExtensionFilter m_filter{m_file_system, m_combo};
};

TEST_F(FilesExtensionFilterTest, FillsTheCombo) {
    EXPECT_HRESULT(S_OK, m_filter.SetFilter(two_types));
    EXPECT_HRESULT(S_OK, m_filter.SetFilter(L"Text|*.txt|Any|*.*|")); // Instead of what was there.
    ASSERT_EQ(2U, m_combo->items.size());
    EXPECT_EQ(L"Text", m_combo->items[0].text);
    EXPECT_EQ(L"Text", m_combo->items[0].hint);
    EXPECT_EQ(L"Any", m_combo->items[1].text);
    EXPECT_EQ(0, m_combo->selected);
    EXPECT_HRESULT(S_OK, m_filter.SetFilter(L"nonsense"));
    EXPECT_TRUE(m_combo->items.empty());
    EXPECT_EQ(-1, m_combo->selected) << "nothing is selected in an empty combo";

    m_combo->capacity = 1;
    const Tests::LogCapture log;
    EXPECT_HRESULT(E_OUTOFMEMORY, m_filter.SetFilter(two_types));
    EXPECT_TRUE(log.Has("Expression: \"m_combo->InsertItem(-1, text, text, nullptr, "
                        "reinterpret_cast<Qorv::PARAM_T>(item.release()), 0)\" caused returning \""))
        << log.Messages();
}

TEST_F(FilesExtensionFilterTest, FreesWhatTheComboCarries) {
    constexpr long rounds = 100;
    const long before = Tests::LiveAllocations();
    for (long round = 0; round < rounds; ++round) {
        const auto combo = Qorv::Create<Tests::Combo>();
        FilesExtensionFilter filter(m_file_system, combo);
        EXPECT_HRESULT(S_OK, filter.SetFilter(two_types));
        combo->capacity = 1;
        EXPECT_HRESULT(E_OUTOFMEMORY, filter.SetFilter(two_types)); // The second list finds no item.
    }
    EXPECT_LT(Tests::LiveAllocations() - before, rounds);
}

TEST_F(FilesExtensionFilterTest, PassesNamesByTheLastElementsExtension) {
    const struct {
        const wchar_t* filters;
        const wchar_t* path;
        bool expected;
    } rows[] = {
        {L"", L"/a.xyz", true},
        {two_types, L"/a.pdf", true},
        {two_types, L"/a.FDF", true},
        {two_types, L"/a.txt", false},
        {two_types, L"/letter", false},
        {two_types, L"/a.", false},
        {two_types, L"/v.pdf/readme", false},
        {two_types, L"/pdf", false},
        {L"All files|*.*|", L"/letter", true},
        {L"None|;|", L"/a.pdf", false},
    };
    for (const auto& row : rows) {
        EXPECT_HRESULT(S_OK, m_filter.SetFilter(row.filters));
        EXPECT_EQ(row.expected, m_filter.IsValid(NameOf(row.path))) << ToUtf8(row.filters) << ToUtf8(row.path);
    }
    m_filter.SetFilter(two_types);
    EXPECT_FALSE(m_filter.IsValid(Qorv::Create<Tests::ForeignName>())) << "a name without a text";
    m_combo->selected = -1;
    EXPECT_TRUE(m_filter.IsValid(NameOf(L"/a.txt")));
    EXPECT_TRUE(NamesFilter().IsValid(nullptr));
}

TEST_F(FilesExtensionFilterTest, GivesTypedNamesTheirExtension) {
    const struct {
        const wchar_t* filters;
        const wchar_t* name;
        const wchar_t* default_ext;
        const wchar_t* expected;
        std::string line;
    } rows[] = {
        {two_types, L"", L"doc", L".pdf", "Name has no extension - adding first extension from filter 'pdf'"},
        {L"", L"", L"doc", L".doc", "Name has no extension, no filter extension found - adding default one 'doc'"},
        {L"A|*.*|", L"", L"doc", L".doc",
         "Name has no extension, no filter extension found - adding default one 'doc'"},
        {L"", L"", L"", L"", "Name has no extension, no filter extension found, no default extension - adding nothing"},
        {two_types, L"letter.PDF", L"", L"letter.PDF",
         "Name has extension, it's in current filter extensions - adding nothing"},
        {two_types, L"notes.txt", L"", L"notes.pdf",
         "Name has extension, it's in known filters list - change extension from 'txt' to first extension from filter "
         "'pdf'"},
        {two_types, L"notes.xyz", L"", L"notes.xyz.pdf",
         "Name has extension, it's not in known filter extensions - adding first extension from filter 'pdf'"},
        {two_types, L"letter", L"", L"letter.pdf",
         "Name has extension, it's not in known filter extensions - adding first extension from filter 'pdf'"},
        {two_types, L"letter.", L"", L"letter.pdf",
         "Name has extension, it's not in known filter extensions - adding first extension from filter 'pdf'"},
        {L"A|*.*|P|*.pdf|", L"letter", L"doc", L"letter",
         "Name has extension, no filter extension found - adding nothing"},
        {L"N|;|P|*.pdf|", L"a.pdf", L"doc", L"a.pdf", "Name has extension, no filter extension found - adding nothing"},
        {L"", L"letter", L"doc", L"letter", "Name has extension, no filter extension found - adding nothing"},
    };
    for (const auto& row : rows) {
        EXPECT_HRESULT(S_OK, m_filter.SetFilter(row.filters));
        const Tests::LogCapture log;
        std::wstring name = row.name;
        m_filter.AddFilterExtension(name, row.default_ext);
        EXPECT_EQ(row.expected, name);
        EXPECT_NE(log.Messages().find("FilesExtensionFilter::AddFilterExtension INFORMATION: " + row.line + "\n"),
                  std::string::npos)
            << log.Messages();
    }

    m_filter.SetFilter(two_types);
    m_combo->unreadable = 1;
    const Tests::LogCapture log;
    std::wstring name = L"notes.txt";
    m_filter.AddFilterExtension(name, L"");
    EXPECT_EQ(L"notes.txt.pdf", name);
    EXPECT_TRUE(log.Has("FilesExtensionFilter::AddFilterExtension WARNING: Failed to get 1-th filters list item - "
                        "skipping check\n"));
    m_combo->unreadable = -1; // What it carries is freed at the end.
}

TEST_F(FilesExtensionFilterTest, TypedNamesAreFoundByTitle) {
    Tests::WriteBytes(Tests::Service::LocalPath(L"/a.pdf"), "a");
    Tests::WriteBytes(Tests::Service::LocalPath(L"/b.pdf"), "b");
    Ui::FolderItems items;
    Qorv::ComPtr<Qorv::IAFS_EnumFolder> folder;
    ASSERT_HRESULT_SUCCEEDED(m_file_system->EnumFolder(m_root, nullptr, nullptr, &folder));
    for (Qorv::ComPtr<Qorv::IAFS_EnumFolderItem> item; folder->Next(&item) == S_OK;) {
        Qorv::ComPtr<Qorv::IAFS_Name> name;
        item->get_Name(&name);
        items.emplace(name, item);
    }
    const Qorv::ComPtr<Qorv::IAFS_Name> foreign = Qorv::Create<Tests::ForeignName>();
    items.emplace(foreign, nullptr); // Nothing is known about it.

    std::vector<Ui::TypedName> names{{L"B.PDF", {}, {}}, {L"b.pdf", {}, {}}, {L"new.pdf", {}, {}}};
    const Tests::LogCapture log;
    constexpr FunctionName caller("void Caller::Read()");
    Ui::MatchTypedNames(m_file_system, items, names, caller);
    ASSERT_NE(nullptr, names[0].name);
    EXPECT_EQ(Location(L"/b.pdf"), TextOf(names[0].name));
    EXPECT_EQ(items[names[0].name], names[0].item);
    EXPECT_EQ(nullptr, names[1].name) << "an item stands for one typed name only";
    EXPECT_EQ(nullptr, names[2].item);
    EXPECT_TRUE(log.Has("ERROR: get_Title failed for '' with result -2147024809\n")) << log.Messages();
}

} // namespace
