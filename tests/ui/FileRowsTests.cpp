#include "ui/list/FileRows.h"

#include "core/trace/Text.h"
#include "devhost/UnusedInterfaces.h"
#include "qorv/Values.h"
#include "support/LiveObjectsTest.h"
#include "support/Log.h"

#include <algorithm>
#include <functional>

namespace {

/// An item in a folder: its name, and what is known about it.
struct Item {
    std::wstring title;
    bool is_folder = false;
    ULONGLONG size = 0;
    ULONGLONG modified = 0;
};

/// The calls that a test can make fail.
enum class Call { none, information, title, attributes, size, modified };

class ItemName final : public Qorv::CoClass<ItemName, Qorv::IAFS_Name, Qorv::IAFS_FileInfo> {
public:
    explicit ItemName(Item i_item, Call i_failing = Call::none) : item(std::move(i_item)), failing(i_failing) {}

    HRESULT STDMETHODCALLTYPE get_FileSys(Qorv::IAFS_FileSys**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Title(BSTR* out_title) noexcept override {
        *out_title = Qorv::Bstr(item.title).Detach();
        return ResultOf(Call::title);
    }
    HRESULT STDMETHODCALLTYPE get_Attributes(ULONG* out_attributes) noexcept override {
        *out_attributes = item.is_folder ? Qorv::AFS_Attribute_Folder : 0UL;
        return ResultOf(Call::attributes);
    }
    HRESULT STDMETHODCALLTYPE get_Size(ULONGLONG* out_size) noexcept override {
        *out_size = item.size;
        return item.is_folder ? E_INVALIDARG : ResultOf(Call::size); // As the plug-in's own answers for a folder.
    }
    HRESULT STDMETHODCALLTYPE get_CreationTime(ULONGLONG*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_LastWriteTime(ULONGLONG* out_time) noexcept override {
        *out_time = item.modified;
        return ResultOf(Call::modified);
    }
    HRESULT STDMETHODCALLTYPE get_LastAccessTime(ULONGLONG*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Prop(Qorv::PCStr, VARIANT*) noexcept override { return E_NOTIMPL; }

    const Item item;
    const Call failing;

private:
    HRESULT ResultOf(Call i_call) const noexcept { return failing == i_call ? E_ACCESSDENIED : S_OK; }
};

class ItemFileSystem final : public Tests::UnusedFileSystem<ItemFileSystem> {
public:
    using UnusedFileSystem::EnumFolder;
    HRESULT STDMETHODCALLTYPE GetFileInfo(Name* name, Details*, Cancel*,
                                          Qorv::IAFS_FileInfo** out_info) noexcept override {
        const Qorv::ComPtr<ItemName> item_name = static_cast<ItemName*>(name);
        if (item_name->failing == Call::information)
            return E_ACCESSDENIED;
        *out_info = Qorv::ComPtr<ItemName>(item_name).Detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE NameToString(Name* name, ULONG, Name*, BSTR* out_name) noexcept override {
        *out_name = Qorv::Bstr(L"/" + static_cast<ItemName*>(name)->item.title).Detach();
        return S_OK;
    }
};

class EnumItem final : public Qorv::CoClass<EnumItem, Qorv::IAFS_EnumFolderItem> {
public:
    HRESULT STDMETHODCALLTYPE get_Name(Qorv::IAFS_Name**) noexcept override { return E_NOTIMPL; }
};

/// Passes names whose title meets a condition, and records the requests.
class TitleFilter final : public NamesFilter {
public:
    explicit TitleFilter(std::function<bool(const std::wstring&)> i_passes) : passes(std::move(i_passes)) {}
    bool IsValid(Qorv::IAFS_Name* i_name) override {
        asked.push_back(static_cast<ItemName*>(i_name)->item.title);
        return passes(asked.back());
    }

    std::function<bool(const std::wstring&)> passes;
    std::vector<std::wstring> asked;
};

class FileRowsTest : public Tests::LiveObjectsTest {
protected:
    void Add(Item i_item, Call i_failing = Call::none) {
        m_items[Qorv::Create<ItemName>(std::move(i_item), i_failing)] = Qorv::Create<EnumItem>();
    }
    void AddFiles(std::initializer_list<const wchar_t*> i_titles) {
        for (const wchar_t* const title : i_titles)
            Add({title});
    }
    void Load(Qorv::IAFS_Name* i_parent_folder = nullptr) { m_rows.Load(m_file_system, m_items, i_parent_folder); }

    /// The titles of the shown rows: "../|Docs|a.pdf".
    std::wstring Shown() const {
        std::wstring text;
        for (std::size_t i = 0; i < m_rows.size(); ++i)
            text += (i == 0 ? L"" : L"|") + m_rows[i].title;
        return text;
    }

    void TearDown() override {
        m_rows.Clear();
        m_items.clear();
        m_parent.Reset();
        m_file_system.Reset();
        LiveObjectsTest::TearDown();
    }

    Qorv::ComPtr<ItemFileSystem> m_file_system = Qorv::Create<ItemFileSystem>();
    Qorv::ComPtr<Qorv::IAFS_Name> m_parent = Qorv::Create<ItemName>(Item{L"Zoo", true, 99, 99});
    Ui::FolderItems m_items;
    Ui::FileRows m_rows;
};

TEST_F(FileRowsTest, HoldWhatIsKnownOfEachItem) {
    Add({L"Docs.old", true, 0, 0});
    Add({L"letter.pdf", false, 1234, 5678});
    Load(m_parent);
    ASSERT_EQ(L"../|Docs.old|letter.pdf", Shown());
    EXPECT_TRUE(m_rows[0].is_parent);
    EXPECT_TRUE(m_rows[0].is_folder);
    EXPECT_EQ(m_parent, m_rows[0].name);
    EXPECT_EQ(nullptr, m_rows[0].item);
    EXPECT_EQ(0U, m_rows[0].size);
    EXPECT_TRUE(m_rows[1].is_folder);
    EXPECT_FALSE(m_rows[1].is_parent);
    EXPECT_EQ(L"", m_rows[1].extension) << "a folder has none";
    EXPECT_FALSE(m_rows[2].is_folder);
    EXPECT_EQ(L"PDF", m_rows[2].extension);
    EXPECT_EQ(1234U, m_rows[2].size);
    EXPECT_EQ(5678U, m_rows[2].modified);
    for (const std::size_t row : {1U, 2U}) {
        EXPECT_EQ(m_rows[row].title, static_cast<ItemName*>(m_rows[row].name.Get())->item.title);
        EXPECT_EQ(m_items[m_rows[row].name], m_rows[row].item);
    }

    m_items.clear();
    Add({L"other"});
    Load();
    EXPECT_EQ(L"other", Shown()) << "instead of what was there, and without a parent";
    m_rows.Clear();
    EXPECT_EQ(0U, m_rows.size());
    EXPECT_EQ(std::nullopt, m_rows.FindPrefix(L"o", 0));
}

TEST_F(FileRowsTest, StandInOrderWithFoldersFirst) {
    Add({L"B", true});
    Add({L"a10", true});
    Add({L"a2", true});
    Add({L"page 10.pdf", false, 5, 300});
    Add({L"Page 2.PDF", false, 5, 100});
    Add({L"letter", false, 70'000'000'000, 200});
    Add({L"a.txt", false, 0, 100});
    Add({L"zip.7z", false, 6, 0});
    Load(m_parent);
    const struct {
        Ui::FileColumn column;
        bool is_descending;
        const wchar_t* expected;
    } rows[] = {
        {Ui::FileColumn::name, false, L"../|a2|a10|B|a.txt|letter|Page 2.PDF|page 10.pdf|zip.7z"},
        {Ui::FileColumn::name, true, L"../|B|a10|a2|zip.7z|page 10.pdf|Page 2.PDF|letter|a.txt"},
        {Ui::FileColumn::size, false, L"../|a2|a10|B|a.txt|Page 2.PDF|page 10.pdf|zip.7z|letter"},
        {Ui::FileColumn::size, true, L"../|a2|a10|B|letter|zip.7z|Page 2.PDF|page 10.pdf|a.txt"},
        {Ui::FileColumn::kind, false, L"../|a2|a10|B|letter|zip.7z|Page 2.PDF|page 10.pdf|a.txt"},
        {Ui::FileColumn::kind, true, L"../|a2|a10|B|a.txt|Page 2.PDF|page 10.pdf|zip.7z|letter"},
        {Ui::FileColumn::date, false, L"../|a2|a10|B|zip.7z|a.txt|Page 2.PDF|letter|page 10.pdf"},
        {Ui::FileColumn::date, true, L"../|a2|a10|B|page 10.pdf|letter|a.txt|Page 2.PDF|zip.7z"},
    };
    for (const auto& row : rows) {
        m_rows.SortBy(row.column, row.is_descending);
        EXPECT_EQ(row.expected, Shown()) << static_cast<LONG>(row.column) << row.is_descending;
        Load(m_parent);
        EXPECT_EQ(row.expected, Shown()) << "the order stays, " << static_cast<LONG>(row.column) << row.is_descending;
    }
}

TEST_F(FileRowsTest, AreFilteredButForFolders) {
    Add({L"Docs", true});
    AddFiles({L"b.pdf", L"a.txt", L"a.pdf"});
    const auto filter =
        std::make_shared<TitleFilter>([](const std::wstring& i_title) { return i_title.ends_with(L".pdf"); });
    m_rows.SortBy(Ui::FileColumn::name, true);
    m_rows.SetFilter(filter, false);
    Load(m_parent);
    EXPECT_EQ(L"../|Docs|b.pdf|a.pdf", Shown());
    std::ranges::sort(filter->asked);
    EXPECT_EQ((std::vector<std::wstring>{L"a.pdf", L"a.txt", L"b.pdf"}), filter->asked) << "once for each file";

    filter->passes = [](const std::wstring&) { return false; };
    m_rows.SetFilter(filter, false);
    EXPECT_EQ(L"../|Docs", Shown());
    EXPECT_EQ(std::nullopt, m_rows.FindTitle(L"a.pdf")) << "it is not shown";
    m_rows.SetFilter(nullptr, false);
    EXPECT_EQ(L"../|Docs|b.pdf|a.txt|a.pdf", Shown());
    EXPECT_EQ(1, filter.use_count()) << "the rows let go of it";
    m_rows.SetFilter(nullptr, true);
    EXPECT_EQ(L"../|Docs", Shown());
    m_rows.SetFilter(filter, true);
    EXPECT_EQ(L"../|Docs", Shown());
}

TEST_F(FileRowsTest, LeaveOutWhatCannotBeRead) {
    for (const Call failing : {Call::information, Call::title, Call::attributes, Call::size, Call::modified}) {
        m_items.clear();
        AddFiles({L"a", L"c"});
        Add({L"b"}, failing);
        const Tests::LogCapture log;
        Load();
        EXPECT_EQ(L"a|c", Shown()) << static_cast<int>(failing);
        EXPECT_TRUE(log.Has("FileRows::Load ERROR: reading the information of '/b' failed with result -2147024891 - "
                            "leaving it out\n"))
            << log.Messages();
    }
}

TEST_F(FileRowsTest, AreFoundByTheBeginningOfTheirTitle) {
    AddFiles({L"alpha", L"Beta", L"bETA 2", L"gamma", L"élan"});
    Load(m_parent); // "../" is row 0.
    ASSERT_EQ(L"../|alpha|Beta|bETA 2|élan|gamma", Shown());
    const struct {
        const wchar_t* prefix;
        std::size_t first_row;
        std::optional<std::size_t> expected;
    } rows[] = {
        {L"b", 0, 2U},        {L"B", 3, 3U}, {L"BETA", 4, 2U}, // Round the end,
        {L"beta", 6, 2U},                                      // also from behind it.
        {L"alpha", 1, 1U},                                     // The row that the search begins with counts,
        {L"alpha", 2, 1U},                                     // and is the last one looked at.
        {L"alphabet", 0, {}}, {L"É", 0, 4U}, {L".", 0, {}},    {L"../", 0, {}}, {L"", 0, {}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.expected, m_rows.FindPrefix(row.prefix, row.first_row)) << ToUtf8(row.prefix) << row.first_row;
}

TEST_F(FileRowsTest, AreFoundByTheirWholeTitle) {
    // To the platform's comparison "ss" and "ß" are the same.
    AddFiles({L"alpha", L"Strasse", L"straße", L"Fuß"});
    Load(m_parent);
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        {L"alpha", L"alpha"}, {L"ALPHA", L"alpha"}, {L"alp", L""},    {L"Strasse", L"Strasse"}, {L"straße", L"straße"},
        {L"../", L""},        {L"", L""},           {L"FUß", L"Fuß"}, {L"Fuss", L""},
    };
    for (const auto& [title, expected] : rows) {
        const auto found = m_rows.FindTitle(title);
        EXPECT_EQ(expected, found ? m_rows[*found].title : L"") << ToUtf8(title);
    }
}

} // namespace
