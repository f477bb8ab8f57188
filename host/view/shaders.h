// The texts that run on the graphics card.
#pragma once

namespace host {

/// From local coordinates into the picture. To be followed by a kind's own vertex text.
extern const char* const kProjectionText;
extern const char* const kMeshVertexText;
extern const char* const kFlatVertexText;
extern const char* const kLineVertexText;
extern const char* const kBackdropVertexText;

/// What a pixel shows. To be followed by a kind's own fragment text.
extern const char* const kColorText;
extern const char* const kMeshFragmentText;
extern const char* const kFlatFragmentText;

/// Places of vertex values, the same in all texts.
enum VertexPlace { kPlacePosition = 0, kPlaceColor = 1, kPlaceNormal = 2, kPlaceEnd = 3, kPlaceEndColor = 4 };

} // namespace host
