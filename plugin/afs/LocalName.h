#pragma once

#include "core/trace/Check.h"
#include "qorv/Values.h"

/// Declares `local_name`, the plug-in's own object for the host's argument `name`. Null, and a name of another file
/// system, return E_INVALIDARG.
#define GET_LOCAL_NAME(name)                                                                                           \
    CHECK_RETURN(name != nullptr, E_INVALIDARG);                                                                       \
    const auto local_##name = GetName(name);                                                                           \
    CHECK_RETURN(local_##name != nullptr, E_INVALIDARG)

/// The same for a parent, which may be null: then `local_parent` is null too.
#define GET_LOCAL_PARENT(parent)                                                                                       \
    const auto local_##parent = GetName(parent);                                                                       \
    CHECK_RETURN(parent == nullptr || local_##parent != nullptr, E_INVALIDARG)
