#pragma once

#include "qorv/Host.h"

#include <initializer_list>
#include <string>
#include <string_view>

namespace Ui {

/// The host's text for an id such as "db.msg.wrongUser", or the id itself if the host does not know it.
std::wstring LocalizedText(Qorv::IQorv_Inst* host_instance, Qorv::PCStr i_id);

/// The same with "%1" to "%9" replaced by the arguments. A placeholder without an argument stays unchanged.
std::wstring FormatString(Qorv::IQorv_Inst* host_instance, Qorv::PCStr i_id,
                          std::initializer_list<std::wstring_view> i_arguments = {});

} // namespace Ui
