// storm: the shipped module against the development service with random faults. docs/reliability.md describes it and
// the rules that it checks; ./storm starts it.

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <thread>
#include <vector>

#include "Client.h"
#include "FaultProxy.h"
#include "Server.h"
#include "Service.h"
#include "SharedFile.h"
#include "StormOptions.h"

namespace {

using namespace Storm;
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr std::array names = {"One", "Two"};

/// The service with an empty account, on its own thread.
class LocalStorage {
public:
    explicit LocalStorage(const fs::path& i_root) : m_server(m_service, std::uint16_t{0}) {
        m_token = m_service.accounts.IssueToken(m_service.accounts.Add("Ada Example", "sample", i_root));
        m_thread = std::thread([this] { m_server.Run(); });
    }
    ~LocalStorage() {
        m_server.Stop();
        m_thread.join();
    }
    LocalStorage(const LocalStorage&) = delete;
    LocalStorage& operator=(const LocalStorage&) = delete;

    DevService::TlsAuthority& Authority() { return m_service.authority; }
    std::uint16_t Port() const { return m_server.Port(); }
    const std::string& Token() const { return m_token; }
    /// The storm keeps its own records, and these would only grow.
    void ForgetRequests() { m_service.requests.Clear(); }

private:
    DevService::Service m_service;
    DevService::Server m_server;
    std::string m_token;
    std::thread m_thread;
};

/// The Wine prefix trusts the authority while this object exists.
class Trust {
public:
    Trust(const Programs& i_programs, fs::path i_file, const std::string& i_pem)
        : m_programs(i_programs), m_file(std::move(i_file)) {
        WriteContent(m_file, i_pem);
        if (Run("add") != 0)
            throw std::runtime_error("the service's authority could not be trusted");
    }
    ~Trust() { Run("remove"); }
    Trust(const Trust&) = delete;
    Trust& operator=(const Trust&) = delete;

private:
    int Run(const char* i_verb) const {
        ChildProcess process({m_programs.wine, m_programs.trust, i_verb, WindowsPath(m_file)}, "none");
        while (process.NextLine()) {
        }
        return process.Wait();
    }

    const Programs& m_programs;
    fs::path m_file;
};

class Weather {
public:
    explicit Weather(const StormOptions& i_options)
        : m_options(i_options)
        , m_account(MadeFolder(i_options.folder / "account"))
        , m_storage(m_account)
        , m_trust(m_options.programs, i_options.folder / "ca.pem", m_storage.Authority().Pem()) {
        for (const char* name : names) {
            m_proxies.push_back(
                std::make_unique<FaultProxy>(m_storage.Authority(), m_storage.Port(), m_options.without));
            m_clients.push_back(std::make_unique<Client>(
                Client::Setting{name, m_account, i_options.folder / name, m_storage.Token(), i_options.programs},
                *m_proxies.back(), m_shared));
            m_clients.back()->SignIn();
        }
    }

    /// Runs one batch: the storm, and the checks after it. @throws RuleBroken
    void Batch(std::uint64_t i_number) {
        constexpr std::uint64_t batches_a_seed = 1'000'003;
        const Content first = MakeContent("the first minutes");
        WriteTree(m_account / "Both", {{"Minutes.txt", first}});
        m_shared.Begin(first);
        for (std::size_t i = 0; i < m_clients.size(); ++i) {
            constexpr std::uint64_t single_hosts_every = 6;
            const bool is_lasting = i == 0 || i_number % single_hosts_every != 0;
            m_clients[i]->Begin((m_options.seed * batches_a_seed + i_number) * m_clients.size() + i, is_lasting);
        }
        ForAll([](Client& io_client) { io_client.Work(); });
        ForAll([](Client& io_client) { io_client.CheckCalm(); });
        CheckSharedFile();
        CheckNothingIsLeft();
        m_storage.ForgetRequests();
        ++m_batches;
    }

    void End() {
        for (const auto& client : m_clients)
            client->End();
    }

    std::uint64_t Faults() const {
        std::uint64_t faults = 0;
        for (const FaultCounts& counts = Counts(); const std::uint64_t count : counts)
            faults += count;
        return faults - Counts().front();
    }

    void ShowTable() const;

private:
    static fs::path MadeFolder(fs::path i_path) {
        fs::create_directories(i_path);
        return i_path;
    }

