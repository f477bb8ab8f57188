// What a view of a document shows: its objects, and what stands for them in caches.
#pragma once

#include "c4d_basedocument.h"
#include "view/projection.h"

#include <functional>

namespace host {

/// An object that is visible, alone or in the cache of one that is.
struct ShownObject {
    BaseObject& object;
    Matrix matrix;     // its space to the world; for the product of a render instance not the object's own
    BaseObject& owner; // the object of the document's tree that brings it: itself outside of caches
    // Whose colour it shows: its own, or that of the generator that made it.
    BaseObject& colorSource;
    bool elsewhere;   // a render instance shows it
    bool showsItself; // false if something else is shown in its place: its cache, or what it was an input of
};

/// Visits in tree order, an object before what is in its cache and before its children. Hidden are objects that are
/// switched off, those below them that follow their parents, and those on layers that are not viewed. A render instance
/// brings the cache of the object that it links to, at its own place. `leave` comes behind an object's cache, before
/// its children.
using ShownVisitor = std::function<void(const ShownObject&)>;
void VisitShown(BaseDocument& document, const ShownVisitor& visit, const ShownVisitor& leave = {});

/// The object's points through `matrix`; of two points or fewer, and where it is no point object, the corners of its
/// box.
void VisitOutline(BaseObject& object, const Matrix& matrix, const std::function<void(const Vector&)>& visit);

/// Of all that is shown.
Extent ExtentOfShown(BaseDocument& document);

} // namespace host
