#pragma once

#include "qorv/Afs.h"

/// Which names a dialog lists. This one passes every name.
class NamesFilter {
public:
    virtual ~NamesFilter() = default;
    virtual bool IsValid([[maybe_unused]] Qorv::IAFS_Name* i_name) { return true; }
};
