#pragma once

#include "commands/CommandLine.h"
#include "services/CabNode.h"

#include <map>
#include <optional>
#include <string>

namespace DevHost {

/// What was typed after `open-dialog` and `save-dialog`.
struct DialogOptions {
    explicit DialogOptions(const CommandLine& i_line);

    /// Texts and numbers of the dialog's parameters, by their ids. Those not typed are missing.
    std::map<std::wstring, CabNode::Value> items;
    std::wstring location;              ///< The initial folder in the parameters.
    std::optional<std::wstring> folder; ///< The caller's initial folder, which takes precedence over the parameters'.
    bool has_settings = false;          ///< The options button does something.
};

/// Tells the parser the options that both commands have.
void AddDialogOptions(CLI::App& io_command);

} // namespace DevHost
