#pragma once

#include "qorv/Uix.h"

/// The plug-in's icon in its four sizes, created by the host's UI service. A size that cannot be loaded is left out;
/// null if none can.
Qorv::ComPtr<Qorv::IUIX_Image> LoadPluginIcon(Qorv::IUIX_Inst* i_uix_inst);
