// The pictures by which a plant browser shows a library.
//
// A plant's own picture stands beside its model file, <library>/<Name>/<Name>.png; those of its variants in
// <library>/<Name>/models/<Name>_<variant>.png.
#pragma once

#include "commands/plant_options.h"
#include "picture/draw_picture.h"

namespace verdanth {

struct PreviewRequest {
    std::string library;
    bool overwrite = false; // else pictures that are there stay
    std::string sheet;      // a picture of all plants' previews; empty for none
    int columns = 0;        // of the sheet; 0: about as many as rows
};

/// Draws each variant in its default season. `options` tells how plants are built. False, with each error told, if
/// one of the pictures could not be made.
bool MakePreviews(const PreviewRequest& request, const PlantOptions& options, const ViewDirection& view,
                  const PictureSettings& settings, Console& console);

/// Writes the same picture to all `paths`. Gives the bytes written; 0, with the error told, if that fails.
uint64_t WritePictures(const std::vector<std::string>& paths, const Picture& picture, vdt::MessageHandler& messages);

} // namespace verdanth
