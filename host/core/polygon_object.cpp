#include "c4d_file.h"
#include "core/document.h"
#include "core/geometry.h"
#include "core/node_class.h"

namespace host {
namespace {

template <class T> bool writeArray(HyperFile& file, const PlainArray<T>& array)
{
    return file.WriteMemory(array.data(), static_cast<Int>(array.size() * sizeof(T)));
}

// The size comes from the block itself, so nothing is taken that the file does not hold.
template <class T> bool readArray(HyperFile& file, PlainArray<T>& array)
{
    void* memory = nullptr;
    Int size = 0;
    if (!file.ReadMemory(&memory, &size)) return false;

    const auto count = static_cast<size_t>(size) / sizeof(T);
    const bool ok = static_cast<size_t>(size) % sizeof(T) == 0 && count <= static_cast<size_t>(LIMIT<Int32>::MAX) &&
                    array.assign({static_cast<const T*>(memory), count});
    DeleteMem(memory);
    return ok;
}

bool refersToPoints(const CPolygon& polygon, Int32 pointCount)
{
    const auto isPoint = [pointCount](Int32 index) { return index >= 0 && index < pointCount; };
    return isPoint(polygon.a) && isPoint(polygon.b) && isPoint(polygon.c) && isPoint(polygon.d);
}

bool liesBelow(const BaseSelect& selection, size_t count)
{
    return selection.GetLastElement() < static_cast<Int64>(count);
}

} // namespace

PolygonCore::PolygonCore(const NodeClass& objectClass) : ObjectCore(objectClass)
{
    MakeFacade<PolygonObject>();
}

std::vector<VariableTagCore*> PolygonCore::variableTags() const
{
    std::vector<VariableTagCore*> found;
    for (NodeCore* tag = tags.firstChild; tag; tag = tag->next)
        if (auto* variable = dynamic_cast<VariableTagCore*>(tag)) found.push_back(variable);
    return found;
}

bool PolygonCore::Resize(Int32 pointCount, Int32 polygonCount)
{
    if (pointCount < 0 || polygonCount < 0) return false;

    // All memory first, so that nothing is half done.
    const std::vector<VariableTagCore*> variable = variableTags();
    if (!points.reserve(static_cast<size_t>(pointCount))) return false;
    if (!polygons.reserve(static_cast<size_t>(polygonCount))) return false;
    for (VariableTagCore* tag : variable)
        if (!tag->Reserve(polygonCount)) return false;

    points.resize(static_cast<size_t>(pointCount));
    polygons.resize(static_cast<size_t>(polygonCount));
    for (VariableTagCore* tag : variable) tag->Resize(polygonCount);
    return true;
}

void PolygonCore::UpdateBox()
{
    boxCentre = boxRadius = Vector();
    if (points.size() == 0) return;

    Vector low = points[0], high = points[0];
    for (const Vector& p : std::span<const Vector>(points)) {
        low = Vector(FMin(low.x, p.x), FMin(low.y, p.y), FMin(low.z, p.z));
        high = Vector(FMax(high.x, p.x), FMax(high.y, p.y), FMax(high.z, p.z));
    }
    boxCentre = low * 0.5 + high * 0.5;
    boxRadius = high * 0.5 - low * 0.5;
}

void PolygonCore::Dimension(Vector& centre, Vector& radius) const
{
    centre = boxCentre;
    radius = boxRadius;
}

void PolygonCore::OnMessage(Int32 type, void* message)
{
    ObjectCore::OnMessage(type, message);
    if (type == MSG_UPDATE) UpdateBox();
}

UInt32 PolygonCore::DerivedCount(DIRTYFLAGS flag) const
{
    const UInt32 base = ObjectCore::DerivedCount(flag);
    if (flag != DIRTYFLAGS_SELECT) return base;
    return base + pointSelection.select.GetDirty() + polygonSelection.select.GetDirty();
}

void PolygonCore::OnInserted(ListCore* branch, NodeCore& node)
{
    ObjectCore::OnInserted(branch, node);
    if (auto* variable = dynamic_cast<VariableTagCore*>(&node)) variable->Resize(static_cast<Int32>(polygons.size()));
}

bool PolygonCore::CopyBodyTo(NodeCore& copy, COPYFLAGS flags, AliasTrans* translation) const
{
    auto& target = static_cast<PolygonCore&>(copy);
    if (!ObjectCore::CopyBodyTo(copy, flags, translation)) return false;
    if (!target.Resize(static_cast<Int32>(points.size()), static_cast<Int32>(polygons.size()))) return false;

    target.points.assign(points);
    target.polygons.assign(polygons);
    pointSelection.select.CopyTo(&target.pointSelection.select);
    polygonSelection.select.CopyTo(&target.polygonSelection.select);
    target.boxCentre = boxCentre;
    target.boxRadius = boxRadius;
    return true;
}

bool PolygonCore::WriteBody(HyperFile& file) const
{
    return ObjectCore::WriteBody(file) && writeArray(file, points) && writeArray(file, polygons) &&
           pointSelection.select.Write(&file) && polygonSelection.select.Write(&file);
}

bool PolygonCore::ReadBody(HyperFile& file, Int32 level)
{
    PlainArray<CPolygon> stored;
    if (!ObjectCore::ReadBody(file, level) || !readArray(file, points) || !readArray(file, stored)) return false;

    const Int32 pointCount = static_cast<Int32>(points.size());
    for (const CPolygon& polygon : std::span<const CPolygon>(stored))
        if (!refersToPoints(polygon, pointCount)) return false;
    if (!Resize(pointCount, static_cast<Int32>(stored.size())) || !polygons.assign(stored)) return false;

    BaseSelect& selectedPoints = pointSelection.select;
    BaseSelect& selectedPolygons = polygonSelection.select;
    if (!selectedPoints.Read(&file) || !selectedPolygons.Read(&file)) return false;
    if (!liesBelow(selectedPoints, points.size()) || !liesBelow(selectedPolygons, polygons.size())) return false;
    UpdateBox();
    return true;
}

PolygonCore* PolygonCoreOf(const BaseObject* object)
{
    return dynamic_cast<PolygonCore*>(CoreOf(object));
}

} // namespace host

