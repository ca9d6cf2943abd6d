#pragma once

#include "Call.h"

// The calls of the API, by topic. Each reads its arguments, does what its name says, and returns the reply; refusals
// are thrown as BadArguments and RouteError.

namespace DevService::UserRoutes {

Reply GetCurrentAccount(Call& io_call);
Reply GetSpaceUsage(Call& io_call);
Reply CheckUser(Call& io_call);
Reply RevokeToken(Call& io_call);

} // namespace DevService::UserRoutes

namespace DevService::FileRoutes {

// The older versions return the bare metadata, the current ones ("V2") an object that holds it.
Reply GetMetadata(Call& io_call);
Reply CreateFolder(Call& io_call);
Reply CreateFolderV2(Call& io_call);
Reply Delete(Call& io_call);
Reply DeleteV2(Call& io_call);
Reply Copy(Call& io_call);
Reply CopyV2(Call& io_call);
Reply Move(Call& io_call);
Reply MoveV2(Call& io_call);
Reply DeleteBatch(Call& io_call);
Reply CheckJob(Call& io_call); ///< Of any batch.

} // namespace DevService::FileRoutes

namespace DevService::ListRoutes {

Reply ListFolder(Call& io_call);
Reply ListFolderContinue(Call& io_call);
Reply GetLatestCursor(Call& io_call);

} // namespace DevService::ListRoutes

namespace DevService::TransferRoutes {

Reply Download(Call& io_call);
Reply Upload(Call& io_call);
Reply StartSession(Call& io_call);
Reply AppendToSession(Call& io_call);
Reply FinishSession(Call& io_call);
Reply FinishSessions(Call& io_call);
Reply FinishSessionsV2(Call& io_call); ///< Answers at once.

} // namespace DevService::TransferRoutes
