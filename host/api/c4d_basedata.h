// The base of all plug-in classes.
#pragma once

#include "ge_sys_math.h"

class BaseData {
public:
    BaseData() = default;
    BaseData(const BaseData&) = delete;
    BaseData& operator=(const BaseData&) = delete;
    virtual ~BaseData() = default;
};

class NodeData;
/// Makes the plug-in's part of a new node. The host deletes it.
typedef NodeData* DataAllocator();