    /// Runs both clients at once. @throws the first failure
    template <class Job>
    void ForAll(Job i_job) {
        std::vector<std::exception_ptr> failures(m_clients.size());
        std::vector<std::thread> threads;
        threads.reserve(m_clients.size());
        for (std::size_t i = 0; i < m_clients.size(); ++i)
            threads.emplace_back([&, i] {
                try {
                    i_job(*m_clients[i]);
                } catch (const std::exception& error) {
                    failures[i] = std::make_exception_ptr(RuleBroken(std::string(names[i]) + ": " + error.what()));
                }
            });
        for (std::thread& thread : threads)
            thread.join();
        for (const std::exception_ptr& failure : failures)
            if (failure)
                std::rethrow_exception(failure);
    }

    void CheckSharedFile() const {
        const Content now = ReadContent(m_account / Client::shared_path);
        if (!m_shared.MayStay(now))
            throw RuleBroken("the shared file has " + Describe(now) + ", which was not the last that anybody wrote");
    }

    void CheckNothingIsLeft() const {
        const auto end = Clock::now() + std::chrono::seconds(5);
        while (HasUnfinished(m_account)) {
            if (Clock::now() > end)
                throw RuleBroken("an unfinished upload is left in the account");
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }

    FaultCounts Counts() const {
        FaultCounts all{};
        for (const auto& proxy : m_proxies) {
            const FaultCounts counts = proxy->Counts();
            for (std::size_t i = 0; i < all.size(); ++i)
                all.at(i) += counts.at(i);
        }
        return all;
    }

    const StormOptions& m_options;
    fs::path m_account;
    LocalStorage m_storage;
    Trust m_trust;
    SharedFile m_shared;
    std::vector<std::unique_ptr<FaultProxy>> m_proxies;
    std::vector<std::unique_ptr<Client>> m_clients;
    std::uint64_t m_batches = 0;
};

void Weather::ShowTable() const {
    const auto row = [](std::string_view i_name, const auto& i_value) {
        std::cout << "  " << i_name << std::string(i_name.size() < 34 ? 34 - i_name.size() : 1, ' ') << i_value << '\n';
    };
    row("batches", m_batches);
    const FaultCounts counts = Counts();
    row("requests", Faults() + counts.front());
    row("faults", Faults());
    for (std::size_t kind = 1; kind < counts.size(); ++kind)
        row("  " + std::string(NameOf(static_cast<FaultKind>(kind))), counts.at(kind));
    for (std::size_t i = 0; i < m_clients.size(); ++i) {
        const ClientFigures& figures = m_clients[i]->Figures();
        row("client " + std::string(names.at(i)), "");
        row("  commands", figures.commands);
        row("  ... that failed", figures.failures);
        row("  ... failed, and done nevertheless", figures.lost_commits);
        row("  uploads begun", figures.uploads);
        row("  downloads compared", figures.downloads);
        row("  kept files checked", m_clients[i]->Kept().Count());
        row("  processes, of them killed", std::to_string(figures.processes) + ", " + std::to_string(figures.kills));
        row("  memory at a batch's end", figures.memory);
        row("  slowest command, ms", figures.slowest.count());
    }
}

/// @returns whether all rules hold
bool Run(const StormOptions& i_options) {
    Weather weather(i_options);
    const auto end = Clock::now() + i_options.time;
    std::uint64_t batch = i_options.first_batch;
    bool is_good = true;
    try {
        do {
            const auto begin = Clock::now();
            const std::uint64_t faults = weather.Faults();
            weather.Batch(batch);
            const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
            std::cout << "batch " << batch << ": " << weather.Faults() - faults << " faults in " << time.count()
                      << " ms, all rules hold\n"
                      << std::flush;
            ++batch;
        } while (Clock::now() < end);
        weather.End();
    } catch (const std::exception& error) {
        is_good = false;
        const std::string text = "Broken rule in batch " + std::to_string(batch) + " of seed " +
                                 std::to_string(i_options.seed) + ": " + error.what();
        std::cout << text << "\nWhat is needed to understand it is in " << i_options.folder.string()
                  << ": transcript.txt of each client, their profiles, the account\n"
                  << std::flush;
        std::ofstream(i_options.folder / "broken-rule.txt") << text << '\n';
    }
    weather.ShowTable();
    return is_good;
}

} // namespace

int main(int i_count, char** i_arguments) {
    std::signal(SIGPIPE, SIG_IGN); // A crashed client is noticed at the next write to it.
    try {
        return Run(StormOptions::Parse(i_count, i_arguments)) ? 0 : 1;
    } catch (const std::invalid_argument& error) {
        std::cerr << "storm: " << error.what() << '\n';
        return 2;
    } catch (const std::exception& error) {
        std::cerr << "storm: " << error.what() << '\n';
        return 1;
    }
}
