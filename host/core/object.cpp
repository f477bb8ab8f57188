#include "core/object.h"

#include "c4d_objectdata.h"
#include "core/node_class.h"
#include "obase.h"

#include <algorithm>
#include <cmath>

namespace host {
namespace {

void freeRow(ObjectCore* root)
{
    while (root) {
        auto* next = static_cast<ObjectCore*>(root->next);
        FreeNode(root);
        root = next;
    }
}

Int32 within(Int32 value, Int32 last, Int32 otherwise)
{
    return value >= 0 && value <= last ? value : otherwise;
}

} // namespace

ObjectCore::ObjectCore(const NodeClass& usedClass) : NodeCore(usedClass)
{
    MakeFacade<BaseObject>();
}

// --- matrices

Matrix ObjectCore::ParentGlobal() const
{
    const auto* above = static_cast<const ObjectCore*>(up ? up : CacheParent());
    return above ? above->Global() : Matrix();
}

Matrix ObjectCore::Global() const
{
    return ParentGlobal() * local;
}

void ObjectCore::SetLocal(const Matrix& matrix)
{
    local = matrix;
    scale = matrix.GetScale();
    // Axes that form a mirrored frame belong to a negative scale: angles describe rotations only.
    if (Dot(Cross(matrix.v1, matrix.v2), matrix.v3) < 0) scale = -scale;
    Matrix axes = matrix;
    axes.Normalize();
    if (scale.x < 0) axes.Scale(Vector(-1));
    rotation = MatrixToHPB(axes);
    moved();
}

void ObjectCore::SetPosition(const Vector& newPosition)
{
    local.off = newPosition;
    moved();
}

void ObjectCore::SetScale(const Vector& newScale)
{
    scale = newScale;
    rebuildLocal();
}

void ObjectCore::SetRotation(const Vector& hpb)
{
    rotation = hpb;
    rebuildLocal();
}

void ObjectCore::rebuildLocal()
{
    const Vector offset = local.off;
    local = HPBToMatrix(rotation);
    local.Scale(scale);
    local.off = offset;
    moved();
}

void ObjectCore::moved()
{
    Raise(DIRTYFLAGS_MATRIX);
    passMove();
}

void ObjectCore::inheritMove()
{
    ++inheritedMoves;
    passMove();
}

void ObjectCore::passMove()
{
    for (NodeCore* row : {firstChild, static_cast<NodeCore*>(cache), static_cast<NodeCore*>(deformCache)}) {
        for (; row; row = row->next) static_cast<ObjectCore*>(row)->inheritMove();
    }
}

// --- caches

void ObjectCore::SetCache(ObjectCore* root)
{
    if (root == cache) return;
    ObjectCore* old = cache;
    cache = root;
    for (NodeCore* each = root; each; each = each->next) static_cast<ObjectCore*>(each)->cacheOwner = this;
    freeRow(old);
    Raise(DIRTYFLAGS_CACHE);
}

void ObjectCore::SetDeformCache(ObjectCore* root)
{
    if (root == deformCache) return;
    ObjectCore* old = deformCache;
    deformCache = root;
    for (NodeCore* each = root; each; each = each->next) static_cast<ObjectCore*>(each)->cacheOwner = this;
    freeRow(old);
    Raise(DIRTYFLAGS_CACHE);
}

void ObjectCore::FreeCaches()
{
    SetCache(nullptr);
    SetDeformCache(nullptr);
}

void ObjectCore::Touch()
{
    for (std::size_t kind = 0; kind < kDirtyKinds; ++kind) noted[kind] = Dirty(kDirtyFlags[kind]);
    bits |= BIT_CONTROLOBJECT;
}

bool ObjectCore::IsDirty(DIRTYFLAGS mask) const
{
    for (std::size_t kind = 0; kind < kDirtyKinds; ++kind) {
        if ((mask & kDirtyFlags[kind]) && Dirty(kDirtyFlags[kind]) != noted[kind]) return true;
    }
    return false;
}

bool ObjectCore::IsGenerator() const
{
    return (nodeClass->info & OBJECT_GENERATOR) != 0;
}

void ObjectCore::Dimension(Vector& centre, Vector& radius) const
{
    centre = radius = Vector();
    if (!data) return;
    static_cast<ObjectData*>(data)->GetDimension(As<BaseObject>(), &centre, &radius);
    radius = Vector(std::abs(radius.x), std::abs(radius.y), std::abs(radius.z));
}

// --- what changes count

std::vector<ListCore*> ObjectCore::Branches() const
{
    std::vector<ListCore*> branches = NodeCore::Branches();
    branches.insert(branches.begin(), &tags);
    return branches;
}

UInt32 ObjectCore::DerivedCount(DIRTYFLAGS flag) const
{
    UInt32 count = NodeCore::DerivedCount(flag);
    if (flag == DIRTYFLAGS_MATRIX) count += inheritedMoves;
    if (flag == DIRTYFLAGS_DATA) {
        for (const NodeCore* tag = tags.firstChild; tag; tag = tag->next) count += tag->ContentCount();
    }
    return count;
}

UInt32 ObjectCore::ContentCount() const
{
    // Moves from above are not this object's own change.
    return NodeCore::ContentCount() + Stored(DIRTYFLAGS_MATRIX);
}

void ObjectCore::OnInserted(ListCore* branch, NodeCore& node)
{
    NodeCore::OnInserted(branch, node);
    if (branch == &tags) Raise(DIRTYFLAGS_DATA);
    if (!branch) static_cast<ObjectCore&>(node).inheritMove();
}

void ObjectCore::OnRemoved(ListCore* branch, NodeCore& node)
{
    NodeCore::OnRemoved(branch, node);
    // The tag's own count leaves the sum, which must not fall.
    if (branch == &tags) RaiseBy(DIRTYFLAGS_DATA, node.ContentCount() + 1);
    if (!branch) static_cast<ObjectCore&>(node).inheritMove();
}

// --- parameters that live in members

bool ObjectCore::GetBuiltIn(Int32 id, GeData& whole) const
{
    switch (id) {
    case ID_BASEOBJECT_VISIBILITY_EDITOR: whole = GeData(editorMode); return true;
    case ID_BASEOBJECT_VISIBILITY_RENDER: whole = GeData(renderMode); return true;
    case ID_BASEOBJECT_REL_POSITION: whole = GeData(local.off); return true;
    case ID_BASEOBJECT_REL_ROTATION: whole = GeData(rotation); return true;
    case ID_BASEOBJECT_REL_SCALE: whole = GeData(scale); return true;
    case ID_BASEOBJECT_GENERATOR_FLAG: whole = GeData(Int32(deformMode)); return true;
    case ID_BASEOBJECT_USECOLOR: whole = GeData(useColor); return true;
    case ID_BASEOBJECT_COLOR: whole = GeData(color); return true;
    case ID_BASEOBJECT_XRAY: whole = GeData(Int32(xray)); return true;
    default: return NodeCore::GetBuiltIn(id, whole);
    }
}

bool ObjectCore::SetBuiltIn(Int32 id, const GeData& whole)
{
    switch (id) {
    case ID_BASEOBJECT_REL_POSITION: SetPosition(whole.GetVector()); return true;
    case ID_BASEOBJECT_REL_ROTATION: SetRotation(whole.GetVector()); return true;
    case ID_BASEOBJECT_REL_SCALE: SetScale(whole.GetVector()); return true;
    case ID_BASEOBJECT_VISIBILITY_EDITOR: editorMode = within(whole.GetInt32(), MODE_UNDEF, MODE_UNDEF); break;
    case ID_BASEOBJECT_VISIBILITY_RENDER: renderMode = within(whole.GetInt32(), MODE_UNDEF, MODE_UNDEF); break;
    case ID_BASEOBJECT_GENERATOR_FLAG: deformMode = whole.GetBool(); break;
    case ID_BASEOBJECT_USECOLOR: useColor = within(whole.GetInt32(), ID_BASEOBJECT_USECOLOR_LAYER, 0); break;
    case ID_BASEOBJECT_COLOR: color = whole.GetVector(); break;
    case ID_BASEOBJECT_XRAY: xray = whole.GetBool(); break;
    default: return NodeCore::SetBuiltIn(id, whole);
    }
    Raise(DIRTYFLAGS_DATA);
    return true;
}

// --- copies and files

bool ObjectCore::CopyBodyTo(NodeCore& copy, COPYFLAGS flags, AliasTrans* translation) const
{
    if (!NodeCore::CopyBodyTo(copy, flags, translation)) return false;
    auto& object = static_cast<ObjectCore&>(copy);
    if (object.local != local || object.scale != scale || object.rotation != rotation) {
        object.local = local;
        object.scale = scale;
        object.rotation = rotation;
        object.moved();
    }
    object.editorMode = editorMode;
    object.renderMode = renderMode;
    object.deformMode = deformMode;
    object.useColor = useColor;
    object.color = color;
    object.xray = xray;
    return true;
}

bool ObjectCore::WriteBody(HyperFile& file) const
{
    return NodeCore::WriteBody(file) && file.WriteMatrix(local) && file.WriteVector(scale) &&
           file.WriteVector(rotation) && file.WriteInt32(editorMode) && file.WriteInt32(renderMode) &&
           file.WriteBool(deformMode) && file.WriteInt32(useColor) && file.WriteVector(color) && file.WriteBool(xray);
}

bool ObjectCore::ReadBody(HyperFile& file, Int32 level)
{
    Bool generates = deformMode, seenThrough = xray;
    const bool ok = NodeCore::ReadBody(file, level) && file.ReadMatrix(&local) && file.ReadVector(&scale) &&
                    file.ReadVector(&rotation) && file.ReadInt32(&editorMode) && file.ReadInt32(&renderMode) &&
                    file.ReadBool(&generates) && file.ReadInt32(&useColor) && file.ReadVector(&color) &&
                    file.ReadBool(&seenThrough);
    deformMode = generates;
    xray = seenThrough;
    editorMode = within(editorMode, MODE_UNDEF, MODE_UNDEF);
    renderMode = within(renderMode, MODE_UNDEF, MODE_UNDEF);
    useColor = within(useColor, ID_BASEOBJECT_USECOLOR_LAYER, ID_BASEOBJECT_USECOLOR_OFF);
    moved();
    return ok;
}

TagCore::TagCore(const NodeClass& usedClass) : NodeCore(usedClass)
{
    MakeFacade<BaseTag>();
}

ObjectCore* TagCore::Object() const
{
    NodeCore* owner = Owner();
    return owner && owner->Kind() == NodeKind::Object ? static_cast<ObjectCore*>(owner) : nullptr;
}

} // namespace host
