#include "materials/parameter_map.h"

#include "customgui_layerset.h"

#include <algorithm>

namespace {

GeData dataOf(Write write, const SlotValue& value, BaseShader* shader, ColourSpace colourSpace)
{
    switch (write) {
    case Write::Color: return {ColorParameter(std::get<vdt::Color3f>(value), colourSpace)};
    case Write::Number: return {static_cast<Float>(std::get<double>(value))};
    case Write::Choice: return {std::get<Int32>(value)};
    case Write::Switch: return {static_cast<Int32>(std::get<bool>(value))};
    case Write::Texture:
    case Write::AlphaTexture: return {shader};
    case Write::On:
    case Write::First: return {static_cast<Int32>(1)};
    case Write::One: return {static_cast<Float>(1)};
    }
    return {};
}

} // namespace

BaseShader* WriteSlot(const ParameterTarget& target, const ParameterMap& map, Slot slot, const SlotValue& value)
{
    const auto isOfSlot = [slot](const ParameterRow& row) { return row.slot == slot; };
    if (!target.material || std::ranges::none_of(map.rows, isOfSlot)) return nullptr;

    // Nothing is switched on for a picture that is not there.
    BaseShader* shader = nullptr;
    if (const auto* path = std::get_if<std::string>(&value)) {
        HostPtr<BaseShader> loaded = map.loadTexture(*path, false);
        if (!loaded) return nullptr;
        shader = loaded.release();
        target.material->InsertShader(shader);
    }
    for (const ParameterRow& row : map.rows) {
        if (row.slot != slot) continue;
        DescID parameter{DescLevel(target.firstParameter + row.parameter)};
        if (row.level) parameter.PushId(DescLevel(row.level));
        if (row.write == Write::AlphaTexture) setAlphaChannel(*shader, LAYERSETMODE_ALPHAS, kAlphaChannel);
        target.material->SetParameter(parameter, dataOf(row.write, value, shader, target.colourSpace), DESCFLAGS_SET_0);
    }
    return shader;
}

Vector ColorParameter(const vdt::Color3f& color, ColourSpace colourSpace)
{
    return SrgbToParameter(ToHostColour(color), colourSpace);
}
