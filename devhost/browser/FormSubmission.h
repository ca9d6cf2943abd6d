#pragma once

#include "browser/Page.h"
#include "browser/WebRequest.h"

#include <functional>
#include <string>

namespace DevHost {

/// The request that submits a form: its fields in the page's order, form-encoded.
///
/// @param i_page_url where the page came from
/// @param i_button which block was pressed; it belongs to the form
/// @param i_entry returns the current value of a field, by the number of its block
WebRequest SubmitForm(const Page& i_page, const std::wstring& i_page_url, std::size_t i_button,
                      const std::function<std::wstring(std::size_t)>& i_entry);

} // namespace DevHost
