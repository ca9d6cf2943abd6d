#include "commands/Commands.h"

#include "base/LocalFile.h"
#include "base/Unicode.h"
#include "commands/Shell.h"

#include <algorithm>

namespace DevHost {
namespace {

constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

/// Runs the command on a line and returns its exit code; 0 for a line without one.
int RunLine(Shell& io_shell, std::wstring_view i_text) {
    try {
        const Arguments words = SplitLine(i_text);
        if (words.empty())
            return exit_ok;
        const CommandLine line(words, CommandLine::Origin::Script);
        if (line.Name() == "run")
            throw UsageError("a file of commands cannot run another one");
        return io_shell.Execute(line);
    } catch (const UsageError& error) {
        io_shell.Out().Note(FromUtf8(error.what()));
        return exit_usage;
    }
}

} // namespace

void RunScript(Shell& io_shell, const CommandLine& i_line) {
    const std::wstring path = i_line.Text("FILE");
    std::string text = ReadWholeFile(path);
    if (text.starts_with(byte_order_mark))
        text.erase(0, byte_order_mark.size());
    std::size_t number = 0;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        const std::wstring line = FromUtf8(std::string_view(text).substr(begin, end - begin));
        begin = end + 1;
        ++number;
        const bool may_fail = line.starts_with(L'-') && !line.starts_with(L"--");
        const int result = RunLine(io_shell, std::wstring_view(line).substr(may_fail ? 1 : 0));
        if (result == exit_interrupted || (result != exit_ok && !may_fail))
            throw ScriptStopped{path + L":" + std::to_wstring(number), result};
    }
}

} // namespace DevHost
