// Textures as the ray tracer reads them: decoded once, repeated in both directions, and smooth between pixels.
#pragma once

#include "export/picture.h"
#include "picture/float_math.h"
#include "vdt/messages/message_handler.h"

#include <map>
#include <memory>
#include <string>

namespace verdanth {

class Texture {
public:
    explicit Texture(Picture source);

    /// The colour at a texture coordinate.
    Light color(const vdt::Vector2f& coordinate) const;
    /// The bytes at a texture coordinate as they are, 0 to 1: for normals.
    Float3 raw(const vdt::Vector2f& coordinate) const;
    /// How much of the surface is there: the alpha if the picture has any that is not full, else the brightness.
    float opacity(const vdt::Vector2f& coordinate) const;

    bool hasAlpha() const { return alphaUsed; }

private:
    Picture picture;
    std::vector<uint8_t> mask;
    bool alphaUsed = false;
};

/// Reads each file once. A file that cannot be used is told once, and gives null.
class TextureStore {
public:
    explicit TextureStore(vdt::MessageHandler& handler) : messages(&handler) {}

    const Texture* find(const std::string& path);
    /// The side's normals; without such a picture those of its heights.
    const Texture* findRelief(const SceneSide& side);

private:
    const Texture* findMade(const std::string& path, float bumpStrength);

    vdt::MessageHandler* messages;
    std::map<std::pair<std::string, float>, std::unique_ptr<Texture>> textures; // by path and strength; 0: as it is
};

} // namespace verdanth
