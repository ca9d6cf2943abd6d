#pragma once

#include "services/Image.h"

#include <map>
#include <string>

namespace DevHost {

/// The host's own images, which are resources of the program. Main thread only.
class HostImages {
public:
    /// One image per name, however often it is requested. Throws a `Failure` with E_INVALIDARG for an unknown name.
    Qorv::ComPtr<Image> Get(const std::wstring& i_name);

private:
    std::map<std::wstring, Qorv::ComPtr<Image>> m_images;
};

} // namespace DevHost
