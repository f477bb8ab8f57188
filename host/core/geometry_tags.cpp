#include "c4d_basematerial.h"
#include "c4d_file.h"
#include "core/document.h"
#include "core/geometry.h"
#include "core/node_class.h"
#include "tphong.h"
#include "ttexture.h"

#include <cmath>

namespace host {
namespace {

struct UvwRecord {
    Float32 corners[4][3];
};

// Fixed point: normals have components from -1 to 1.
struct NormalRecord {
    Int16 corners[4][3];
};

constexpr Float kNormalOne = 32000;

Int16 toFixed(Float component)
{
    if (std::fabs(component) <= 1) return static_cast<Int16>(component * kNormalOne + std::copysign(0.5, component));
    if (std::isnan(component)) return 0;
    return static_cast<Int16>(std::copysign(kNormalOne, component));
}

void store(const Vector& v, Float32 (&corner)[3])
{
    for (Int32 i = 0; i < 3; ++i) corner[i] = static_cast<Float32>(v[i]);
}

void store(const Vector& v, Int16 (&corner)[3])
{
    for (Int32 i = 0; i < 3; ++i) corner[i] = toFixed(v[i]);
}

Vector fetch(const Float32 (&corner)[3])
{
    return Vector(corner[0], corner[1], corner[2]);
}

Vector fetch(const Int16 (&corner)[3])
{
    return Vector(corner[0], corner[1], corner[2]) * (1 / kNormalOne);
}

template <class Record, class Struct> void fetchAll(const void* records, Int32 index, Struct& values)
{
    const Record& record = static_cast<const Record*>(records)[index];
    values.a = fetch(record.corners[0]);
    values.b = fetch(record.corners[1]);
    values.c = fetch(record.corners[2]);
    values.d = fetch(record.corners[3]);
}

template <class Record, class Struct> void storeAll(void* records, Int32 index, const Struct& values)
{
    Record& record = static_cast<Record*>(records)[index];
    store(values.a, record.corners[0]);
    store(values.b, record.corners[1]);
    store(values.c, record.corners[2]);
    store(values.d, record.corners[3]);
}

VariableTagCore* allocVariable(Int32 type, Int32 count)
{
    NodeCore* node = count < 0 ? nullptr : AllocNode(NodeKind::Tag, type);
    auto* tag = dynamic_cast<VariableTagCore*>(node);
    if (tag && tag->Resize(count)) return tag;
    FreeNode(node);
    return nullptr;
}

void preparePhong(NodeCore& tag)
{
    constexpr Float kBreakAngle = 1.3962634015954636; // 80 degrees
    tag.container.SetBool(PHONGTAG_PHONG_ANGLELIMIT, false);
    tag.container.SetFloat(PHONGTAG_PHONG_ANGLE, kBreakAngle);
    tag.container.SetBool(PHONGTAG_PHONG_USEEDGES, true);
}

void prepareTexture(NodeCore& tag)
{
    tag.container.SetFloat(TEXTURETAG_OFFSETX, 0);
    tag.container.SetFloat(TEXTURETAG_OFFSETY, 0);
    tag.container.SetFloat(TEXTURETAG_LENGTHX, 1);
    tag.container.SetFloat(TEXTURETAG_LENGTHY, 1);
    tag.container.SetInt32(TEXTURETAG_PROJECTION, TEXTURETAG_PROJECTION_SPHERICAL);
    tag.container.SetInt32(TEXTURETAG_SIDE, TEXTURETAG_SIDE_FRONTANDBACK);
    tag.container.SetString(TEXTURETAG_RESTRICTION, String());
    tag.container.SetBool(TEXTURETAG_TILE, true);
    tag.container.SetBool(TEXTURETAG_SEAMLESS, false);
    tag.container.SetBool(TEXTURETAG_MIX, false);
}

template <class Core>
void enterTag(Registrations& registrations, Int32 id, const Char* name, std::vector<Int32> bases,
              void (*prepare)(NodeCore&) = nullptr)
{
    registrations.EnterClass({.id = id,
                              .kind = NodeKind::Tag,
                              .make = MakeCore<Core>,
                              .name = name,
                              .info = kTagVisible,
                              .bases = std::move(bases),
                              .prepare = prepare});
}

} // namespace

VariableTagCore::VariableTagCore(const NodeClass& tagClass)
    : TagCore(tagClass),
      recordSize(tagClass.id == Tnormal ? sizeof(NormalRecord) : sizeof(UvwRecord))
{
    if (tagClass.id == Tnormal)
        MakeFacade<NormalTag>();
    else
        MakeFacade<UVWTag>();
}

bool VariableTagCore::CopyBodyTo(NodeCore& copy, COPYFLAGS flags, AliasTrans* translation) const
{
    return TagCore::CopyBodyTo(copy, flags, translation) && static_cast<VariableTagCore&>(copy).bytes.assign(bytes);
}

bool VariableTagCore::WriteBody(HyperFile& file) const
{
    return TagCore::WriteBody(file) && file.WriteMemory(bytes.data(), static_cast<Int>(bytes.size()));
}

bool VariableTagCore::ReadBody(HyperFile& file, Int32 level)
{
    void* memory = nullptr;
    Int size = 0;
    if (!TagCore::ReadBody(file, level) || !file.ReadMemory(&memory, &size)) return false;

    const std::span<const UChar> stored(static_cast<const UChar*>(memory), static_cast<size_t>(size));
    const size_t count = stored.size() / recordSize;
    bool ok = stored.size() % recordSize == 0 && count <= static_cast<size_t>(LIMIT<Int32>::MAX);
    // In an object the number of records is the object's to say.
    const size_t wanted = Object() ? bytes.size() : stored.size();
    ok = ok && bytes.assign(stored) && bytes.resize(wanted);
    DeleteMem(memory);
    return ok;
}

SelectionTagCore::SelectionTagCore(const NodeClass& tagClass) : TagCore(tagClass)
{
    MakeFacade<SelectionTag>();
}

UInt32 SelectionTagCore::DerivedCount(DIRTYFLAGS flag) const
{
    const UInt32 base = TagCore::DerivedCount(flag);
    return flag == DIRTYFLAGS_DATA || flag == DIRTYFLAGS_SELECT ? base + selection.select.GetDirty() : base;
}

bool SelectionTagCore::CopyBodyTo(NodeCore& copy, COPYFLAGS flags, AliasTrans* translation) const
{
    return TagCore::CopyBodyTo(copy, flags, translation) &&
           selection.select.CopyTo(&static_cast<SelectionTagCore&>(copy).selection.select);
}

bool SelectionTagCore::WriteBody(HyperFile& file) const
{
    return TagCore::WriteBody(file) && selection.select.Write(&file);
}

bool SelectionTagCore::ReadBody(HyperFile& file, Int32 level)
{
    return TagCore::ReadBody(file, level) && selection.select.Read(&file);
}

TextureTagCore::TextureTagCore(const NodeClass& tagClass) : TagCore(tagClass)
{
    MakeFacade<TextureTag>();
}

void EnterGeometryClasses(Registrations& registrations)
{
    registrations.EnterClass({.id = Opolygon,
                              .make = MakeCore<PolygonCore>,
                              .name = "Polygon",
                              .info = OBJECT_POINTOBJECT | OBJECT_POLYGONOBJECT,
                              .description = "",
                              .bases = {Opoint, Obase, Tbaselist2d}});
    enterTag<VariableTagCore>(registrations, Tuvw, "UVW", {Tvariable, Tbase, Tbaselist2d});
    enterTag<VariableTagCore>(registrations, Tnormal, "Normal", {Tvariable, Tbase, Tbaselist2d});
    enterTag<SelectionTagCore>(registrations, Tpolygonselection, "Polygon Selection", {Tbase, Tbaselist2d});
    enterTag<SelectionTagCore>(registrations, Tpointselection, "Point Selection", {Tbase, Tbaselist2d});
    enterTag<SelectionTagCore>(registrations, Tedgeselection, "Edge Selection", {Tbase, Tbaselist2d});
    enterTag<TextureTagCore>(registrations, Ttexture, "Texture", {Tbase, Tbaselist2d}, prepareTexture);
    enterTag<TagCore>(registrations, Tphong, "Phong", {Tbase, Tbaselist2d}, preparePhong);
}

} // namespace host

