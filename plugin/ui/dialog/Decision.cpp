#include "ui/dialog/Decision.h"

#include "afs/Location.h"
#include "core/trace/Text.h"
#include "core/trace/Trace.h"
#include "ui/list/FileRows.h"
#include "ui/names/NewName.h"

#include <algorithm>

namespace Ui {
namespace {

using Kind = Decision::Kind;

constexpr wchar_t parent_entry[] = L"..";
constexpr wchar_t parent_title[] = L"../";

Decision Refuse(const wchar_t* i_message_id, std::wstring i_name = {}) {
    TRACE_FUNCTION();
    return {.kind = Kind::refuse, .names = {}, .text = std::move(i_name), .message_id = i_message_id};
}

TypedName NameOf(const FileRow& i_row) {
    TRACE_FUNCTION();
    return {i_row.title, i_row.name, i_row.item, i_row.is_folder};
}

const FileRow* FolderOfTitle(const FileRows& i_rows, std::wstring_view i_title) {
    TRACE_FUNCTION();
    const auto index = i_rows.FindTitle(i_title);
    return index && i_rows[*index].is_folder && !i_rows[*index].is_parent ? &i_rows[*index] : nullptr;
}

/// A text that begins like a location, with its prefix normalised; empty for any other text.
std::wstring LocationText(const std::wstring& i_text) {
    TRACE_FUNCTION();
    if (i_text.starts_with(L'/'))
        return i_text;
    if (!EqualsNoCase(std::wstring_view(i_text).substr(0, location_prefix.size()), location_prefix))
        return {};
    return std::wstring(location_prefix) + i_text.substr(location_prefix.size());
}

/// The name of a file to save: an existing one, for which no rule about new ones counts, or a new one that the service
/// takes.
Decision DecideFileToSave(const DialogMode& i_mode, const TypedName& i_name) {
    TRACE_FUNCTION();
    if (i_name.name == nullptr) {
        if (const auto fault = FaultOfNewName(i_name.text))
            return {.kind = Kind::refuse,
                    .names = {},
                    .text = i_name.text,
                    .message_id = fault->message_id,
                    .detail = fault->characters};
        return {.kind = Kind::save_new, .names = {i_name}};
    }
    return {.kind = i_mode.asks_before_replacing ? Kind::ask_to_replace : Kind::choose, .names = {i_name}};
}

} // namespace

std::wstring LogSentence(const Decision& i_decision) {
    TRACE_FUNCTION();
    const std::wstring name = i_decision.names.empty() ? std::wstring() : i_decision.names.front().text;
    switch (i_decision.kind) {
    case Kind::nothing:
        return L"INFORMATION: Nothing is selected or typed - doing nothing";
    case Kind::go_up:
        return L"INFORMATION: The folder above is meant - going there";
    case Kind::enter:
        return L"INFORMATION: The folder '" + name + L"' is meant - going there";
    case Kind::go_to:
        return L"INFORMATION: The location '" + i_decision.text + L"' is meant - going there";
    case Kind::list_matches:
        return L"INFORMATION: '" + i_decision.text + L"' is a pattern - listing what it matches";
    case Kind::choose_shown:
        return L"INFORMATION: Nothing is selected or typed - choosing the shown folder";
    case Kind::choose:
        return L"INFORMATION: Choosing " + std::to_wstring(i_decision.names.size()) + L" names, '" + name + L"' first";
    case Kind::ask_to_replace:
        return L"INFORMATION: The file '" + name + L"' exists - asking whether to replace it";
    case Kind::save_new:
        return L"INFORMATION: The file '" + name + L"' is not listed - asking the service for it";
    case Kind::refuse:
        return L"WARNING: Refusing '" + i_decision.text + L"' because of " + i_decision.message_id;
    }
    return {};
}

bool MeansSelection(const DialogMode& i_mode, const DialogContent& i_content) {
    TRACE_FUNCTION();
    // Where files are opened, the folder left can only be entered again. Elsewhere something else would be chosen.
    const bool is_chosen = i_content.is_selection_chosen || (i_mode.is_open && !i_mode.chooses_folder);
    return is_chosen && !i_content.selection.empty() && (!i_content.is_text_typed || i_content.text.empty());
}

bool GoesToFolder(const DialogMode& i_mode, const DialogContent& i_content, const FileRows& i_rows) {
    TRACE_FUNCTION();
    const Decision decision = MeansSelection(i_mode, i_content) ? DecideSelection(i_mode, i_content.selection)
                                                                : DecideWay(i_content.text, i_rows);
    return decision.kind == Kind::enter || decision.kind == Kind::go_up ||
           (decision.kind == Kind::go_to && (i_mode.chooses_folder || decision.text.ends_with(L'/')));
}

Decision DecideWay(const std::wstring& i_text, const FileRows& i_rows) {
    TRACE_FUNCTION();
    if (i_text == parent_entry || i_text == parent_title)
        return {.kind = Kind::go_up};
    if (std::wstring location = LocationText(i_text); !location.empty())
        return {.kind = Kind::go_to, .names = {}, .text = std::move(location)};
    if (const FileRow* const folder = FolderOfTitle(i_rows, i_text))
        return {.kind = Kind::enter, .names = {NameOf(*folder)}};
    const std::size_t slash = i_text.find(L'/');
    if (slash != std::wstring::npos && FolderOfTitle(i_rows, std::wstring_view(i_text).substr(0, slash)) != nullptr)
        return {.kind = Kind::go_to, .names = {}, .text = i_text};
    return {};
}

bool IsPattern(std::wstring_view i_text) {
    TRACE_FUNCTION();
    return i_text.find(L'*') != std::wstring_view::npos && i_text.find_first_of(L"/\\\"") == std::wstring_view::npos;
}

std::optional<std::wstring> CompletedName(std::wstring_view i_previous, std::wstring_view i_text,
                                          const FileRows& i_rows) {
    TRACE_FUNCTION();
    const bool is_typed_on = i_text.size() > i_previous.size() && i_text.starts_with(i_previous);
    if (!is_typed_on || i_text.find_first_of(L"/\"") != std::wstring_view::npos)
        return std::nullopt;
    const auto row = i_rows.FindPrefix(i_text, 0);
    if (!row || i_rows[*row].title.size() == i_text.size())
        return std::nullopt;
    return std::wstring(i_text) + i_rows[*row].title.substr(i_text.size()); // In the letters that were typed.
}

Decision DecideSelection(const DialogMode& i_mode, const std::vector<const FileRow*>& i_selected) {
    TRACE_FUNCTION();
    if (i_selected.empty())
        return {.kind = i_mode.chooses_folder ? Kind::choose_shown : Kind::nothing};
    const FileRow& first = *i_selected.front();
    if (i_selected.size() == 1 && first.is_parent)
        return {.kind = Kind::go_up};
    if (i_selected.size() == 1 && first.is_folder && !i_mode.chooses_folder)
        return {.kind = Kind::enter, .names = {NameOf(first)}};
    if (i_selected.size() > 1 && !i_mode.allows_several)
        return Refuse(i_mode.chooses_folder ? L"db.msg.oneFolder" : L"db.msg.oneFile");
    if (!i_mode.is_open)
        return DecideFileToSave(i_mode, NameOf(first));

    Decision decision{.kind = Kind::choose};
    for (const FileRow* const row : i_selected) {
        if (row->is_parent || row->is_folder != i_mode.chooses_folder)
            return Refuse(L"db.msg.notAFile", row->title);
        decision.names.push_back(NameOf(*row));
    }
    return decision;
}

Decision DecideTypedNames(const DialogMode& i_mode, const std::vector<TypedName>& i_names) {
    TRACE_FUNCTION();
    if (i_names.empty())
        return {.kind = i_mode.chooses_folder ? Kind::choose_shown : Kind::nothing};
    if (i_mode.chooses_folder) // A folder's title would be a path to it.
        return Refuse(i_names.front().name != nullptr ? L"db.msg.notAFolder" : L"db.msg.folderNotFound",
                      i_names.front().text);
    for (const TypedName& name : i_names) {
        if (name.is_folder)
            return Refuse(L"db.msg.notAFile", name.text);
        if (i_mode.is_open && name.name == nullptr)
            return Refuse(L"db.msg.fileNotFound", name.text);
    }
    if (i_names.size() > 1 && !(i_mode.is_open && i_mode.allows_several))
        return Refuse(L"db.msg.oneFile");
    if (!i_mode.is_open)
        return DecideFileToSave(i_mode, i_names.front());
    return {.kind = Kind::choose, .names = i_names};
}

} // namespace Ui
