#pragma once

#include "commands/CommandLine.h"
#include "services/CabNode.h"

#include <map>
#include <optional>
#include <string>

namespace DevHost {

/// What was typed behind `open-dialog` and `save-dialog`.
struct DialogOptions {
    explicit DialogOptions(const CommandLine& i_line);

    /// Texts and numbers of the dialog's parameters, by their ids. What was not typed is not there.
    std::map<std::wstring, CabNode::Value> items;
    std::wstring location;              ///< The parameters' folder to begin in.
    std::optional<std::wstring> folder; ///< The caller's, which goes before the parameters'.
    bool has_settings = false;          ///< Something stands behind the options button.
};

/// Tells the parser the options that both commands have.
void AddDialogOptions(CLI::App& io_command);

} // namespace DevHost
