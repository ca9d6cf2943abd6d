#pragma once

#include "core/host/GuardedPtr.h"
#include "qorv/Afs.h"
#include "qorv/AuxService.h"
#include "qorv/Host.h"
#include "qorv/Uix.h"

class EventsHandler;
class FileSystem;

/// The plug-in object as its other classes see it: access to the host's services, and to the objects that the plug-in
/// has only one of.
class HostServices : public Qorv::IQorv_Plugin {
public:
    // Null before `Setup`, and again after `Unload`, which may come while workers use them.
    GuardedPtr<Qorv::IQorv_Inst> m_qorv_inst;
    GuardedPtr<Qorv::IAFS_Inst> m_afs_inst;
    GuardedPtr<Qorv::IAUX_Inst> m_aux_inst;
    GuardedPtr<Qorv::IUIX_Inst> m_uix_inst;

    // Null before the step that creates them.
    /// Main thread.
    virtual EventsHandler* GetEventsHandler() const noexcept = 0;
    /// Any thread.
    virtual Qorv::ComPtr<FileSystem> GetFileSystem() const = 0;
    /// Also null if the icons cannot be loaded.
    virtual Qorv::IUIX_Image* GetIcon() const noexcept = 0;

protected:
    // Only the plug-in's own `Release` deletes it.
    HostServices() = default;
    ~HostServices() = default;
};
