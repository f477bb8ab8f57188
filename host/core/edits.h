// What a user does to nodes: making objects from the menu, changing parameters, pressing buttons.
//
// Each is one command: the worker is stopped before, the step of undo is closed after.
#pragma once

#include "core/document.h"

#include <span>

namespace host {

/// As the menu's entry for that object does, in the active document. Null if there is no such object or no document.
BaseObject* CreateFromMenu(Int32 type);

/// The half of it that places the object: first in the document, under a name of its own, the only active one.
void PlaceObject(BaseDocument& document, BaseObject& object);

/// A change of one parameter of some nodes of one document, from the first touch of its gadget to the release: one
/// step of undo, however many values came by.
class ParameterGesture {
public:
    ParameterGesture(std::span<BaseList2D* const> changed, const DescID& changedParameter);
    ParameterGesture(const ParameterGesture&) = delete;
    ParameterGesture& operator=(const ParameterGesture&) = delete;
    ~ParameterGesture(); // the release

    /// False if some node did not take the value.
    bool set(const GeData& value);

private:
    BaseDocument* documentOfAll() const;

    std::vector<Marker> nodes;
    DescID parameter;
    Marker document = 0;
};

/// A whole gesture with one value.
bool EditParameter(BaseList2D& node, const DescID& id, const GeData& value);
bool EditParameter(std::span<BaseList2D* const> nodes, const DescID& id, const GeData& value);

/// A press of the button that is shown for the parameter.
void PressButton(BaseList2D& node, const DescID& id);

} // namespace host
