#include "services/HostImages.h"

#include "base/Failure.h"

namespace DevHost {
namespace {

using Qorv::ComPtr;

struct HostImage {
    const wchar_t* name;
    const wchar_t* resource; ///< The side of each bitmap follows.
};

constexpr HostImage host_images[] = {
    {L"ico.folder", L"FOLDER"},   {L"ico.folder.opened", L"FOLDER_OPENED"}, {L"ico.file", L"FILE"},
    {L"ico.up", L"UP"},           {L"ico.folder.new", L"FOLDER_NEW"},       {L"ico.delete", L"DELETE"},
    {L"ico.refresh", L"REFRESH"},
};

constexpr int sides[] = {16, 24, 32, 48};

std::wstring ResourceOf(const std::wstring& i_name) {
    for (const HostImage& image : host_images)
        if (i_name == image.name)
            return image.resource;
    throw Failure(E_INVALIDARG, L"The host has no image \"" + i_name + L"\"");
}

std::string ReadResource(const std::wstring& i_name) {
    const HRSRC resource = FindResourceW(nullptr, i_name.c_str(), L"PNG");
    const HGLOBAL loaded = resource != nullptr ? LoadResource(nullptr, resource) : nullptr;
    if (loaded == nullptr)
        throw LastErrorFailure(L"Cannot read the picture \"" + i_name + L"\" of the program");
    return {static_cast<const char*>(LockResource(loaded)), SizeofResource(nullptr, resource)};
}

} // namespace

ComPtr<Image> HostImages::Get(const std::wstring& i_name) {
    const std::wstring resource = ResourceOf(i_name);
    ComPtr<Image>& image = m_images[resource];
    if (image != nullptr)
        return image;
    auto loaded = Qorv::Create<Image>();
    for (const int side : sides)
        Check(loaded->AddBitmap(Bitmap::FromPng(ReadResource(resource + L"_" + std::to_wstring(side)))),
              L"Cannot read a picture");
    return image = loaded;
}

} // namespace DevHost
