// Pictures for materials: bitmap shaders, and where their files are.
#pragma once

#include "support/host_ptr.h"

#include <string>

/// The channel that is a picture's own transparency.
constexpr Int32 kAlphaChannel = 16286;

/// `path` with the separators that scenes of this host hold.
Filename TextureFilename(const std::string& path);

/// Shows the picture, which need not exist. Null for an empty path. `scaled` is reserved.
HostPtr<BaseShader> loadTextureShader(const std::string& path, Bool scaled);

/// Makes a bitmap shader give one channel of its picture, by a layer set of this LAYERSETMODE: kAlphaChannel, or none
/// by name.
void setAlphaChannel(BaseShader& shader, Int32 mode, Int32 channel);

/// The file that holds a picture's cut-out alone, called after the picture: "leaf_a.png" for "leaf.png". The picture
/// itself if only that exists.
std::string CutoutPath(const std::string& picture);
