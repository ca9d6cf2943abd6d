#pragma once

#include "qorv/Uix.h"

/// The plug-in's icon in its four sizes, made by the host's UI service. A size that cannot be loaded is left out; null
/// when none can.
Qorv::ComPtr<Qorv::IUIX_Image> LoadPluginIcon(Qorv::IUIX_Inst* i_uix_inst);
