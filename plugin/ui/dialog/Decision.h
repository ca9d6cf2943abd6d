#pragma once

#include "ui/list/FileRow.h"
#include "ui/names/TypedNames.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What the user means by pressing OK, judged by what the dialog shows. No windows, and no calls to the service.

namespace Ui {

class FileRows;

/// What a dialog is for.
struct DialogMode {
    bool is_open = true;
    bool chooses_folder = false; ///< Only folders are listed, and one of them is chosen.
    bool allows_several = false;
    bool asks_before_replacing = false;
};

/// What a dialog shows when OK is pressed.
struct DialogContent {
    std::vector<const FileRow*> selection{};
    bool is_selection_chosen = true; ///< By the user; after Up the dialog itself selects the folder left.
    std::wstring text{};             ///< Of the name box.
    bool is_text_typed = false;      ///< By the user or the caller, not put there for the selected rows.
};

/// What to do.
struct Decision {
    enum class Kind {
        nothing,
        go_up,
        enter,          ///< Show the folder of the one name.
        go_to,          ///< Show the location of the text, which may be relative to the shown folder.
        list_matches,   ///< List only the files that the text, a pattern, matches.
        choose_shown,   ///< The dialog ends with the shown folder.
        choose,         ///< The dialog ends with the names.
        ask_to_replace, ///< The same, if the user agrees to replace the one name.
        save_new,       ///< The same for the one name, which wasn't in the folder when it was loaded.
        refuse          ///< Tell the user why not.
    };

    Kind kind = Kind::nothing;
    std::vector<TypedName> names{};
    std::wstring text{};                 ///< The location to go to, or the name that is refused.
    const wchar_t* message_id = nullptr; ///< Of the localized text for the refusal; "%1" in it is the name.
    std::wstring detail{};               ///< "%2" in it.
};

/// A decision as a sentence for the log.
std::wstring LogSentence(const Decision& i_decision);

/// Whether OK means the selected rows, and not the name box.
bool MeansSelection(const DialogMode& i_mode, const DialogContent& i_content);

/// Whether OK will only go to another folder, so that its button should say so.
bool GoesToFolder(const DialogMode& i_mode, const DialogContent& i_content, const FileRows& i_rows);

/// What a text in the name box means as a path to a folder: nothing if it is a name. A text that begins with "/",
/// "dropbox://" or the title of a listed folder and "/", is a path, and so are ".." and the title of a listed folder.
Decision DecideWay(const std::wstring& i_text, const FileRows& i_rows);

/// Whether a text is a pattern of files' names: one with a "*".
bool IsPattern(std::wstring_view i_text);

/// The title of a listed row that a text begins, if the user has typed on at the end of what was there before; nothing
/// for a path or a quoted list.
std::optional<std::wstring> CompletedName(std::wstring_view i_previous, std::wstring_view i_text,
                                          const FileRows& i_rows);

/// What to do with the selected rows, which may be none.
Decision DecideSelection(const DialogMode& i_mode, const std::vector<const FileRow*>& i_selected);

/// What to do with typed names, after the extension rules, matched with what the folder holds.
Decision DecideTypedNames(const DialogMode& i_mode, const std::vector<TypedName>& i_names);

} // namespace Ui
