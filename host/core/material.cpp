#include "core/material.h"

#include "core/node_class.h"
#include "mreflection.h"

using host::CoreOf;
using host::FacadeOf;
using host::NodeCore;
using host::NodeKind;

namespace host {
namespace {

constexpr Int32 kMostLayers = 256;

bool isLink(const GeData& value)
{
    return value.GetType() == DA_ALIASLINK;
}

bool sameEntries(const BaseContainer& a, const BaseContainer& b)
{
    Int32 i = 0, j = 0;
    for (;; ++i, ++j) {
        while (a.GetIndexData(i) && isLink(*a.GetIndexData(i))) ++i;
        while (b.GetIndexData(j) && isLink(*b.GetIndexData(j))) ++j;
        const GeData* first = a.GetIndexData(i);
        const GeData* second = b.GetIndexData(j);
        if (!first || !second) return !first && !second;
        if (a.GetIndexId(i) != b.GetIndexId(j)) return false;
        const BaseContainer *inner = first->GetContainer(), *other = second->GetContainer();
        if (inner && other ? !sameEntries(*inner, *other) : *first != *second) return false;
    }
}

bool sameRow(const NodeCore* a, const NodeCore* b)
{
    for (; a && b; a = a->next, b = b->next) {
        if (!SameLook(*a, *b)) return false;
    }
    return !a && !b;
}

} // namespace

MaterialCore::MaterialCore(const NodeClass& usedClass) : NodeCore(usedClass)
{
    MakeFacade<BaseMaterial>();
}

StandardMaterialCore::StandardMaterialCore(const NodeClass& usedClass) : MaterialCore(usedClass)
{
    MakeFacade<Material>();
}

const BaseContainer* StandardMaterialCore::Layers() const
{
    return container.GetContainerInstance(REFLECTION_LAYERS);
}

ReflectionLayer* StandardMaterialCore::AddLayer()
{
    BaseContainer layers = container.GetContainer(REFLECTION_LAYERS);
    for (Int32 i = 0; i < kMostLayers; ++i) {
        const Int32 dataId = REFLECTION_LAYER_LAYER_DATA + i * REFLECTION_LAYER_LAYER_SIZE;
        if (layers.GetDataPointer(dataId)) continue;
        layers.SetBool(dataId, true);
        container.SetContainer(REFLECTION_LAYERS, layers);
        return lend(dataId);
    }
    return nullptr;
}

ReflectionLayer* StandardMaterialCore::LayerAt(Int32 index)
{
    const BaseContainer* layers = Layers();
    return layers && layers->GetIndexData(index) ? lend(layers->GetIndexId(index)) : nullptr;
}

ReflectionLayer* StandardMaterialCore::lend(Int32 dataId)
{
    return &lent.emplace(dataId, ReflectionLayer(dataId)).first->second;
}

ShaderCore::ShaderCore(const NodeClass& usedClass) : NodeCore(usedClass)
{
    MakeFacade<BaseShader>();
}

VideoPostCore::VideoPostCore(const NodeClass& usedClass) : NodeCore(usedClass)
{
    MakeFacade<BaseVideoPost>();
}

RenderDataCore::RenderDataCore(const NodeClass& usedClass) : NodeCore(usedClass)
{
    MakeFacade<RenderData>();
}

std::vector<ListCore*> RenderDataCore::Branches() const
{
    std::vector<ListCore*> branches = NodeCore::Branches();
    branches.insert(branches.begin(), &videoPosts);
    return branches;
}

bool SameLook(const NodeCore& a, const NodeCore& b)
{
    return a.nodeClass == b.nodeClass && sameEntries(a.container, b.container) &&
           sameRow(a.FirstShader(), b.FirstShader()) && sameRow(a.firstChild, b.firstChild);
}

} // namespace host

BaseMaterial* BaseMaterial::Alloc(Int32 type)
{
    return FacadeOf<BaseMaterial>(host::AllocNode(NodeKind::Material, type));
}

