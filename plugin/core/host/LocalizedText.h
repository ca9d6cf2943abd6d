#pragma once

#include "qorv/Host.h"

#include <initializer_list>
#include <string>
#include <string_view>

namespace Ui {

/// The host's text of an id such as "db.msg.wrongUser"; the id itself when the host does not know it.
std::wstring LocalizedText(Qorv::IQorv_Inst* host_instance, Qorv::PCStr i_id);

/// The same with the arguments in the places of "%1" to "%9"; a place that has no argument stays as it is.
std::wstring FormatString(Qorv::IQorv_Inst* host_instance, Qorv::PCStr i_id,
                          std::initializer_list<std::wstring_view> i_arguments = {});

} // namespace Ui
