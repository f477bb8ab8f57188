#include "support/colour_space.h"

#include "ddoc.h"

ColourSpace DocumentColourSpace(BaseDocument* document)
{
    const BaseContainer* settings = document ? document->GetDataInstance() : nullptr;
    if (!settings) return ColourSpace::Linear;

    const Bool managed = settings->GetBool(DOCUMENT_LINEARWORKFLOW);
    const Bool linear = settings->GetInt32(DOCUMENT_COLORPROFILE) == DOCUMENT_COLORPROFILE_LINEAR;
    return managed && linear ? ColourSpace::Linear : ColourSpace::Srgb;
}

Vector SrgbToLinear(const Vector& colour)
{
    return TransformColor(colour, COLORSPACETRANSFORMATION_SRGB_TO_LINEAR);
}

Vector LinearToSrgb(const Vector& colour)
{
    return TransformColor(colour, COLORSPACETRANSFORMATION_LINEAR_TO_SRGB);
}

Vector SrgbToParameter(const Vector& colour, ColourSpace space)
{
    return space == ColourSpace::Linear ? SrgbToLinear(colour) : colour;
}

Vector ParameterToSrgb(const Vector& colour, ColourSpace space)
{
    return space == ColourSpace::Linear ? LinearToSrgb(colour) : colour;
}
