// The facades of objects and tags, as far as all of them have it.
#include "core/document.h"
#include "core/node_class.h"
#include "core/object.h"
#include "obase.h"

using host::CoreOf;
using host::FacadeOf;
using host::NodeCore;
using host::ObjectCore;

namespace {

// The tag of a type by its number; null if there are fewer.
NodeCore* findTag(const ObjectCore& object, Int32 type, Int32 number)
{
    for (NodeCore* tag = object.tags.firstChild; tag; tag = tag->next) {
        if (tag->IsInstanceOf(type) && number-- == 0) return tag;
    }
    return nullptr;
}

// Whether a selector of CopyTagsTo lets a tag through that has, or has not, the quality.
bool wanted(Int32 selector, bool quality)
{
    return selector == NOTOK || (selector != 0) == quality;
}

} // namespace

BaseObject* BaseObject::Alloc(Int32 type)
{
    return FacadeOf<BaseObject>(host::AllocNode(host::NodeKind::Object, type));
}

void BaseObject::Free(BaseObject*& object)
{
    host::FreeNode(CoreOf(object));
    object = nullptr;
}

BaseObject* BaseObject::GetNext()
{
    return FacadeOf<BaseObject>(core->next);
}

BaseObject* BaseObject::GetPred()
{
    return FacadeOf<BaseObject>(core->previous);
}

BaseObject* BaseObject::GetUp()
{
    return FacadeOf<BaseObject>(core->up);
}

BaseObject* BaseObject::GetDown()
{
    return FacadeOf<BaseObject>(core->firstChild);
}

BaseObject* BaseObject::GetDownLast()
{
    return FacadeOf<BaseObject>(core->lastChild);
}

// --- coordinates; without a frozen part the relative ones are the absolute ones

Vector BaseObject::GetAbsPos() const
{
    return CoreOf(this)->Local().off;
}

Vector BaseObject::GetAbsScale() const
{
    return CoreOf(this)->Scale();
}

Vector BaseObject::GetAbsRot() const
{
    return CoreOf(this)->Rotation();
}

void BaseObject::SetAbsPos(const Vector& position)
{
    CoreOf(this)->SetPosition(position);
}

void BaseObject::SetAbsScale(const Vector& scale)
{
    CoreOf(this)->SetScale(scale);
}

void BaseObject::SetAbsRot(const Vector& hpb)
{
    CoreOf(this)->SetRotation(hpb);
}

Matrix BaseObject::GetMl() const
{
    return CoreOf(this)->Local();
}

void BaseObject::SetMl(const Matrix& m)
{
    CoreOf(this)->SetLocal(m);
}

Matrix BaseObject::GetMg() const
{
    return CoreOf(this)->Global();
}

void BaseObject::SetMg(const Matrix& m)
{
    CoreOf(this)->SetLocal(~CoreOf(this)->ParentGlobal() * m);
}

Vector BaseObject::GetMp()
{
    Vector centre, radius;
    CoreOf(this)->Dimension(centre, radius);
    return centre;
}

Vector BaseObject::GetRad()
{
    Vector centre, radius;
    CoreOf(this)->Dimension(centre, radius);
    return radius;
}

// --- modes and colour

Int32 BaseObject::GetEditorMode() const
{
    return CoreOf(this)->editorMode;
}

void BaseObject::SetEditorMode(Int32 mode)
{
    CoreOf(this)->SetBuiltIn(ID_BASEOBJECT_VISIBILITY_EDITOR, GeData(mode));
}

Int32 BaseObject::GetRenderMode() const
{
    return CoreOf(this)->renderMode;
}

void BaseObject::SetRenderMode(Int32 mode)
{
    CoreOf(this)->SetBuiltIn(ID_BASEOBJECT_VISIBILITY_RENDER, GeData(mode));
}

Bool BaseObject::GetDeformMode() const
{
    return CoreOf(this)->deformMode;
}

void BaseObject::SetDeformMode(Bool on)
{
    CoreOf(this)->SetBuiltIn(ID_BASEOBJECT_GENERATOR_FLAG, GeData(on));
}

void BaseObject::GetColorProperties(ObjectColorProperties* properties)
{
    const ObjectCore& object = *CoreOf(this);
    properties->usecolor = object.useColor;
    properties->color = object.color;
    properties->xray = object.xray;
}