namespace {

host::PolygonCore& coreOf(const PointObject* object)
{
    return *static_cast<host::PolygonCore*>(host::CoreOf(object));
}

} // namespace

Int32 PointObject::GetPointCount() const
{
    return static_cast<Int32>(coreOf(this).points.size());
}

const Vector* PointObject::GetPointR() const
{
    return coreOf(this).points.data();
}

Vector* PointObject::GetPointW()
{
    return coreOf(this).points.data();
}

BaseSelect* PointObject::GetPointS()
{
    return &coreOf(this).pointSelection.select;
}

Bool PointObject::ResizeObject(Int32 pcnt)
{
    return coreOf(this).Resize(pcnt, static_cast<Int32>(coreOf(this).polygons.size()));
}

PolygonObject* PolygonObject::Alloc(Int32 pcnt, Int32 vcnt)
{
    host::NodeCore* node = host::AllocNode(host::NodeKind::Object, Opolygon);
    if (node && !static_cast<host::PolygonCore*>(node)->Resize(pcnt, vcnt)) {
        host::FreeNode(node);
        return nullptr;
    }
    return host::FacadeOf<PolygonObject>(node);
}

void PolygonObject::Free(PolygonObject*& object)
{
    host::FreeNode(host::CoreOf(object));
    object = nullptr;
}

Int32 PolygonObject::GetPolygonCount() const
{
    return static_cast<Int32>(coreOf(this).polygons.size());
}

const CPolygon* PolygonObject::GetPolygonR() const
{
    return coreOf(this).polygons.data();
}

CPolygon* PolygonObject::GetPolygonW()
{
    return coreOf(this).polygons.data();
}

BaseSelect* PolygonObject::GetPolygonS()
{
    return &coreOf(this).polygonSelection.select;
}

Bool PolygonObject::ResizeObject(Int32 pcnt, Int32 vcnt)
{
    return coreOf(this).Resize(pcnt, vcnt);
}

NgonBase* PolygonObject::GetNgonBase()
{
    return &coreOf(this).outlines.ngons;
}

void NgonBase::UpdateNgons(PolygonObject*)
{
}

Bool NgonBase::ResetPoints(PolygonObject*)
{
    return true;
}
