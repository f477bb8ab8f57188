// Collects the materials that a scene's polygons use.
#pragma once

#include "export/scene.h"
#include "vdt/messages/message_handler.h"
#include "vdt/model/model.h"

#include <map>
#include <string>
#include <vector>

namespace verdanth {

/// The id of polygons that stand for a whole crown and take the model's foliage colour.
constexpr int32_t kCrownMaterial = -1;

class SceneMaterials {
public:
    /// Materials are appended to `target`, each read from the model when it is first asked for. What the model lacks
    /// is told and becomes grey; a picture that cannot be used is told once and left out.
    SceneMaterials(const vdt::Model& source, std::string shownSeason, std::vector<SceneMaterial>& target,
                   vdt::MessageHandler& handler, MaterialQuality wantedQuality = MaterialQuality::High)
        : model(&source),
          season(std::move(shownSeason)),
          materials(&target),
          messages(&handler),
          quality(wantedQuality)
    {
    }

    /// The position of a material in the target.
    uint32_t indexOf(int32_t matid);
    const SceneMaterial& operator[](uint32_t index) const { return (*materials)[index]; }

private:
    SceneMaterial convert(int32_t matid);
    SceneSide convertSide(const vdt::MaterialSide& side, const std::string& alphaTexture);
    void addTransmission(const vdt::MaterialData& source, SceneMaterial& material);
    SceneMaterial crownMaterial() const;
    std::string usable(const std::string& path, MaterialQuality least = MaterialQuality::Medium);

    const vdt::Model* model;
    std::string season;
    std::vector<SceneMaterial>* materials;
    vdt::MessageHandler* messages;
    MaterialQuality quality;
    std::map<int32_t, uint32_t> indices;
    std::map<std::string, bool> usablePictures;
    int32_t lastId = 0;
    uint32_t lastIndex = 0;
};

} // namespace verdanth
