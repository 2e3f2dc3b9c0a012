// The reference host over a database of a bench, with its manager signed in and lent to the module.
//
//   SignedInHost host(*session);
//   host->setSetting("NegativeType", "0");
#pragma once

#include "host/services/reference_host.h"
#include "package/services.h"

namespace basalt::bench {

class SignedInHost {
public:
    explicit SignedInHost(Session& session) : host_(session, options()), attached_(host_) { host_.signInAs(1); }

    host::ReferenceHost* operator->() { return &host_; }
    host::ReferenceHost& operator*() { return host_; }

private:
    // Nothing is written to the options of the user who measures.
    static host::HostOptions options() {
        host::HostOptions options;
        options.persistOptions = false;
        return options;
    }

    host::ReferenceHost host_;
    AttachedHost attached_;
};

}  // namespace basalt::bench