VariableTag* VariableTag::Alloc(Int32 type, Int32 count)
{
    return host::FacadeOf<VariableTag>(host::allocVariable(type, count));
}

void VariableTag::Free(VariableTag*& tag)
{
    host::FreeNode(host::CoreOf(tag));
    tag = nullptr;
}

Int32 VariableTag::GetDataCount() const
{
    return static_cast<const host::VariableTagCore*>(host::CoreOf(this))->Count();
}

namespace {

const void* readAddress(const VariableTag* tag)
{
    return static_cast<const host::VariableTagCore*>(host::CoreOf(tag))->bytes.data();
}

// Who asks for it is going to change the data.
void* writeAddress(VariableTag* tag)
{
    auto* core = static_cast<host::VariableTagCore*>(host::CoreOf(tag));
    core->Raise(DIRTYFLAGS_DATA);
    return core->bytes.data();
}

} // namespace

UVWTag* UVWTag::Alloc(Int32 count)
{
    return host::FacadeOf<UVWTag>(host::allocVariable(Tuvw, count));
}

void UVWTag::Free(UVWTag*& tag)
{
    host::FreeNode(host::CoreOf(tag));
    tag = nullptr;
}

UVWHandle UVWTag::GetDataAddressW()
{
    return writeAddress(this);
}

