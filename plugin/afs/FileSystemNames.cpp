// Names and texts.

#include "afs/FileSystem.h"
#include "afs/LocalName.h"
#include "afs/Location.h"
#include "afs/Name.h"
#include "afs/ObjectLookup.h"
#include "afs/Session.h"
#include "core/trace/Text.h"

namespace {

/// Without a parent: the whole location, or only its path.
std::wstring LocationText(const Name& i_name, ULONG flags) {
    TRACE_FUNCTION();
    const bool is_path_only = (flags & (Qorv::AFS_Name2String_PathOnly | Qorv::AFS_Name2String_ForDisplay)) != 0;
    return is_path_only ? i_name.GetPath() : i_name.GetUrl();
}

/// Whether something exists at the name's location, which begins with the parent's.
bool Exists(Name& io_name, const Name& i_parent) {
    TRACE_FUNCTION();
    if (io_name.GetObject() != nullptr)
        return true;
    // Another user's id may begin with the parent's: the path would be looked up in the wrong account.
    if (!AreOfSameUser(io_name, i_parent))
        return false;
    const auto web = i_parent.GetSession()->GetWeb()->GetWeb();
    const auto object = FindObject(*web, io_name.GetPath(), SharePoint::Web::BindObjectType::any);
    if (object != nullptr)
        io_name.SetObject(object);
    return object != nullptr;
}

} // namespace

HRESULT STDMETHODCALLTYPE FileSystem::StringToName(Qorv::PCStr string, ULONG flags, Qorv::IAFS_Name* parent,
                                                   Qorv::IAFS_Name** out_name) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        if (out_name != nullptr)
            *out_name = nullptr;
        CHECK_RETURN(string != nullptr, E_POINTER);
        if ((flags & Qorv::AFS_String2Name_ValidateOnly) != 0) {
            CHECK_RETURN(Name::IsStringValid(string), E_INVALIDARG);
            return TRACE_RESULT(S_OK);
        }
        CHECK_RETURN(out_name != nullptr, E_POINTER);
        GET_LOCAL_PARENT(parent);
        CHECK_RETURN(parent != nullptr, E_INVALIDARG);
        auto local_name =
            EqualsNoCase(string, local_parent->GetUrl()) ? local_parent : Name::Create(string, local_parent);
        *out_name = local_name.Detach();
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE FileSystem::NameToString(Qorv::IAFS_Name* name, ULONG flags, Qorv::IAFS_Name* parent,
                                                   BSTR* out_name) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(out_name != nullptr, E_POINTER);
        *out_name = nullptr;
        GET_LOCAL_NAME(name);
        GET_LOCAL_PARENT(parent);
        if (local_parent == nullptr) {
            *out_name = Qorv::Bstr(LocationText(*local_name, flags)).Detach();
        } else {
            const std::wstring url = local_name->GetUrl();
            const wchar_t* path = RestBehindParent(url, local_parent->GetUrl());
            CHECK_RETURN(path != nullptr, E_INVALIDARG);
            *out_name = Qorv::Bstr(*path == L'/' ? path + 1 : path).Detach();
        }
        CHECK_RETURN(*out_name, E_OUTOFMEMORY);
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE FileSystem::NameGetParent(Qorv::IAFS_Name* name, Qorv::IAFS_Name** out_parent) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(out_parent != nullptr, E_POINTER);
        *out_parent = nullptr;
        GET_LOCAL_NAME(name);
        *out_parent = local_name->GetParent().Detach();
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE FileSystem::NameIsChildOf(Qorv::IAFS_Name* name, Qorv::IAFS_Name* parent,
                                                    VARIANT_BOOL* out_is_child) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(out_is_child != nullptr, E_POINTER);
        *out_is_child = VARIANT_FALSE;
        GET_LOCAL_NAME(name);
        GET_LOCAL_PARENT(parent);
        if (local_parent == nullptr)
            return TRACE_RESULT(S_OK);
        const bool is_below = RestBehindParent(local_name->GetUrl(), local_parent->GetUrl()) != nullptr;
        if (is_below && Exists(*local_name, *local_parent))
            *out_is_child = VARIANT_TRUE;
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE FileSystem::NamesAreEqual(Qorv::IAFS_Name* name1, Qorv::IAFS_Name* name2,
                                                    VARIANT_BOOL* out_are_equal) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(out_are_equal != nullptr, E_POINTER);
        *out_are_equal = VARIANT_FALSE;
        if (name1 == nullptr || name2 == nullptr) {
            *out_are_equal = name1 == name2 ? VARIANT_TRUE : VARIANT_FALSE;
            return TRACE_RESULT(S_OK);
        }
        GET_LOCAL_NAME(name1);
        GET_LOCAL_NAME(name2);
        if (EqualsNoCase(local_name1->GetUrl(), local_name2->GetUrl()))
            *out_are_equal = VARIANT_TRUE;
        return TRACE_RESULT(S_OK);
    };
}
