#pragma once

#include "browser/BrowserRegistration.h"
#include "commands/Shell.h"
#include "support/DevService.h"
#include "support/TemporaryFolder.h"

#include <deque>
#include <functional>
#include <optional>
#include <string>

namespace Tests {

inline constexpr wchar_t canceled[] = L"canceled";

/// The dialogs of the shipped module as `qorvhost` shows them, used by window scripts, over some files of the service
/// that a test can read. The scripts' lines may be indented.
///
/// Afterwards no window is left, and no object of the module.
class ShippedDialogTest : public ServiceTest {
protected:
    ShippedDialogTest();
    ~ShippedDialogTest() override;

    /// How the dialog ended: the chosen paths, separated by spaces, or `canceled`, or the failure.
    std::wstring Open(const DevHost::Arguments& i_arguments, const std::string& i_steps);
    /// The same for a caller on another thread, to the first account's root.
    std::wstring OpenFromWorker(const std::string& i_steps);
    std::wstring Save(const DevHost::Arguments& i_arguments, const std::string& i_steps);

    /// Runs something when the steps are done, then continues with others.
    void Then(std::function<void()> i_happens, const std::string& i_steps);

    /// Ends the host, and returns the exit code of `qorvhost`; 0 the second time.
    int Close();

    /// Creates a file in the account, and its folders.
    static void MakeFile(const std::wstring& i_path);
    static bool Exists(const std::wstring& i_path);

    /// The account's id, as locations have it.
    const std::wstring& Id() const { return m_id; }
    /// The names of the accounts that the host has saved, each with a semicolon.
    std::wstring SavedUsers() const;
    LONG FilterIndex() const { return m_filter_index; }

private:
    struct Sequel {
        std::function<void()> happens;
        std::string steps;
    };
    class ScriptChain;

    std::wstring Run(Qorv::AFS_DlgType i_type, const DevHost::Arguments& i_arguments, const std::string& i_steps);
    std::wstring Ask(Qorv::AFS_DlgType i_type, const DevHost::Arguments& i_arguments);

    TemporaryFolder m_profile;
    std::optional<DevHost::BrowserRegistration> m_browser;
    std::optional<DevHost::Shell> m_shell;
    std::wstring m_id;
    std::deque<Sequel> m_sequels;
    LONG m_filter_index = -1;
};

} // namespace Tests
