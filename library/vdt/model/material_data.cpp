#include "vdt/model/material_data.h"

namespace vdt {
namespace {

void mapIfRelative(std::string& path, const PathMapper& mapper)
{
    if (!IsAbsolutePath(path)) path = mapper.map(path);
}

void mapSide(MaterialSide& side, const PathMapper& mapper)
{
    mapIfRelative(side.diffuseTexture, mapper);
    mapIfRelative(side.specularTexture, mapper);
    mapIfRelative(side.normalTexture, mapper);
    mapIfRelative(side.bumpTexture, mapper);
}

} // namespace

MaterialData::MaterialData(const MaterialData& other)
    : matid(other.matid),
      name(other.name),
      alphaTexture(other.alphaTexture),
      displacementTexture(other.displacementTexture),
      displacementHeight(other.displacementHeight),
      displacementCentered(other.displacementCentered),
      subsurfaceColor(other.subsurfaceColor),
      subsurfaceDepth(other.subsurfaceDepth),
      subsurfaceTexture(other.subsurfaceTexture),
      front(other.front),
      backIsFront(other.backIsFront),
      ownBack(other.ownBack ? std::make_unique<MaterialSide>(*other.ownBack) : nullptr)
{
}

MaterialData& MaterialData::operator=(const MaterialData& other)
{
    return *this = MaterialData(other);
}

MaterialSide* MaterialData::backSide(bool create)
{
    if (!ownBack && create) {
        ownBack = std::make_unique<MaterialSide>();
        backIsFront = false;
    }
    return ownBack.get();
}

void MaterialData::aliasBack()
{
    if (!ownBack) backIsFront = true;
}

void MaterialData::mapPaths(const PathMapper& mapper)
{
    mapSide(front, mapper);
    if (ownBack) mapSide(*ownBack, mapper);
    mapIfRelative(alphaTexture, mapper);
    mapIfRelative(displacementTexture, mapper);
    mapIfRelative(subsurfaceTexture, mapper);
}

bool operator==(const MaterialData& a, const MaterialData& b)
{
    const bool sameBack =
        a.ownBack && b.ownBack ? *a.ownBack == *b.ownBack : a.ownBack == b.ownBack && a.backIsFront == b.backIsFront;
    return sameBack && a.matid == b.matid && a.name == b.name && a.alphaTexture == b.alphaTexture &&
           a.displacementTexture == b.displacementTexture && a.displacementHeight == b.displacementHeight &&
           a.displacementCentered == b.displacementCentered && a.subsurfaceColor == b.subsurfaceColor &&
           a.subsurfaceDepth == b.subsurfaceDepth && a.subsurfaceTexture == b.subsurfaceTexture && a.front == b.front;
}

} // namespace vdt
