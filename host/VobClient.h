// VobClient: the base of whoever watches a Vob; it hears every published change.
#pragma once

#include "host/Cookie.h"
#include "host/EditPtr.h"
#include "host/EditTypes.h"

class Vob;

class VobClient {
public:
    enum eClientPriority { kLowPriority = 0, kNormalPriority = 1, kHighPriority = 2 };
    enum eClientManagementDetails { kManaged = 0, kUnmanaged = 1 };

    VobClient() = default;
    VobClient(Cookie cookie, Vob* vob, eClientPriority priority, eClientManagementDetails details);
    virtual ~VobClient();
    // The name a client is found by (Vob::findClient); empty for most clients.
    virtual const char* idString() const { return ""; }
    VobClient(const VobClient&) = delete;
    VobClient& operator=(const VobClient&) = delete;

    EditPtr getEdit() const;
    Vob* vob() const { return vob_; }
    Cookie cookie() const { return cookie_; }
    void setManagementDetails(eClientManagementDetails d) { details_ = d; }
    eClientManagementDetails managementDetails() const { return details_; }
    eClientPriority priority() const { return priority_; }

    // Called after each published change; an override calls this base at its end.
    virtual void handleModifications(const EditModifications& mods, const VobModification& vobMod);
    // How many changes reached the base; for tests and diagnostics.
    unsigned modificationsHeard() const { return heard_; }

private:
    friend class Vob;
    friend class VobManager;
    Vob* vob_ = nullptr;
    Cookie cookie_;
    eClientPriority priority_ = kNormalPriority;
    eClientManagementDetails details_ = kManaged;
    unsigned heard_ = 0;
};