ConstUVWHandle UVWTag::GetDataAddressR() const
{
    return readAddress(this);
}

void UVWTag::Get(ConstUVWHandle dataptr, Int32 i, UVWStruct& res)
{
    host::fetchAll<host::UvwRecord>(dataptr, i, res);
}

void UVWTag::Set(UVWHandle dataptr, Int32 i, const UVWStruct& s)
{
    host::storeAll<host::UvwRecord>(dataptr, i, s);
}

NormalTag* NormalTag::Alloc(Int32 count)
{
    return host::FacadeOf<NormalTag>(host::allocVariable(Tnormal, count));
}

void NormalTag::Free(NormalTag*& tag)
{
    host::FreeNode(host::CoreOf(tag));
    tag = nullptr;
}

NormalHandle NormalTag::GetDataAddressW()
{
    return writeAddress(this);
}

ConstNormalHandle NormalTag::GetDataAddressR() const
{
    return readAddress(this);
}

void NormalTag::Get(ConstNormalHandle dataptr, Int32 i, NormalStruct& res)
{
    host::fetchAll<host::NormalRecord>(dataptr, i, res);
}

void NormalTag::Set(NormalHandle dataptr, Int32 i, const NormalStruct& s)
{
    host::storeAll<host::NormalRecord>(dataptr, i, s);
}

SelectionTag* SelectionTag::Alloc(Int32 type)
{
    host::NodeCore* node = host::AllocNode(host::NodeKind::Tag, type);
    if (node && !dynamic_cast<host::SelectionTagCore*>(node)) {
        host::FreeNode(node);
        node = nullptr;
    }
    return host::FacadeOf<SelectionTag>(node);
}

void SelectionTag::Free(SelectionTag*& tag)
{
    host::FreeNode(host::CoreOf(tag));
    tag = nullptr;
}

BaseSelect* SelectionTag::GetBaseSelect()
{
    return &static_cast<host::SelectionTagCore*>(host::CoreOf(this))->selection.select;
}

TextureTag* TextureTag::Alloc()
{
    return host::FacadeOf<TextureTag>(host::AllocNode(host::NodeKind::Tag, Ttexture));
}

void TextureTag::Free(TextureTag*& tag)
{
    host::FreeNode(host::CoreOf(tag));
    tag = nullptr;
}

void TextureTag::SetMaterial(BaseMaterial* material)
{
    host::CoreOf(this)->container.SetLink(TEXTURETAG_MATERIAL, material);
}

BaseMaterial* TextureTag::GetMaterial(Bool ignoredoc)
{
    const host::NodeCore* tag = host::CoreOf(this);
    BaseMaterial* material = tag->container.GetMaterialLink(TEXTURETAG_MATERIAL, nullptr);
    if (!material || ignoredoc) return material;

    // A tag that stands nowhere yet sees the materials of all documents.
    const host::DocumentCore* home = host::CoreOf(material)->Document();
    const host::DocumentCore* ours = tag->Document();
    return home && (!ours || ours == home) ? material : nullptr;
}
