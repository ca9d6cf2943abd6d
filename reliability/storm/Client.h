#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Dice.h"
#include "FaultProxy.h"
#include "Folder.h"
#include "HostProcess.h"
#include "KeptBytes.h"
#include "SharedFile.h"

namespace Storm {

/// What a client did and encountered, for the table at the end.
struct ClientFigures {
    std::uint64_t commands = 0;
    std::uint64_t failures = 0;
    std::uint64_t uploads = 0;      ///< begun
    std::uint64_t downloads = 0;    ///< complete, each compared with the service's file
    std::uint64_t lost_commits = 0; ///< commands that failed although the service did what they asked for
    std::uint64_t kills = 0;
    std::uint64_t processes = 0;
    std::chrono::milliseconds slowest{0};
    std::string memory; ///< of the last lasting process: at its first and at its last batch
};

/// One person at work: a host with the module, its own folder in the account, and a file shared with others. Runs
/// random commands, and knows after each one what the service must hold. Every method throws RuleBroken at the first
/// broken rule.
class Client {
public:
    struct Setting {
        std::string name;                ///< and the name of its folder in the account
        std::filesystem::path account;   ///< the service's folder of the account
        std::filesystem::path workplace; ///< its own: profile, local files, the transcript
        std::string token;
        Programs programs;
    };

    Client(Setting i_setting, FaultProxy& io_proxy, SharedFile& io_shared);

    /// Saves the account in the client's profile.
    void SignIn();
    /// Starts with an empty folder and new random numbers.
    /// @param i_uses_lasting_host one process for all commands, otherwise one process per command
    void Begin(std::uint64_t i_seed, bool i_uses_lasting_host);
    /// Runs the batch's commands in the storm.
    void Work();
    /// After the storm: everything works again, and everything is as it should be.
    void CheckCalm();
    /// Ends the process.
    void End();

    const ClientFigures& Figures() const { return m_figures; }
    const KeptBytes& Kept() const { return m_kept; }

    static constexpr const char* shared_path = "Both/Minutes.txt";

private:
    using Trees = std::vector<Tree>;

    void Step();
    void Save();
    void SaveAndDie();
    void Edit();
    void Get();
    void ShowItem();
    void List(bool i_all);
    void Remove();
    void MakeFolder();
    void Relocate();
    void SaveShared();
    void GetShared();

    Answer Run(const std::string& i_command);
    void Note(const std::string& i_text);
    /// Compares the folder with what the command may have made of it. @param i_done the folder if the command
    /// succeeded; none if it cannot succeed
    void Expect(const Answer& i_answer, const std::optional<Tree>& i_done, const Trees& i_failed);
    void CheckFigures();
    Host& TheHost();

    std::string PickPath();
    std::optional<std::string> PickFile();
    Content NewContent();
    std::string Location(const std::string& i_path) const { return "\"/" + m_setting.name + "/" + i_path + "\""; }
    std::filesystem::path Folder() const { return m_setting.account / m_setting.name; }
    std::filesystem::path NewLocalFile();
    Tree With(const std::string& i_path, Content i_content) const;

    Setting m_setting;
    FaultProxy& m_proxy;
    SharedFile& m_shared;
    KeptBytes m_kept;
    std::unique_ptr<Host> m_host;
    std::ofstream m_transcript;
    Dice m_dice{0};
    bool m_uses_lasting_host = true;
    Tree m_tree;              ///< what the client's folder must hold
    std::uint64_t m_harm = 0; ///< faults that affected the last command
    std::uint64_t m_local_files = 0;
    std::uint64_t m_batches_of_process = 0;
    std::vector<std::uint64_t> m_first_figures; ///< of the process, once it has warmed up
    ClientFigures m_figures;
};

} // namespace Storm
