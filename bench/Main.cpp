// dropbox_bench: measures the module that ships and prints a table. Run it with ./bench.sh, which sets up the service
// and its folders.

#include "Benchmarks.h"
#include "ChildProcess.h"
#include "base/Unicode.h"
#include "wine/WineNetwork.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <cstdio>
#include <ole2.h>
#include <set>

namespace Bench {
namespace {

constexpr int exit_failed = 1;
constexpr int exit_usage = 2;
constexpr int quick_rounds = 3;

struct Topic {
    const char* name;
    void (*measure)(Report&, const Effort&);
};

constexpr std::array topics{
    Topic{"transfer", &MeasureTransfers}, Topic{"list", &MeasureListings}, Topic{"memory", &MeasureListingMemory},
    Topic{"dialog", &MeasureDialog},      Topic{"load", &MeasureLoading},  Topic{"unload", &MeasureUnloading},
    Topic{"trace", &MeasureTracing},
};

struct Options {
    Effort effort;
    std::filesystem::path json;
    std::vector<std::string> names; ///< None: all.
};

/// Throws a CLI::ParseError, also for a request for help.
Options ParseOptions(CLI::App& io_program, std::vector<std::string> i_arguments) {
    Options options;
    bool is_quick = false;
    std::string json;
    std::set<std::string> known;
    for (const Topic& topic : topics)
        known.insert(topic.name);
    io_program.add_flag("--quick", is_quick, "fewer rounds, and fewer bytes");
    io_program.add_option("--json", json, "write the figures to this file too")->type_name("FILE");
    io_program.add_option("NAME", options.names, "topics; by default all of them")->check(CLI::IsMember(known));
    std::ranges::reverse(i_arguments); // The parser takes them in reverse order.
    io_program.parse(std::move(i_arguments));
    if (is_quick)
        options.effort = {quick_rounds, true};
    options.json = DevHost::FromUtf8(json);
    return options;
}

void RunTopics(const Options& i_options) {
    Report report;
    report.PrintHead();
    for (const Topic& topic : topics)
        if (i_options.names.empty() || std::ranges::find(i_options.names, topic.name) != i_options.names.end())
            topic.measure(report, i_options.effort);
    if (!i_options.json.empty())
        report.Write(i_options.json);
}

std::vector<double> RunJob(const std::string& i_job, const std::string& i_argument) {
    if (i_job == "list")
        return ListInChild(DevHost::FromUtf8(i_argument));
    return i_job == "load" ? LoadInChild() : UnloadInChild();
}

/// Returns the exit code.
int Run(const std::vector<std::string>& i_arguments) {
    if (i_arguments.size() == 3 && i_arguments.front() == child_option) {
        AnswerParent(RunJob(i_arguments[1], i_arguments[2]));
        return 0;
    }
    CLI::App program("Measures the module that ships and prints a table. ./bench.sh sets up what it needs.",
                     "dropbox_bench");
    program.allow_windows_style_options(false);
    try {
        RunTopics(ParseOptions(program, i_arguments));
        return 0;
    } catch (const CLI::ParseError& error) {
        return program.exit(error) == 0 ? 0 : exit_usage;
    }
}

} // namespace
} // namespace Bench

int wmain(int i_count, wchar_t** i_arguments) {
    OleInitialize(nullptr);
    int result = Bench::exit_failed;
    try {
        DevHost::RedirectWinInet();
        std::vector<std::string> arguments;
        std::transform(i_arguments + 1, i_arguments + i_count, std::back_inserter(arguments), DevHost::ToUtf8);
        result = Bench::Run(arguments);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "error: %s\n", error.what());
    }
    OleUninitialize();
    return result;
}
