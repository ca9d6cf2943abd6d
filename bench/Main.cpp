// dropbox_bench [--quick] [--json FILE] [NAME...]: measures the module that ships, or only the topics of these names,
// and prints a table. To be run by ./bench.sh, which sets up the service and its folders.

#include "Benchmarks.h"
#include "ChildProcess.h"
#include "base/Unicode.h"
#include "wine/WineNetwork.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ole2.h>
#include <stdexcept>
#include <string_view>

namespace Bench {

namespace {

constexpr int exit_failed = 1;
constexpr int exit_usage = 2;
constexpr int quick_rounds = 3;

struct Topic {
    std::wstring_view name;
    void (*measure)(Report&, const Effort&);
};

constexpr std::array topics{
    Topic{L"transfer", &MeasureTransfers}, Topic{L"list", &MeasureListings}, Topic{L"memory", &MeasureListingMemory},
    Topic{L"dialog", &MeasureDialog},      Topic{L"load", &MeasureLoading},  Topic{L"trace", &MeasureTracing},
};

struct UsageError : std::runtime_error {
    using runtime_error::runtime_error;
};

struct Options {
    Effort effort;
    std::filesystem::path json;
    std::vector<std::wstring_view> names; ///< None: all.
};

Options ParseOptions(const std::vector<std::wstring_view>& i_arguments) {
    Options options;
    for (auto argument = i_arguments.begin(); argument != i_arguments.end(); ++argument) {
        if (*argument == L"--quick")
            options.effort = {quick_rounds, true};
        else if (*argument == L"--json" && std::next(argument) != i_arguments.end())
            options.json = *++argument;
        else if (std::ranges::find(topics, *argument, &Topic::name) != topics.end())
            options.names.push_back(*argument);
        else
            throw UsageError("unknown: " + DevHost::ToUtf8(*argument) +
                             "\nusage: [--quick] [--json FILE] [transfer] [list] [memory] [dialog] [load] [trace]");
    }
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

void RunChildJob(std::wstring_view i_job, std::wstring_view i_argument) {
    AnswerParent(i_job == L"list" ? ListInChild(std::wstring(i_argument)) : LoadInChild());
}

void Run(const std::vector<std::wstring_view>& i_arguments) {
    if (i_arguments.size() == 3 && i_arguments.front() == child_option)
        RunChildJob(i_arguments[1], i_arguments[2]);
    else
        RunTopics(ParseOptions(i_arguments));
}

} // namespace
} // namespace Bench

int wmain(int i_count, wchar_t** i_arguments) {
    OleInitialize(nullptr);
    int result = 0;
    try {
        DevHost::RedirectWinInet();
        Bench::Run({i_arguments + 1, i_arguments + i_count});
    } catch (const Bench::UsageError& error) {
        std::fprintf(stderr, "%s\n", error.what());
        result = Bench::exit_usage;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "error: %s\n", error.what());
        result = Bench::exit_failed;
    }
    OleUninitialize();
    return result;
}
