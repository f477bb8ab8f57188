// Files that another machine of a render farm keeps. Without a service there is none.
#pragma once

#include "core/application.h"
#include "lib_net.h"

namespace host {

class FileService {
public:
    virtual ~FileService() = default;
    /// Brings the file here and tells where it is now. False if it cannot be had.
    virtual bool fetch(const Filename& name, Filename& here) = 0;
};

class Network final : public ApplicationPart {
public:
    FileService* service = nullptr; // not owned
};

} // namespace host
