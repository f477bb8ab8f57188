#include "core/edits.h"

#include "core/documents.h"

namespace host {
namespace {

// The point on the line of sight that is nearest to the world's origin.
Vector centreOfView(BaseDraw& view)
{
    const Matrix camera = view.GetMg();
    const Vector sight = camera.v3.GetNormalized();
    return camera.off - sight * Dot(camera.off, sight);
}

void closeUndo(Marker document)
{
    if (NodeCore* node = FindNode(document)) static_cast<DocumentCore*>(node)->undo.closeAll();
}

} // namespace

void PlaceObject(BaseDocument& document, BaseObject& object)
{
    document.InsertObject(&object, nullptr, nullptr, true);
    document.SetActiveObject(&object, SELECTION_NEW);
}

BaseObject* CreateFromMenu(Int32 type)
{
    BaseDocument* document = GetActiveDocument();
    if (!document) return nullptr;
    StopAllThreads();

    document->StartUndo();
    BaseObject* object = BaseObject::Alloc(type);
    if (object) {
        object->Message(MSG_MENUPREPARE, document);
        PlaceObject(*document, *object);
        BaseDraw* view = document->GetActiveBaseDraw();
        if (view && GetWorldContainerInstance()->GetBool(WPREF_CENTER)) object->SetAbsPos(centreOfView(*view));
        document->AddUndo(UNDOTYPE_NEW, object);
    }
    document->EndUndo();
    closeUndo(CoreOf(document)->GetMarker());
    if (object) EventAdd();
    return object;
}

ParameterGesture::ParameterGesture(std::span<BaseList2D* const> changed, const DescID& changedParameter)
    : parameter(changedParameter)
{
    StopAllThreads();
    for (const BaseList2D* node : changed) nodes.push_back(CoreOf(node)->GetMarker());
    const DocumentCore* owner = changed.empty() ? nullptr : CoreOf(changed.front())->Document();
    document = owner ? owner->GetMarker() : 0;

    BaseDocument* told = documentOfAll();
    if (told) told->StartUndo();
    DescriptionInitUndo message;
    message.doc = told;
    message.descid = &parameter;
    for (const Marker marker : nodes) {
        if (NodeCore* node = FindNode(marker)) SendTo(*node, MSG_DESCRIPTION_INITUNDO, &message);
        NodeCore* node = FindNode(marker);
        if (told && node) told->AddUndo(UNDOTYPE_CHANGE_SMALL, node->As<BaseList2D>());
    }
}

BaseDocument* ParameterGesture::documentOfAll() const
{
    return FacadeOf<BaseDocument>(FindNode(document));
}

bool ParameterGesture::set(const GeData& value)
{
    StopAllThreads();
    DescriptionCheckUpdate update;
    update.doc = documentOfAll();
    update.descid = &parameter;
    bool taken = true;
    for (const Marker marker : nodes) {
        NodeCore* node = FindNode(marker);
        if (!node) continue;
        taken &= node->As<BaseList2D>()->SetParameter(parameter, value, DESCFLAGS_SET_USERINTERACTION) != 0;
        if ((node = FindNode(marker))) SendTo(*node, MSG_DESCRIPTION_CHECKUPDATE, &update);
        if ((node = FindNode(marker))) SendTo(*node, MSG_DESCRIPTION_VALIDATE, nullptr);
    }
    EventAdd();
    return taken;
}

ParameterGesture::~ParameterGesture()
{
    StopAllThreads();
    for (const Marker marker : nodes) {
        if (NodeCore* node = FindNode(marker)) SendTo(*node, MSG_DESCRIPTION_USERINTERACTION_END, nullptr);
    }
    closeUndo(document);
}

bool EditParameter(std::span<BaseList2D* const> nodes, const DescID& id, const GeData& value)
{
    return ParameterGesture(nodes, id).set(value);
}

bool EditParameter(BaseList2D& node, const DescID& id, const GeData& value)
{
    BaseList2D* const one[] = {&node};
    return EditParameter(one, id, value);
}

void PressButton(BaseList2D& node, const DescID& id)
{
    StopAllThreads();
    const DocumentCore* document = CoreOf(&node)->Document();
    const Marker marker = document ? document->GetMarker() : 0;
    DescriptionCommand command;
    command.id = id;
    node.Message(MSG_DESCRIPTION_COMMAND, &command);
    closeUndo(marker);
    EventAdd();
}

} // namespace host

void InsertCreateObject(BaseDocument* document, BaseObject* object, BaseObject*)
{
    if (document && object) host::PlaceObject(*document, *object);
}
