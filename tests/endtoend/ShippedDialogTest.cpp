#include "ShippedDialogTest.h"

#include "ShippedModule.h"

#include "commands/PluginDialog.h"
#include "script/WindowScript.h"

#include <future>
#include <memory>

namespace Tests {
namespace {

constexpr DWORD step_time_in_ms = 10'000;

std::wstring PathOf(const std::wstring& i_location) {
    constexpr std::wstring_view scheme = L"dropbox://";
    const size_t slash = i_location.find(L'/', scheme.size());
    return slash != std::wstring::npos ? i_location.substr(slash) : L"/";
}

int CountVisibleWindows() {
    int count = 0;
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND i_window, LPARAM i_count) -> BOOL {
            *reinterpret_cast<int*>(i_count) += IsWindowVisible(i_window) ? 1 : 0;
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&count));
    return count;
}

} // namespace

/// Continues with the next script after running something in between.
class ShippedDialogTest::ScriptChain {
public:
    ScriptChain(const std::filesystem::path& i_folder, const std::string& i_steps, std::deque<Sequel> i_sequels)
        : m_folder(i_folder), m_sequels(std::move(i_sequels)) {
        Begin(i_steps);
        running = this;
        m_timer = SetTimer(nullptr, 0, 10, [](HWND, UINT, UINT_PTR, DWORD) { running->GoOn(); });
    }
    ~ScriptChain() {
        KillTimer(nullptr, m_timer);
        EXPECT_FALSE(m_script->HasFailed());
        EXPECT_TRUE(m_script->IsDone());
        EXPECT_TRUE(m_sequels.empty()) << "the steps before it were never done";
    }

private:
    void Begin(const std::string& i_steps) {
        WriteBytes(m_folder / "steps", i_steps);
        m_script.emplace(m_folder / "steps", step_time_in_ms);
    }

    void GoOn() {
        if (m_sequels.empty() || !m_script->IsDone() || m_script->HasFailed())
            return;
        const Sequel sequel = std::move(m_sequels.front());
        m_sequels.pop_front();
        sequel.happens();
        Begin(sequel.steps);
    }

    static inline ScriptChain* running = nullptr;

    std::filesystem::path m_folder;
    std::optional<DevHost::WindowScript> m_script;
    std::deque<Sequel> m_sequels;
    UINT_PTR m_timer = 0;
};

ShippedDialogTest::ShippedDialogTest() {
    for (const wchar_t* file :
         {L"/start.pdf", L"/Documents/a.pdf", L"/Documents/b.pdf", L"/Documents/c.txt", L"/Documents/Inner/deep.pdf"})
        MakeFile(file);
    OleInitialize(nullptr);
    m_browser.emplace();
    DevHost::Options options;
    options.profile = m_profile.Path();
    options.module = ModulePath();
    m_shell.emplace(options, Qorv::Create<DevHost::CancelFlag>());
    const std::string token = Service::IssueToken();
    if (m_shell->Execute(DevHost::CommandLine({L"login", L"--token", {token.begin(), token.end()}})) != 0)
        throw std::runtime_error("the account cannot be saved");
    m_id = m_shell->Accounts().List().front().id;
}

ShippedDialogTest::~ShippedDialogTest() {
    EXPECT_EQ(0, CountVisibleWindows());
    EXPECT_EQ(0, Close()) << "objects of the module are left";
    m_shell.reset();
    m_browser.reset();
    OleUninitialize();
}

std::wstring ShippedDialogTest::Open(const DevHost::Arguments& i_arguments, const std::string& i_steps) {
    return Run(Qorv::AFS_Dlg_OpenFiles, i_arguments, i_steps);
}

std::wstring ShippedDialogTest::OpenFromWorker(const std::string& i_steps) {
    const ScriptChain scripts(m_profile.Path(), i_steps, {});
    m_shell->Locations().Find(L"/"); // The shell itself belongs to this thread.
    const std::unique_ptr<void, decltype(&CloseHandle)> done(CreateEventW(nullptr, TRUE, FALSE, nullptr), &CloseHandle);
    auto answer = std::async(std::launch::async, [&] {
        std::wstring text = Ask(Qorv::AFS_Dlg_OpenFiles, {});
        SetEvent(done.get());
        return text;
    });
    EXPECT_TRUE(m_shell->Plugin().Host().MainThread().WaitAndPump(done.get(), step_time_in_ms));
    return answer.get();
}

std::wstring ShippedDialogTest::Save(const DevHost::Arguments& i_arguments, const std::string& i_steps) {
    return Run(Qorv::AFS_Dlg_SaveFile, i_arguments, i_steps);
}

void ShippedDialogTest::Then(std::function<void()> i_happens, const std::string& i_steps) {
    m_sequels.push_back({std::move(i_happens), i_steps});
}

std::wstring ShippedDialogTest::Run(Qorv::AFS_DlgType i_type, const DevHost::Arguments& i_arguments,
                                    const std::string& i_steps) {
    const ScriptChain scripts(m_profile.Path(), i_steps, std::exchange(m_sequels, {}));
    return Ask(i_type, i_arguments);
}

std::wstring ShippedDialogTest::Ask(Qorv::AFS_DlgType i_type, const DevHost::Arguments& i_arguments) {
    DevHost::Arguments words = i_arguments;
    words.insert(words.begin(), L"open-dialog"); // Its options are those of both dialogs.
    const DevHost::CommandLine line(words);
    try {
        const auto answer = DevHost::ShowPluginDialog(
            *m_shell, line.Has("--folder") ? Qorv::AFS_Dlg_SelectFolder : i_type, DevHost::DialogOptions(line));
        m_filter_index = answer.filter_index;
        std::wstring paths;
        for (const std::wstring& location : answer.locations)
            paths += (paths.empty() ? L"" : L" ") + PathOf(location);
        return paths;
    } catch (const DevHost::Failure& failure) {
        return failure.Code() == Qorv::ErrorCanceled ? canceled : failure.Text();
    }
}

std::wstring ShippedDialogTest::SavedUsers() const {
    std::wstring names;
    for (const DevHost::SavedAccount& account : m_shell->Accounts().List())
        names += account.user_name + L";";
    return names;
}

int ShippedDialogTest::Close() {
    return m_shell->Finish(); // A second time it does nothing.
}

void ShippedDialogTest::MakeFile(const std::wstring& i_path) {
    const auto path = Service::LocalPath(i_path);
    std::filesystem::create_directories(path.parent_path());
    WriteBytes(path, "bytes");
}

bool ShippedDialogTest::Exists(const std::wstring& i_path) {
    return std::filesystem::exists(Service::LocalPath(i_path));
}

} // namespace Tests
