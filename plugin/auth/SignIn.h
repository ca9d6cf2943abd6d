#pragma once

#include "qorv/Host.h"

#include <string>

/// Asks the user to sign in to the service in the browser dialog. If the user signs in and allows access, `o_header`
/// receives the line "Authorization:Bearer <token>" (without a line ending) and `o_account_id` the account's id as it
/// appears in the redirect, percent escapes included. If the user closes the dialog instead, the result is S_OK and
/// both are empty. A failure is the dialog's. `client_id` is put into the URL unchanged. Main thread only.
HRESULT AuthenticateDropboxOAuth2(Qorv::IQorv_Inst* host_instance, const std::wstring& client_id,
                                  std::wstring& o_header, std::wstring& o_account_id);
