// Navigating folders, with a view that records what it is told: no window, no service.

#include "core/trace/Text.h"
#include "devhost/UnusedInterfaces.h"
#include "qorv/Values.h"
#include "support/LiveObjectsTest.h"
#include "ui/dialog/FolderTrail.h"

#include <deque>
#include <sstream>

namespace {

using Qorv::ComPtr;
using Qorv::IAFS_Name;

class PathName final : public Qorv::CoClass<PathName, IAFS_Name> {
public:
    explicit PathName(std::wstring i_path) : path(std::move(i_path)) {}
    HRESULT STDMETHODCALLTYPE get_FileSys(Qorv::IAFS_FileSys**) noexcept override { return E_NOTIMPL; }
    const std::wstring path; ///< Empty for the root.
};

const std::wstring& PathOf(IAFS_Name* i_name) {
    return static_cast<PathName*>(i_name)->path;
}

/// Paths are equal where only their case differs.
class PathFileSystem final : public Tests::UnusedFileSystem<PathFileSystem> {
public:
    HRESULT STDMETHODCALLTYPE NameToString(Name* i_name, ULONG, Name*, BSTR* o_text) noexcept override {
        *o_text = Qorv::Bstr(PathOf(i_name)).Detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE NameGetParent(Name* i_name, Name** o_parent) noexcept override {
        const std::wstring& path = PathOf(i_name);
        *o_parent = path.empty() ? nullptr : Qorv::Create<PathName>(path.substr(0, path.rfind(L'/'))).Detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE NamesAreEqual(Name* i_left, Name* i_right, VARIANT_BOOL* o_are_equal) noexcept override {
        *o_are_equal = EqualsNoCase(PathOf(i_left), PathOf(i_right)) ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
    }
};

/// Loads what a test wants, when it wants. A path with a dot names a file.
class ScriptedSource final : public Ui::FolderSource {
public:
    explicit ScriptedSource(ComPtr<PathFileSystem> i_file_system) : m_file_system(std::move(i_file_system)) {}

    HRESULT Show(IAFS_Name* i_name) override {
        if (std::exchange(fails_at_once, false))
            return E_FAIL;
        if (m_folder != nullptr && EqualsNoCase(PathOf(m_folder), PathOf(i_name)))
            return S_FALSE;
        m_folder = i_name;
        return Reload();
    }
    HRESULT Reload() override {
        m_is_loading = true;
        return S_OK;
    }
    bool IsLoading() const noexcept override { return m_is_loading; }
    std::optional<HRESULT> TakeResult(WPARAM i_load) noexcept override {
        if (!std::exchange(m_is_loading, false))
            return std::nullopt;
        const auto result = static_cast<HRESULT>(i_load);
        if (SUCCEEDED(result) && PathOf(m_folder).find(L'.') != std::wstring::npos)
            m_folder = ParentOf(m_folder);
        m_parent = ParentOf(m_folder);
        return result;
    }
    std::optional<HRESULT> TakeUntoldResult() noexcept override {
        return untold_result ? TakeResult(static_cast<DWORD>(*std::exchange(untold_result, std::nullopt)))
                             : std::nullopt;
    }
    IAFS_Name* GetFolder() const noexcept override { return m_folder; }
    IAFS_Name* GetParentFolder() const noexcept override { return m_parent; }
    const Ui::FolderItems& GetItems() const noexcept override { return m_items; }
    const FailureReason& GetFailureReason() const noexcept override { return m_reason; }

    bool fails_at_once = false;
    std::optional<HRESULT> untold_result;

private:
    ComPtr<IAFS_Name> ParentOf(IAFS_Name* i_name) const {
        ComPtr<IAFS_Name> parent;
        m_file_system->NameGetParent(i_name, &parent);
        return parent;
    }

    ComPtr<PathFileSystem> m_file_system;
    ComPtr<IAFS_Name> m_folder, m_parent;
    bool m_is_loading = false;
    Ui::FolderItems m_items;
    FailureReason m_reason;
};

class FolderTrailTest : public Tests::LiveObjectsTest, private Ui::FolderView {
protected:
    void TearDown() override {
        m_last_parent.Reset();
        m_last_origin.Reset();
        m_file_system.Reset();
        LiveObjectsTest::TearDown();
    }

    /// Walks the steps, and answers what the view was told of them:
    ///   go, type, new PATH   show it; as a location that was typed; as one that may be a new file's
    ///   start PATH           begin there, in another account
    ///   up, again, made T    the folder above; load again; load again to select a title
    ///   ok, gone, bad        how the load ends
    ///   check, lost          a look at the load, which runs; which has failed untold
    ///   odd                  the next request fails at once
    ///   try, sign-in, quit   the answer to the next question; without one the user gives up; `quit` closes the dialog,
    ///                        and whatever it answers must not matter any more
    std::string Walk(const std::string& i_steps) {
        m_told.clear();
        m_file_system = Qorv::Create<PathFileSystem>();
        auto source = std::make_unique<ScriptedSource>(m_file_system);
        m_source = source.get();
        Ui::FolderTrail trail(m_file_system, *this);
        m_trail = &trail;
        trail.Connect(std::move(source), nullptr);
        std::istringstream words(i_steps);
        for (std::string word; words >> word;)
            Step(word, words);
        const std::wstring place = trail.GetFolder() != nullptr ? PathOf(trail.GetFolder()) : L"-";
        m_last_parent = trail.GetParentFolder();
        m_last_origin = trail.GetOrigin();
        Tell(trail.IsShown() ? L"| at " : trail.IsLoading() ? L"| to " : L"| not at ", place);
        return m_told;
    }

    ComPtr<IAFS_Name> m_last_parent, m_last_origin;

private:
    void Step(const std::string& i_word, std::istringstream& io_words) {
        const auto argument = [&io_words] {
            std::string text;
            io_words >> text;
            return std::wstring(text.begin(), text.end());
        };
        const auto name = [&] {
            const std::wstring path = argument();
            return Qorv::Create<PathName>(path == L"/" ? std::wstring() : path);
        };
        if (i_word == "go") {
            m_trail->Show(name(), {});
        } else if (i_word == "type" || i_word == "new") {
            const auto target = name();
            m_trail->Show(target, {.selected_title = {}, .target = target, .may_be_new = i_word == "new"});
        } else if (i_word == "start") {
            auto source = std::make_unique<ScriptedSource>(m_file_system);
            m_source = source.get();
            m_trail->Connect(std::move(source), name());
        } else if (i_word == "up") {
            m_trail->ShowParent();
        } else if (i_word == "again") {
            m_trail->Reload();
        } else if (i_word == "made") {
            m_trail->Reload({.selected_title = argument(), .is_selection_chosen = true});
        } else if (i_word == "ok" || i_word == "gone" || i_word == "bad") {
            const HRESULT result = i_word == "ok" ? S_OK : i_word == "gone" ? E_INVALIDARG : E_FAIL;
            m_trail->OnLoadEnded(static_cast<DWORD>(result));
        } else if (i_word == "check" || i_word == "lost") {
            if (i_word == "lost")
                m_source->untold_result = E_UNEXPECTED;
            m_trail->CheckLoad();
        } else if (i_word == "odd") {
            m_source->fails_at_once = true;
        } else {
            m_answers.push_back(i_word);
        }
    }

    void Tell(const std::wstring& i_what, const std::wstring& i_argument = {}) {
        m_told += (m_told.empty() ? "" : " ") + ToUtf8(i_what + i_argument);
    }

    void ShowPath(IAFS_Name* i_folder) override { Tell(L"<", PathOf(i_folder) + L">"); }
    void OnLoadBegun(bool i_is_reload) override { Tell(i_is_reload ? L"reloads" : L"loads"); }
    void OnFolderShown() override { Tell(L"shows"); }
    void OnLoadGivenUp() override { Tell(L"returns"); }
    void OnLoadFailed(const Ui::Failure&) override { Tell(L"fails"); }
    Ui::FailureAnswer AskAfterLoadFailure(IAFS_Name* i_folder, const Ui::Failure&) override {
        Tell(L"asks:", PathOf(i_folder));
        if (m_answers.empty())
            return Ui::FailureAnswer::give_up;
        const std::string answer = m_answers.front();
        m_answers.pop_front();
        if (answer == "quit")
            m_trail->Disconnect();
        return answer == "try"       ? Ui::FailureAnswer::try_again
               : answer == "sign-in" ? Ui::FailureAnswer::sign_in
               : answer == "quit"    ? Ui::FailureAnswer::sign_in
                                     : Ui::FailureAnswer::give_up;
    }
    void SignInAgain(IAFS_Name* i_folder) override { Tell(L"signs-in:", PathOf(i_folder)); }
    void SelectItem(const std::wstring& i_title, bool i_is_chosen) override {
        Tell(i_is_chosen ? L"chooses:" : L"selects:", i_title);
    }
    void OnTypedFolderReached() override { Tell(L"typed-folder"); }
    void OnTypedFileReached(const std::wstring& i_title) override { Tell(L"typed-file:", i_title); }
    void OnStartFileReached(const std::wstring& i_title) override { Tell(L"start-file:", i_title); }
    void OnStartFolderGone(IAFS_Name* i_folder) override { Tell(L"gone:", PathOf(i_folder)); }

    ComPtr<PathFileSystem> m_file_system;
    ScriptedSource* m_source = nullptr;
    Ui::FolderTrail* m_trail = nullptr;
    std::deque<std::string> m_answers;
    std::string m_told;
};

TEST_F(FolderTrailTest, LeadsThroughTheFolders) {
    const struct {
        const char* what;
        const char* steps;
        const char* told;
    } rows[] = {
        {"nowhere so far", "up again", "| not at -"},
        {"a folder", "go /a ok", "</a> loads shows </a> | at /a"},
        {"a file's folder", "go /a/x.pdf ok", "</a/x.pdf> loads shows </a> | at /a"},
        {"one thing at a time", "go /a go /b up again", "</a> loads | to /a"},
        {"a load is told of once", "go /a ok ok bad", "</a> loads shows </a> | at /a"},
        {"up, to where one came from", "go /a/b ok up ok",
         "</a/b> loads shows </a/b> </a> loads shows </a> selects:b | at /a"},
        {"not above the root", "go / ok up", "<> loads shows <> | at "},
        {"again", "go /a ok again ok", "</a> loads shows </a> </a> reloads shows </a> | at /a"},
        {"again, with what was made", "go /a ok made N ok",
         "</a> loads shows </a> </a> reloads shows </a> chooses:N | at /a"},
        {"where one is already", "go /a ok go /A", "</a> loads shows </a> </A> </a> | at /a"},
        {"a typed folder", "go / ok type /a ok", "<> loads shows <> </a> loads shows </a> typed-folder | at /a"},
        {"a typed folder where one is", "go /a ok type /A", "</a> loads shows </a> </A> </a> typed-folder | at /a"},
        {"a typed file", "go / ok type /a/x.pdf ok",
         "<> loads shows <> </a/x.pdf> loads shows </a> typed-file:x.pdf | at /a"},
        {"a new file", "go / ok new /a/New gone ok",
         "<> loads shows <> </a/New> loads </a> loads shows </a> typed-file:New | at /a"},
        {"a new name is an existing folder's", "go / ok new /a ok",
         "<> loads shows <> </a> loads shows </a> typed-folder | at /a"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.told, Walk(row.steps)) << row.what;
}

TEST_F(FolderTrailTest, ComesBackFromAFailure) {
    const std::string a = "</a> loads shows </a> ", b_fails = "</b> loads fails asks:/b ";
    const std::string not_to_b = "</b> loads </a> returns asks:/b ";
    const struct {
        const char* what;
        const char* steps;
        std::string told;
    } rows[] = {
        {"to the folder before", "go /a ok go /b bad bad", a + not_to_b + "| at /a"},
        {"nowhere, when there was none", "go /b bad", b_fails + "| not at /b"},
        {"the next failure is asked about again", "go /a ok go /b bad go /c bad",
         a + not_to_b + "</c> loads </a> returns asks:/c | at /a"},
        {"the folder itself fails to reload", "go /a ok again bad again ok",
         a + "</a> reloads </a> returns asks:/a </a> reloads shows </a> | at /a"},
        {"the folder before can be loaded again", "go /a ok go /b bad again ok",
         a + not_to_b + "</a> reloads shows </a> | at /a"},
        {"and so can the one above it", "go /a/b ok go /c bad up ok",
         "</a/b> loads shows </a/b> </c> loads </a/b> returns asks:/c </a> loads shows </a> selects:b | at /a"},
        {"tried again", "go /a ok go /b try bad ok", a + not_to_b + "</b> loads shows </b> | at /b"},
        {"tried again, and the typed file is still meant", "type /b/x.pdf try bad ok",
         "</b/x.pdf> loads fails asks:/b/x.pdf </b/x.pdf> loads shows </b> typed-file:x.pdf | at /b"},
        {"given up, and the typed file is not meant any more", "type /b/x.pdf bad again ok",
         "</b/x.pdf> loads fails asks:/b/x.pdf </b/x.pdf> loads shows </b> | at /b"},
        {"another way to a folder that failed", "go /b bad go /B ok", b_fails + "</B> loads shows </b> | at /b"},
        {"a new sign-in", "go /a ok go /b sign-in bad", a + not_to_b + "signs-in:/b | at /a"},
        {"closed together with the question", "go /a ok go /b quit bad again", a + not_to_b + "| not at /a"},
        {"a file that is gone, and was never new", "go / ok type /a/x.pdf gone",
         "<> loads shows <> </a/x.pdf> loads <> returns asks:/a/x.pdf | at "},
        {"a new file whose folder is gone too", "go / ok new /b/N gone gone",
         "<> loads shows <> </b/N> loads </b> loads <> returns asks:/b | at "},
        {"a new file, and no connection", "go / ok new /b/N bad",
         "<> loads shows <> </b/N> loads <> returns asks:/b/N | at "},
        {"a load whose end is never told", "go /a ok go /b check lost check", a + not_to_b + "| at /a"},
        {"a load that cannot even begin", "go /a ok odd go /b", a + "</b> </a> returns asks:/b | at /a"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.told, Walk(row.steps)) << row.what;
}

TEST_F(FolderTrailTest, BeginsAsNearAsItCan) {
    const struct {
        const char* what;
        const char* steps;
        const char* told;
    } rows[] = {
        {"in a folder", "start /a ok", "</a> loads shows </a> | at /a"},
        {"at a file", "start /a/x.pdf ok", "</a/x.pdf> loads shows </a> start-file:x.pdf | at /a"},
        {"above a folder that is gone", "start /a/b gone ok", "</a/b> loads </a> loads shows </a> gone:/a/b | at /a"},
        {"far above it", "start /a/b gone gone ok", "</a/b> loads </a> loads <> loads shows <> gone:/a/b | at "},
        {"not above the root", "start / gone", "<> loads fails asks: | not at "},
        {"not above a folder that may exist", "start /a bad", "</a> loads fails asks:/a | not at /a"},
        {"at a file, tried again", "start /a/x.pdf try bad ok",
         "</a/x.pdf> loads fails asks:/a/x.pdf </a/x.pdf> loads shows </a> start-file:x.pdf | at /a"},
        {"only at the start", "start /a ok go /b gone",
         "</a> loads shows </a> </b> loads </a> returns asks:/b | at /a"},
        {"anew", "start /a ok start /b bad", "</a> loads shows </a> </b> loads fails asks:/b | not at /b"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.told, Walk(row.steps)) << row.what;
}

TEST_F(FolderTrailTest, KnowsWhereItIs) {
    const struct {
        const char* steps;
        const wchar_t* parent;
        const wchar_t* origin; ///< Of typed locations.
    } rows[] = {
        {"go /a/b ok", L"/a", L"/a/b"},
        {"go /a/b", L"/a", L""},
        {"go /a/b bad", L"/a", L""},
        {"go /c/d ok go /a/b", L"/a", L"/c/d"},
        {"go /c/d ok go /a/b sign-in bad", L"/c", L"/c/d"},
        {"go /c/d ok go /a/b quit bad", L"/c", L"/c/d"},
    };
    for (const auto& row : rows) {
        Walk(row.steps);
        ASSERT_NE(nullptr, m_last_origin) << row.steps;
        EXPECT_EQ(row.parent, PathOf(m_last_parent)) << row.steps;
        EXPECT_EQ(row.origin, PathOf(m_last_origin)) << row.steps;
    }
    Walk("");
    EXPECT_EQ(nullptr, m_last_parent);
    EXPECT_EQ(nullptr, m_last_origin);
}

} // namespace
