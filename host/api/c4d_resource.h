// A module's folder "res": texts, descriptions.
#pragma once

#include "c4d_general.h"

namespace host {
struct ResourceData;
}
class LocalResource;

class GeResource {
public:
    GeResource();
    GeResource(const GeResource&) = delete;
    GeResource& operator=(const GeResource&) = delete;
    ~GeResource();

    /// From the module's own folder "res". False if there is nothing that can be read.
    Bool Init();
    Bool Init(const Filename& path, Bool regardIsStopped = true);
    /// Empty before Init(); a text that says so for an unknown id.
    const String& LoadString(Int32 id);
    void Free();
    LocalResource* Get();

private:
    std::unique_ptr<host::ResourceData> data;
};

extern GeResource resource;
void FreeResource();

const String& GeLoadString(Int32 id);
/// Each text in turn takes the place of the first "#" that is left. Empty if there is none left for one of them.
String GeLoadString(Int32 id, const String& p1);
String GeLoadString(Int32 id, const String& p1, const String& p2);
String GeLoadString(Int32 id, const String& p1, const String& p2, const String& p3);

/// Ties a description to the id of a type. With a null `res` that of the module that asks.
Bool RegisterDescription(Int32 id, const String& idstr, LocalResource* res = nullptr);
