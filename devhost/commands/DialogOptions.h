#pragma once

#include "commands/CommandLine.h"
#include "commands/Output.h"
#include "services/CabNode.h"

#include <map>
#include <optional>
#include <string>

namespace DevHost {

/// What was typed behind `open-dialog` and `save-dialog`.
struct DialogOptions {
    /// Throws a `UsageError`.
    static DialogOptions Parse(const Arguments& i_arguments);

    /// Writes what there is to type.
    static void Explain(const Output& i_out);

    /// Texts and numbers of the dialog's parameters, by their ids. What was not typed is not there.
    std::map<std::wstring, CabNode::Value> items;
    std::wstring location = L"/";       ///< The parameters' folder to begin in.
    std::optional<std::wstring> folder; ///< The caller's, which goes before the parameters'.
    bool selects_folder = false;
    bool has_settings = false; ///< Something stands behind the options button.
};

} // namespace DevHost
