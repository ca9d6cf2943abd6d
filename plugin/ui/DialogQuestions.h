#pragma once

#include "qorv/Host.h"
#include "ui/FailureText.h"
#include "ui/FileRow.h"

#include <string>
#include <vector>

// What a dialog asks and tells the user in message boxes. UI thread. A box that cannot be shown answers like one that
// was closed.

namespace Ui {

/// Tells why something is not done: a localized text with "%1" for the name.
void TellWhyNot(Qorv::IQorv_Inst* i_host_instance, Qorv::PCStr i_text_id, const std::wstring& i_name);

/// Tells of a command that failed: a localized text with "%1" for the failure.
void TellFailure(Qorv::IQorv_Inst* i_host_instance, Qorv::PCStr i_text_id, const Failure& i_failure);

bool AskToReplace(Qorv::IQorv_Inst* i_host_instance, const std::wstring& i_name);

/// Names what goes: the item, or the first of many.
bool AskToDelete(Qorv::IQorv_Inst* i_host_instance, const std::vector<const FileRow*>& i_rows);

enum class FailureAnswer { give_up, try_again, sign_in };

/// Tells why a folder cannot be shown, and asks what now. The folder is given as a person reads it.
FailureAnswer AskAfterLoadFailure(Qorv::IQorv_Inst* i_host_instance, const std::wstring& i_folder,
                                  const Failure& i_failure);

} // namespace Ui
