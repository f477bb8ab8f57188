#include "core/unit_scale.h"

#include "customgui_unitscale.h"

#include <compare>

namespace {

Bool isUnit(Int32 number)
{
    return number >= DOCUMENT_UNIT_UNDEF && number <= DOCUMENT_UNIT_INCH;
}

} // namespace

UnitScaleData* UnitScaleData::Alloc()
{
    return new UnitScaleData;
}

void UnitScaleData::Free(UnitScaleData*& data)
{
    delete data;
    data = nullptr;
}

Bool UnitScaleData::SetUnitScale(Float factor, DOCUMENT_UNIT kind)
{
    if (!isUnit(kind)) return false;
    scale = factor;
    unit = kind;
    return true;
}

Bool UnitScaleData::GetUnitScale(Float& factor, DOCUMENT_UNIT& kind) const
{
    factor = scale;
    kind = unit;
    return true;
}

class UnitScaleDataType final : public CustomDataTypeClass {
public:
    Int32 GetId() override { return CUSTOMDATATYPE_UNITSCALE; }
    CustomDataType* AllocData() override { return UnitScaleData::Alloc(); }
    void FreeData(CustomDataType* data) override { delete static_cast<UnitScaleData*>(data); }

    Bool CopyData(const CustomDataType* src, CustomDataType* dest, AliasTrans*) override
    {
        *static_cast<UnitScaleData*>(dest) = *static_cast<const UnitScaleData*>(src);
        return true;
    }

    Int32 Compare(const CustomDataType* d1, const CustomDataType* d2) override
    {
        const auto& a = *static_cast<const UnitScaleData*>(d1);
        const auto& b = *static_cast<const UnitScaleData*>(d2);
        if (a.unit != b.unit) return a.unit < b.unit ? -1 : 1;
        // An order of all doubles, so that a scale that is no number differs from those that are.
        const auto order = std::strong_order(a.scale, b.scale);
        return order < 0 ? -1 : order > 0 ? 1 : 0;
    }

    Bool WriteData(const CustomDataType* d, HyperFile* hf) override
    {
        const auto& data = *static_cast<const UnitScaleData*>(d);
        return hf->WriteFloat(data.scale) && hf->WriteInt32(data.unit);
    }

    Bool ReadData(CustomDataType* d, HyperFile* hf, Int32) override
    {
        Float scale = 1;
        Int32 unit = DOCUMENT_UNIT_CM;
        if (!hf->ReadFloat(&scale) || !hf->ReadInt32(&unit) || !isUnit(unit)) return false;
        return static_cast<UnitScaleData*>(d)->SetUnitScale(scale, static_cast<DOCUMENT_UNIT>(unit));
    }

    const Char* GetResourceSym() override { return "UNITSCALE"; }

    Bool GetParameter(const CustomDataType* data, const DescID& id, GeData& t_data, DESCFLAGS_GET& flags) override
    {
        const auto& own = *static_cast<const UnitScaleData*>(data);
        if (id[0].id == UNITSCALE_SCALE)
            t_data = GeData(own.scale);
        else if (id[0].id == UNITSCALE_UNIT)
            t_data = GeData(static_cast<Int32>(own.unit));
        else
            return CustomDataTypeClass::GetParameter(data, id, t_data, flags);
        flags |= DESCFLAGS_GET_PARAM_GET;
        return true;
    }

    Bool SetDParameter(CustomDataType* data, const DescID& id, const GeData& t_data, DESCFLAGS_SET& flags) override
    {
        auto& own = *static_cast<UnitScaleData*>(data);
        const Int32 part = id[0].id;
        if (part == UNITSCALE_SCALE)
            own.scale = t_data.GetFloat();
        else if (part == UNITSCALE_UNIT && isUnit(t_data.GetInt32()))
            own.unit = DOCUMENT_UNIT(t_data.GetInt32());
        else
            return CustomDataTypeClass::SetDParameter(data, id, t_data, flags);
        flags |= DESCFLAGS_SET_PARAM_SET;
        return true;
    }
};

namespace host {

CustomDataTypeClass* NewUnitScaleDataType()
{
    return new UnitScaleDataType;
}

} // namespace host
