// What the converters of most renderers share on this side: the host material under construction, its name, and the
// renderer's table of parameters.
#pragma once

#include "materials/material_entry.h"
#include "materials/parameter_map.h"
#include "vdt/materials/material_converter.h"

class C4dMaterialNameConverter : public virtual vdt::MaterialConverter {
public:
    /// Makes a material of the plug-in. `parameters` has to last.
    C4dMaterialNameConverter(Int32 plugin, const ParameterMap& parameters, ColourSpace documentColours);

    void setMaterialName(const std::string& name) override;

    /// False if the host could not make the material: the renderer is not there.
    Bool hasMaterial() const { return material != nullptr; }
    /// Hands over what a conversion made. What was not handed over goes with the converter.
    virtual void takeEntries(Int32 matid, MaterialEntries& result);

protected:
    /// Into the parameters of `target`.
    BaseShader* write(Slot slot, const SlotValue& value) const
    {
        return WriteSlot({target, colourSpace}, parameterMap, slot, value);
    }

    HostPtr<BaseMaterial> material;
    BaseMaterial* target; // `material`, unless there are several; null: setters do nothing
    const ParameterMap& parameterMap;
    ColourSpace colourSpace;
};

/// Has the host look at all that was written. The last step of each material.
void FinishMaterial(BaseMaterial& material);

/// The entry of a material that links two others.
MaterialEntry JoinPair(HostPtr<BaseMaterial> container, HostPtr<BaseMaterial> front, HostPtr<BaseMaterial> back,
                       Int32 matid);

/// What one conversion is told.
struct Conversion {
    const vdt::MaterialData& material;
    ColourSpace colourSpace;
    Int32 quality;
    MaterialEntries& result;
};

/// Nothing is appended, and nothing left over, where this fails.
template <class Converter> Bool ConvertWith(Converter&& converter, const Conversion& conversion)
{
    if (!converter.hasMaterial() || !converter.convert(conversion.material, conversion.quality)) return false;
    converter.takeEntries(conversion.material.matid, conversion.result);
    return true;
}

// The renderers, each in a file of its own.
Bool ConvertToStandard(const Conversion& conversion);
Bool ConvertToVray(const Conversion& conversion);
Bool ConvertToMia(const Conversion& conversion);
Bool ConvertToCorona(const Conversion& conversion);
Bool ConvertToThea(const Conversion& conversion);
Bool ConvertToArnold(const Conversion& conversion);
Bool ConvertToOctane(const Conversion& conversion);
Bool ConvertToMaxwell(const Conversion& conversion);
Bool ConvertToIray(const Conversion& conversion);
