// Files that another machine of a render farm keeps. Without a service there is none.
#pragma once

#include "core/application.h"
#include "lib_net.h"

class NetRenderService {
public:
    virtual ~NetRenderService() = default;
    /// Brings the file here and tells where it is now. False if it cannot be had.
    virtual bool fetch(const Filename& name, Filename& here) = 0;
};

namespace host {

class Network final : public ApplicationPart {
public:
    NetRenderService* service = nullptr; // not owned
};

} // namespace host