void BaseObject::SetColorProperties(ObjectColorProperties* properties)
{
    ObjectCore& object = *CoreOf(this);
    object.SetBuiltIn(ID_BASEOBJECT_USECOLOR, GeData(properties->usecolor));
    object.SetBuiltIn(ID_BASEOBJECT_COLOR, GeData(properties->color));
    object.SetBuiltIn(ID_BASEOBJECT_XRAY, GeData(properties->xray));
}

// --- tags

BaseTag* BaseObject::GetFirstTag()
{
    return FacadeOf<BaseTag>(CoreOf(this)->tags.firstChild);
}

BaseTag* BaseObject::GetLastTag()
{
    return FacadeOf<BaseTag>(CoreOf(this)->tags.lastChild);
}

BaseTag* BaseObject::GetTag(Int32 type, Int32 nr)
{
    return FacadeOf<BaseTag>(findTag(*CoreOf(this), type, nr));
}

void BaseObject::InsertTag(BaseTag* tag, BaseTag* pred)
{
    if (!tag || tag == pred) return;
    CoreOf(tag)->Unlink();
    CoreOf(this)->tags.Insert(*CoreOf(tag), CoreOf(pred));
    host::TellInsertion(*CoreOf(tag));
}

BaseTag* BaseObject::MakeTag(Int32 type, BaseTag* pred)
{
    BaseTag* tag = BaseTag::Alloc(type);
    if (tag) InsertTag(tag, pred);
    return tag;
}

VariableTag* BaseObject::MakeVariableTag(Int32 type, Int32 count, BaseTag* pred)
{
    VariableTag* tag = VariableTag::Alloc(type, count);
    if (tag) InsertTag(tag, pred);
    return tag;
}

void BaseObject::KillTag(Int32 type, Int32 nr)
{
    host::FreeNode(findTag(*CoreOf(this), type, nr));
}

Bool BaseObject::CopyTagsTo(BaseObject* dest, Int32 visible, Int32 variable, Int32 hierarchical, AliasTrans* trans)
{
    if (!dest || dest == this) return false;
    host::ListCore& target = CoreOf(dest)->tags;
    for (NodeCore* tag = CoreOf(this)->tags.firstChild; tag; tag = tag->next) {
        const Int32 info = tag->nodeClass->info;
        if (!wanted(visible, info & host::kTagVisible) || !wanted(variable, tag->IsInstanceOf(Tvariable)) ||
            !wanted(hierarchical, info & host::kTagHierarchical)) {
            continue;
        }
        NodeCore* copy = host::CloneNode(*tag, COPYFLAGS_0, trans);
        if (!copy) return false;
        target.InsertLast(*copy);
    }
    return true;
}

// --- caches

BaseObject* BaseObject::GetCache(HierarchyHelp*)
{
    return FacadeOf<BaseObject>(CoreOf(this)->Cache());
}

BaseObject* BaseObject::GetDeformCache()
{
    return FacadeOf<BaseObject>(CoreOf(this)->DeformCache());
}

BaseObject* BaseObject::GetCacheParent()
{
    return FacadeOf<BaseObject>(core->CacheParent());
}

Bool BaseObject::CheckCache(HierarchyHelp* hh)
{
    ObjectCore& object = *CoreOf(this);
    bool stale = !object.Cache();
    if (hh) {
        stale = stale || object.builtFlags != hh->GetBuildFlags() || object.builtDetail != hh->GetLOD();
        object.builtFlags = hh->GetBuildFlags();
        object.builtDetail = hh->GetLOD();
    }
    return stale;
}

Bool BaseObject::IsDirty(DIRTYFLAGS flags)
{
    return CoreOf(this)->IsDirty(flags);
}

void BaseObject::Touch()
{
    CoreOf(this)->Touch();
}

// --- tags themselves

BaseTag* BaseTag::Alloc(Int32 type)
{
    return FacadeOf<BaseTag>(host::AllocNode(host::NodeKind::Tag, type));
}

void BaseTag::Free(BaseTag*& tag)
{
    host::FreeNode(CoreOf(tag));
    tag = nullptr;
}

BaseTag* BaseTag::GetNext()
{
    return FacadeOf<BaseTag>(core->next);
}

BaseTag* BaseTag::GetPred()
{
    return FacadeOf<BaseTag>(core->previous);
}

BaseObject* BaseTag::GetObject()
{
    return FacadeOf<BaseObject>(CoreOf(this)->Object());
}
