#include "vdt/file/element_attributes.h"
#include "vdt/file/vdt_reader.h"

namespace vdt {

void VdtReader::startMaterialElement(const ElementAttributes& attributes)
{
    const auto at = [this](std::initializer_list<Element> path) { return stack.endsWith(path); };

    if (at({Element::Plant, Element::Materials, Element::Material})) {
        startMaterial(attributes);
    } else if (at({Element::Material, Element::Alpha})) {
        attributes.read("texture", material.alphaTexture);
    } else if (at({Element::Material, Element::Displacement})) {
        attributes.read("texture", material.displacementTexture);
        attributes.read("height", material.displacementHeight);
        if (const std::string* centered = attributes.find("centered"))
            material.displacementCentered =
                centered->size() == 1 ? ParseInteger(*centered).value != 0 : *centered == "true";
    } else if (at({Element::Material, Element::Subsurface})) {
        attributes.read("texture", material.subsurfaceTexture);
        attributes.read("depth", material.subsurfaceDepth);
        attributes.read("color", material.subsurfaceColor);
    } else if (at({Element::Diffuse}) || at({Element::Specular}) || at({Element::Normal}) || at({Element::Bump})) {
        MaterialSide* side = sideToFill();
        if (!side) return;
        switch (stack.elements().back()) {
        case Element::Diffuse:
            attributes.read("color", side->diffuseColor);
            attributes.read("texture", side->diffuseTexture);
            attributes.read("roughness", side->diffuseRoughness);
            break;
        case Element::Specular:
            attributes.read("color", side->specularColor);
            attributes.read("texture", side->specularTexture);
            attributes.read("roughness", side->specularRoughness);
            break;
        case Element::Normal: attributes.read("texture", side->normalTexture); break;
        default:
            attributes.read("texture", side->bumpTexture);
            attributes.read("strength", side->bumpStrength);
            break;
        }
    }
}

void VdtReader::startMaterial(const ElementAttributes& attributes)
{
    material = {};
    attributes.read("matid", material.matid);
    attributes.read("name", material.name);
    int32_t sides = 0;
    attributes.read("sides", sides);
    if (sides >= 2) material.aliasBack();
    int32_t alpha = 0;
    attributes.read("alpha", alpha);
    diffuseGivesAlpha = alpha != 0;
}

// The side that a diffuse, specular, normal or bump element fills; null if it is out of place.
MaterialSide* VdtReader::sideToFill()
{
    const std::vector<Element>& open = stack.elements();
    if (open.size() < 2) return nullptr;
    switch (open[open.size() - 2]) {
    case Element::Material: material.aliasBack(); return &material.front;
    case Element::Front: return &material.front;
    case Element::Back: {
        // The diffuse element is what makes a back of its own; the others only fill one that is there.
        MaterialSide* back = material.backSide(open.back() == Element::Diffuse);
        if (!back)
            onLoss("The element \"" + std::string(ElementName(open.back())) +
                   "\" of a back side has no effect before its \"diffuse\".");
        return back;
    }
    default: return nullptr;
    }
}

void VdtReader::endMaterial()
{
    if (diffuseGivesAlpha) material.alphaTexture = material.front.diffuseTexture;
    if (hasRoom(model->materials.size(), kMostRecords, "materials")) model->materials.push_back(std::move(material));
    material = {};
    diffuseGivesAlpha = false;
}

} // namespace vdt
