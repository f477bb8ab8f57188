// The data type by which the host keeps plant choices: in scenes, copies and comparisons like any value of its own.
#pragma once

#include "selection/selection_data.h"

class VerdanthSelectionDataType : public CustomDataTypeClass {
public:
    Int32 GetId() override;
    CustomDataType* AllocData() override;
    void FreeData(CustomDataType* data) override;
    Bool CopyData(const CustomDataType* source, CustomDataType* destination, AliasTrans* trans) override;
    /// By file, variant and qualifier; names and lists do not count.
    Int32 Compare(const CustomDataType* first, const CustomDataType* second) override;
    Bool WriteData(const CustomDataType* data, HyperFile* file) override;
    /// The model stays in memory until the object that holds the value has taken it; see ModelsBeingRead.
    Bool ReadData(CustomDataType* data, HyperFile* file, Int32 level) override;
    const Char* GetResourceSym() override;
    CustomProperty* GetProperties() override;
    void GetDefaultProperties(BaseContainer& data) override;
    Bool GetParameter(const CustomDataType* data, const DescID& id, GeData& value, DESCFLAGS_GET& flags) override;
    Bool SetDParameter(CustomDataType* data, const DescID& id, const GeData& value, DESCFLAGS_SET& flags) override;
};