void BaseMaterial::Free(BaseMaterial*& material)
{
    host::FreeNode(CoreOf(material));
    material = nullptr;
}

BaseMaterial* BaseMaterial::GetNext()
{
    return FacadeOf<BaseMaterial>(core->next);
}

BaseMaterial* BaseMaterial::GetPred()
{
    return FacadeOf<BaseMaterial>(core->previous);
}

void BaseMaterial::Update(Int32, Bool)
{
    core->Raise(DIRTYFLAGS_DATA);
}

Bool BaseMaterial::Compare(BaseMaterial* dst)
{
    return dst && host::SameLook(*core, *CoreOf(dst));
}

ReflectionLayer* Material::AddReflectionLayer()
{
    return static_cast<host::StandardMaterialCore*>(core)->AddLayer();
}

Int32 Material::GetReflectionLayerCount() const
{
    const BaseContainer* layers = static_cast<host::StandardMaterialCore*>(core)->Layers();
    Int32 count = 0;
    while (layers && layers->GetIndexData(count)) ++count;
    return count;
}

ReflectionLayer* Material::GetReflectionLayerIndex(Int32 index)
{
    return static_cast<host::StandardMaterialCore*>(core)->LayerAt(index);
}

BaseShader* BaseShader::Alloc(Int32 type)
{
    return FacadeOf<BaseShader>(host::AllocNode(NodeKind::Shader, type));
}

void BaseShader::Free(BaseShader*& shader)
{
    host::FreeNode(CoreOf(shader));
    shader = nullptr;
}

BaseShader* BaseShader::GetNext()
{
    return FacadeOf<BaseShader>(core->next);
}

BaseShader* BaseShader::GetPred()
{
    return FacadeOf<BaseShader>(core->previous);
}

BaseShader* BaseShader::GetUp()
{
    return FacadeOf<BaseShader>(core->up);
}

BaseShader* BaseShader::GetDown()
{
    return FacadeOf<BaseShader>(core->firstChild);
}

BaseShader* BaseShader::GetDownLast()
{
    return FacadeOf<BaseShader>(core->lastChild);
}

Bool BaseShader::Compare(BaseShader* dst)
{
    return dst && host::SameLook(*core, *CoreOf(dst));
}

RenderData* RenderData::Alloc()
{
    return FacadeOf<RenderData>(host::AllocNode(NodeKind::RenderData, Rbase));
}

void RenderData::Free(RenderData*& data)
{
    host::FreeNode(CoreOf(data));
    data = nullptr;
}

RenderData* RenderData::GetNext()
{
    return FacadeOf<RenderData>(core->next);
}

RenderData* RenderData::GetPred()
{
    return FacadeOf<RenderData>(core->previous);
}

BaseVideoPost* RenderData::GetFirstVideoPost()
{
    return FacadeOf<BaseVideoPost>(static_cast<host::RenderDataCore*>(core)->videoPosts.firstChild);
}

void RenderData::InsertVideoPost(BaseVideoPost* post, BaseVideoPost* pred)
{
    if (!post || post == pred) return;
    CoreOf(post)->Unlink();
    static_cast<host::RenderDataCore*>(core)->videoPosts.Insert(*CoreOf(post), CoreOf(pred));
}

BaseVideoPost* BaseVideoPost::Alloc(Int32 type)
{
    return FacadeOf<BaseVideoPost>(host::AllocNode(NodeKind::VideoPost, type));
}

void BaseVideoPost::Free(BaseVideoPost*& post)
{
    host::FreeNode(CoreOf(post));
    post = nullptr;
}

BaseVideoPost* BaseVideoPost::GetNext()
{
    return FacadeOf<BaseVideoPost>(core->next);
}

BaseVideoPost* BaseVideoPost::GetPred()
{
    return FacadeOf<BaseVideoPost>(core->previous);
}
