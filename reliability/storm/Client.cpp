#include "Client.h"

#include <algorithm>
#include <array>
#include <sstream>

#include "Rules.h"

namespace Storm {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

namespace {

constexpr std::uint64_t commands_a_batch = 30;

/// By how much a process may exceed its figures after its second batch.
constexpr std::array<std::uint64_t, 4> allowed_growth = {64, 16, 16, std::uint64_t{24} << 20};
constexpr std::array<std::string_view, 4> figure_names = {"handles", "GDI objects", "USER objects", "bytes of memory"};

std::vector<std::uint64_t> ReadNumbers(const std::string& i_text) {
    std::istringstream stream(i_text);
    std::vector<std::uint64_t> numbers;
    for (std::uint64_t number = 0; stream >> number;)
        numbers.push_back(number);
    return numbers;
}

} // namespace

Client::Client(Setting i_setting, FaultProxy& io_proxy, SharedFile& io_shared)
    : m_setting(std::move(i_setting)), m_proxy(io_proxy), m_shared(io_shared), m_kept(m_setting.workplace / "profile") {
    fs::create_directories(m_setting.workplace / "profile");
    m_transcript.open(m_setting.workplace / "transcript.txt");
}

void Client::SignIn() {
    const auto host = StartSingleHosts(m_setting.programs, m_setting.workplace / "profile", m_proxy.Port());
    const Answer answer = host->Run("login --token " + m_setting.token);
    if (!answer.IsDone())
        throw RuleBroken("the account cannot be saved:\n" + answer.Text());
}

void Client::Begin(std::uint64_t i_seed, bool i_uses_lasting_host) {
    m_dice = Dice(i_seed);
    if (i_uses_lasting_host != m_uses_lasting_host)
        End();
    m_uses_lasting_host = i_uses_lasting_host;
    m_tree = {{"sub", nullptr}};
    for (const char* path : {"a.txt", "Quarterly Report.pdf", "sub/deep.pdf"})
        m_tree[path] = NewContent();
    WriteTree(Folder(), m_tree);
    Note("== a new batch, of seed " + std::to_string(i_seed) + "\n" + Describe(m_tree));
    m_proxy.Raise(i_seed);
}

void Client::Work() {
    constexpr std::uint64_t batches_a_death = 8;
    const std::uint64_t death = m_dice.OneIn(batches_a_death) ? m_dice.Below(commands_a_batch) : commands_a_batch;
    for (std::uint64_t i = 0; i < commands_a_batch; ++i)
        if (i == death && m_uses_lasting_host)
            SaveAndDie();
        else
            Step();
    m_proxy.Calm();
}

void Client::CheckCalm() {
    m_kept.Check();
    List(true);
    Save();
    Get();
    SaveShared();
    if (m_uses_lasting_host)
        CheckFigures();
}

/// The process uses no more than after its second batch, apart from the files that it keeps open.
void Client::CheckFigures() {
    const std::vector<std::uint64_t> figures = ReadNumbers(Run("figures").figures);
    constexpr std::size_t warm_up = 2;
    if (m_batches_of_process++ < warm_up)
        m_first_figures = figures;
    m_figures.memory = "first " + std::to_string(m_first_figures.back()) + ", last " + std::to_string(figures.back());
    for (std::size_t i = 0; i < figure_names.size(); ++i)
        if (figures.at(i) > m_first_figures.at(i) + allowed_growth.at(i))
            throw RuleBroken("the process has " + std::to_string(figures.at(i)) + " " +
                             std::string(figure_names.at(i)) + " after " + std::to_string(m_batches_of_process) +
                             " batches, and had " + std::to_string(m_first_figures.at(i)));
}

void Client::End() {
    if (const auto host = std::move(m_host)) {
        const auto begin = Clock::now();
        try {
            host->End();
        } catch (const RuleBroken& error) {
            throw RuleBroken(m_setting.name + ", at the end of its process: " + error.what());
        }
        const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
        Note("== the process ended after " + std::to_string(time.count()) + " ms\n");
    }
    m_batches_of_process = 0;
}

Host& Client::TheHost() {
    if (m_host != nullptr)
        return *m_host;
    const fs::path profile = m_setting.workplace / "profile";
    ++m_figures.processes;
    m_host = m_uses_lasting_host ? StartLastingHost(m_setting.programs, profile, m_proxy.Port())
                                 : StartSingleHosts(m_setting.programs, profile, m_proxy.Port());
    return *m_host;
}

Answer Client::Run(const std::string& i_command) {
    Note("> " + i_command + "\n");
    const std::uint64_t harm = m_proxy.HarmCount();
    const auto begin = Clock::now();
    Answer answer;
    try {
        answer = TheHost().Run(i_command);
    } catch (const RuleBroken&) {
        Note(m_proxy.TakeLog());
        throw;
    }
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
    m_harm = m_proxy.HarmCount() - harm;
    Note(m_proxy.TakeLog() + answer.Text() + "  after " + std::to_string(time.count()) + " ms\n");
    ++m_figures.commands;
    m_figures.failures += answer.IsDone() ? 0 : 1;
    m_figures.slowest = std::max(m_figures.slowest, time);
    CheckAnswer(answer, m_setting.token);
    return answer;
}

void Client::Note(const std::string& i_text) {
    m_transcript << i_text << std::flush;
}

void Client::Expect(const Answer& i_answer, const std::optional<Tree>& i_done, const Trees& i_failed) {
    const Tree now = ReadTree(Folder());
    const auto is_now = [&](const Tree& i_tree) { return AreEqual(i_tree, now); };
    const std::string at_hand = "the service has\n" + Describe(now) + "and had\n" + Describe(m_tree) + i_answer.Text();
    if (i_answer.IsDone() && !i_done)
        throw RuleBroken("what cannot be done is said to be done; " + at_hand);
    if (i_answer.IsDone() && !is_now(*i_done))
        throw RuleBroken("what is said to be done is not; " + at_hand);
    if (!i_answer.IsDone() && !is_now(m_tree) && !(i_done && is_now(*i_done)) && std::ranges::none_of(i_failed, is_now))
        throw RuleBroken("a failed command has changed what it should not; " + at_hand);
    if (!i_answer.IsDone() && i_done && m_harm == 0)
        throw RuleBroken("a command fails though nothing went wrong; " + at_hand);
    if (!i_answer.IsDone() && i_done && is_now(*i_done) && !is_now(m_tree))
        ++m_figures.lost_commits;
    m_tree = now;
}

fs::path Client::NewLocalFile() {
    const fs::path folder = m_setting.workplace / "local";
    fs::create_directories(folder);
    return folder / (std::to_string(++m_local_files) + ".bin");
}

Tree Client::With(const std::string& i_path, Content i_content) const {
    Tree tree = m_tree;
    tree[i_path] = std::move(i_content);
    return tree;
}

} // namespace Storm
