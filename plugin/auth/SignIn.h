#pragma once

#include "qorv/Host.h"

#include <string>

/// Asks the user to sign in to the service: opens the browser dialog, and fills, when the user signed in and allowed
/// the access, `o_header` with the line "Authorization:Bearer <token>" (without a line end) and `o_account_id` with the
/// account's id as it stood in the redirect, percent escapes included. Both are empty after S_OK when the user closed
/// the dialog instead. A failure is one of the dialog's. `client_id` is put into the URL as it is. Main thread only.
HRESULT AuthenticateDropboxOAuth2(Qorv::IQorv_Inst* host_instance, const std::wstring& client_id,
                                  std::wstring& o_header, std::wstring& o_account_id);
