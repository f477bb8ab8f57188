#include "geometry/c4d_mesh_input_accessor.h"

#include "geometry/handedness.h"
#include "support/text.h"
#include "ttexture.h"

#include <algorithm>
#include <span>
#include <utility>

namespace {

constexpr vdt::Vector3 kUnmappedCorners[4] = {{1, 1, 0}, {0, 1, 0}, {0, 0, 0}, {1, 0, 0}};

template <class Visit> void forEachTag(BaseObject* object, Int32 type, const Visit& visit)
{
    for (BaseTag* tag = object ? object->GetFirstTag() : nullptr; tag; tag = tag->GetNext())
        if (tag->GetType() == type) visit(tag);
}

BaseObject* nearestWithTexture(BaseObject* object)
{
    while (object && !object->GetTag(Ttexture)) object = object->GetUp();
    return object;
}

GeData parameter(C4DAtom& atom, Int32 id)
{
    GeData value;
    atom.GetParameter(DescID(DescLevel(id)), value, DESCFLAGS_GET_0);
    return value;
}

Float floatParameter(C4DAtom& atom, Int32 id, Float preset)
{
    const GeData value = parameter(atom, id);
    return value.GetType() == DA_REAL ? value.GetFloat() : preset;
}

Int32 cornerCount(const CPolygon& polygon)
{
    return polygon.IsTriangle() ? 3 : 4;
}

// The corner of the host's polygon that stands at `corner` in ours: the mirrored z turns the winding.
Int32 turnedCorner(const CPolygon& polygon, Int32 corner)
{
    const Int32 last = cornerCount(polygon) - 1;
    return corner > last ? 0 : last - corner;
}

const Vector& cornerOf(const UVWStruct& uvw, Int32 corner)
{
    return corner == 0 ? uvw.a : corner == 1 ? uvw.b : corner == 2 ? uvw.c : uvw.d;
}

std::span<Int32> polygonsAt(Neighbor& neighbor, Int32 point)
{
    Int32* polygons = nullptr;
    Int32 count = 0;
    neighbor.GetPointPolys(point, &polygons, &count);
    return {polygons, static_cast<size_t>(polygons ? count : 0)};
}

// The entry whose part of a joint numbering `index` lies in; null beyond the end.
template <class Entry>
const Entry* entryAt(const std::vector<Entry>& entries, uint64_t index, uint64_t Entry::*first, uint64_t Entry::*count)
{
    const auto behind = std::upper_bound(entries.begin(), entries.end(), index,
                                         [first](uint64_t value, const Entry& entry) { return value < entry.*first; });
    // Objects without any come before the one that begins at the same number.
    if (behind == entries.begin()) return nullptr;
    const Entry& entry = *(behind - 1);
    return index - entry.*first < entry.*count ? &entry : nullptr;
}

} // namespace

bool C4dMeshInputAccessor::Texture::liesOn(Int32 polygon) const
{
    return everywhere || std::any_of(selections.begin(), selections.end(),
                                     [polygon](const BaseSelect* select) { return select->IsSelected(polygon); });
}

C4dMeshInputAccessor::C4dMeshInputAccessor(Request request)
    : root(request.root),
      matrix(request.matrix),
      rendering(request.rendering),
      materials(std::move(request.materials))
{
    if (!root) return;
    BaseDocument* document = root->GetDocument();
    for (BaseMaterial* at = document ? document->GetFirstMaterial() : nullptr; at; at = at->GetNext())
        documentMaterials.push_back(at);

    bool visible = true;
    for (BaseObject* above = root->GetUp(); above; above = above->GetUp()) {
        const Int32 mode = rendering ? above->GetRenderMode() : above->GetEditorMode();
        if (mode == MODE_UNDEF) continue;
        visible = mode != MODE_OFF;
        break;
    }
    collect(root, {.toRoot = ~matrix, .textureTagOwner = nearestWithTexture(root), .visible = visible});
}

C4dMeshInputAccessor::C4dMeshInputAccessor(const C4dMeshInputAccessor& other)
    : vdt::MeshInputAccessor(other),
      root(other.root),
      matrix(other.matrix),
      rendering(other.rendering),
      materials(other.materials),
      documentMaterials(other.documentMaterials)
{
    for (const InputEntry& entry : other.entries) {
        entries.push_back({entry.object, entry.matrix, entry.normals, entry.textureTagOwner, entry.textures, entry.uvws,
                           entry.pointCount, entry.polygonCount, entry.firstPoint, entry.firstPolygon,
                           std::make_unique<Neighbor>()});
        entries.back().neighbor->Init(entry.object->GetPointCount(), entry.object->GetPolygonR(),
                                      entry.object->GetPolygonCount(), nullptr);
    }
}

void C4dMeshInputAccessor::collect(BaseObject* object, Walk walk)
{
    if (object->GetTag(Ttexture)) walk.textureTagOwner = object;
    const Int32 mode = rendering ? object->GetRenderMode() : object->GetEditorMode();
    if (mode != MODE_UNDEF) walk.visible = mode != MODE_OFF;

    BaseObject* cache = object->GetDeformCache();
    if (!cache) cache = object->GetCache();
    if (cache)
        for (BaseObject* made = cache; made; made = made->GetNext()) collect(made, walk);
    else if (object->GetType() == Opolygon && !object->GetBit(BIT_CONTROLOBJECT) && walk.visible)
        collectPolygons(static_cast<PolygonObject*>(object), walk);

    for (BaseObject* child = object->GetDown(); child; child = child->GetNext()) collect(child, walk);
}

void C4dMeshInputAccessor::collectPolygons(PolygonObject* object, const Walk& walk)
{
    InputEntry entry{.object = object,
                     .matrix = walk.toRoot * object->GetMg(),
                     .normals = {},
                     .textureTagOwner = walk.textureTagOwner,
                     .textures = texturesOn(object, walk.textureTagOwner),
                     .uvws = nullptr,
                     .pointCount = static_cast<uint64_t>(object->GetPointCount()),
                     .polygonCount = static_cast<uint64_t>(object->GetPolygonCount()),
                     .firstPoint = PointCount(),
                     .firstPolygon = PolygonCount(),
                     .neighbor = std::make_unique<Neighbor>()};
    entry.neighbor->Init(object->GetPointCount(), object->GetPolygonR(), object->GetPolygonCount(), nullptr);
    if (auto* uvwTag = static_cast<UVWTag*>(object->GetTag(Tuvw))) entry.uvws = uvwTag->GetDataAddressR();

    auto* normalTag = static_cast<NormalTag*>(object->GetTag(Tnormal));
    if (ConstNormalHandle stored = normalTag ? normalTag->GetDataAddressR() : nullptr) {
        entry.normals.reserve(entry.polygonCount);
        for (Int32 polygon = 0; polygon < object->GetPolygonCount(); ++polygon) {
            NormalStruct normals;
            NormalTag::Get(stored, polygon, normals);
            entry.normals.push_back(Vector32(normals.a));
        }
    }
    entries.push_back(std::move(entry));
}

std::vector<C4dMeshInputAccessor::Texture> C4dMeshInputAccessor::texturesOn(PolygonObject* object,
                                                                            BaseObject* owner) const
{
    std::vector<Texture> textures;
    forEachTag(owner, Ttexture, [&](BaseTag* tag) {
        BaseMaterial* material = static_cast<TextureTag*>(tag)->GetMaterial();
        if (!material) return;

        const auto place = std::find(documentMaterials.begin(), documentMaterials.end(), material);
        const GeData restriction = parameter(*tag, TEXTURETAG_RESTRICTION);
        const String name = restriction.GetType() == DA_STRING ? restriction.GetString() : String();
        Texture texture{.material = material,
                        .materialIndex = place == documentMaterials.end()
                                             ? -1
                                             : static_cast<Int32>(place - documentMaterials.begin()),
                        .everywhere = !name.Content(),
                        .selections = {},
                        .offsetU = floatParameter(*tag, TEXTURETAG_OFFSETX, 0),
                        .offsetV = floatParameter(*tag, TEXTURETAG_OFFSETY, 0),
                        .lengthU = floatParameter(*tag, TEXTURETAG_LENGTHX, 1),
                        .lengthV = floatParameter(*tag, TEXTURETAG_LENGTHY, 1)};
        forEachTag(object, Tpolygonselection, [&](BaseTag* selection) {
            if (selection->GetName() == name)
                texture.selections.push_back(static_cast<SelectionTag*>(selection)->GetBaseSelect());
        });
        textures.push_back(std::move(texture));
    });
    return textures;
}

const C4dMeshInputAccessor::InputEntry* C4dMeshInputAccessor::entryOfPoint(uint64_t point) const
{
    return entryAt(entries, point, &InputEntry::firstPoint, &InputEntry::pointCount);
}

const C4dMeshInputAccessor::InputEntry* C4dMeshInputAccessor::entryOfPolygon(uint64_t polygon) const
{
    return entryAt(entries, polygon, &InputEntry::firstPolygon, &InputEntry::polygonCount);
}

std::unique_ptr<vdt::MeshInputAccessor> C4dMeshInputAccessor::Clone() const
{
    return std::unique_ptr<vdt::MeshInputAccessor>(new C4dMeshInputAccessor(*this));
}

std::string C4dMeshInputAccessor::GetName() const
{
    return root ? ToUtf8(root->GetName()) : std::string();
}

void C4dMeshInputAccessor::WriteTo(vdt::MeshOutputAccessor& target, const vdt::Matrix& matrixToTarget) const
{
    target.AppendMesh(*this, matrixToTarget);
}

int32_t C4dMeshInputAccessor::FindAttribute(std::string_view name, bool* known) const
{
    const bool isNormal = name == "normal";
    if (known) *known = isNormal;
    return isNormal ? vdt::kNormalAttribute : -1;
}

bool C4dMeshInputAccessor::HasAttribute(int32_t id) const
{
    return id == vdt::kNormalAttribute &&
           std::any_of(entries.begin(), entries.end(), [](const InputEntry& entry) { return !entry.normals.empty(); });
}

bool C4dMeshInputAccessor::GetPointAttribute(int32_t id, uint64_t point, vdt::Vector3& value) const
{
    if (id != vdt::kNormalAttribute) return false;
    const InputEntry* entry = entryOfPoint(point);
    if (!entry) return true;
    if (entry->normals.empty()) return false;

    const std::span<Int32> polygons = polygonsAt(*entry->neighbor, static_cast<Int32>(point - entry->firstPoint));
    if (polygons.empty()) return false;
    const Vector normal(entry->normals[static_cast<size_t>(polygons.front())]);
    value = ToModel(entry->matrix.TransformVector(normal));
    return true;
}

uint64_t C4dMeshInputAccessor::PointCount() const
{
    return entries.empty() ? 0 : entries.back().firstPoint + entries.back().pointCount;
}

uint64_t C4dMeshInputAccessor::PolygonCount() const
{
    return entries.empty() ? 0 : entries.back().firstPolygon + entries.back().polygonCount;
}

vdt::Vector3& C4dMeshInputAccessor::GetPoint(vdt::Vector3& position, uint64_t index) const
{
    const InputEntry* entry = entryOfPoint(index);
    return position =
               entry ? ToModel(entry->matrix * entry->object->GetPointR()[index - entry->firstPoint]) : vdt::Vector3{};
}

bool C4dMeshInputAccessor::GetPolygon(uint64_t index, std::vector<uint64_t>& vertices,
                                      std::vector<vdt::Vector3>& coordinates, int32_t& material) const
{
    vdt::MeshPolygon polygon;
    if (!entryOfPolygon(index)) return false;
    GetPolygonRecord(polygon, index);

    const size_t corners = polygon.isTriangle() ? 3 : 4;
    vertices.assign(polygon.vertices, polygon.vertices + corners);
    coordinates.assign(polygon.coordinates, polygon.coordinates + corners);
    material = polygon.material;
    return true;
}

void C4dMeshInputAccessor::GetPolygonRecord(vdt::MeshPolygon& polygon, uint64_t index) const
{
    polygon = {};
    const InputEntry* entry = entryOfPolygon(index);
    if (!entry) return;

    const Int32 local = static_cast<Int32>(index - entry->firstPolygon);
    const CPolygon& corners = entry->object->GetPolygonR()[local];
    for (Int32 corner = 0; corner < 4; ++corner)
        polygon.vertices[corner] = entry->firstPoint + static_cast<uint64_t>(corners[turnedCorner(corners, corner)]);

    const auto texture = std::find_if(entry->textures.begin(), entry->textures.end(),
                                      [local](const Texture& candidate) { return candidate.liesOn(local); });
    const bool textured = texture != entry->textures.end();
    polygon.material = textured ? texture->materialIndex : -1;

    std::copy(std::begin(kUnmappedCorners), std::end(kUnmappedCorners), polygon.coordinates);
    if (!entry->uvws) return;
    UVWStruct uvw;
    UVWTag::Get(entry->uvws, local, uvw);
    for (Int32 corner = 0; corner < 4; ++corner) {
        Vector uv = cornerOf(uvw, turnedCorner(corners, corner));
        if (textured) {
            uv.x = (uv.x - texture->offsetU) / texture->lengthU;
            uv.y = (uv.y - texture->offsetV) / texture->lengthV;
        }
        polygon.coordinates[corner] = {uv.x, 1 - uv.y, 0};
    }
}

bool C4dMeshInputAccessor::IsPolygonFlagged(uint64_t index) const
{
    const InputEntry* entry = entryOfPolygon(index);
    if (!entry) return false;
    const Int32 local = static_cast<Int32>(index - entry->firstPolygon);
    return std::any_of(entry->textures.begin(), entry->textures.end(), [&](const Texture& texture) {
        return std::find(materials.begin(), materials.end(), texture.material) != materials.end() &&
               texture.liesOn(local);
    });
}

void C4dMeshInputAccessor::PolygonsAtPoint(std::vector<uint64_t>& polygons, uint64_t point) const
{
    polygons.clear();
    const InputEntry* entry = entryOfPoint(point);
    if (!entry) return;
    for (const Int32 polygon : polygonsAt(*entry->neighbor, static_cast<Int32>(point - entry->firstPoint)))
        polygons.push_back(entry->firstPolygon + static_cast<uint64_t>(polygon));
}

void C4dMeshInputAccessor::PointsAroundPoint(std::vector<uint64_t>& points, uint64_t point) const
{
    points.clear();
    const InputEntry* entry = entryOfPoint(point);
    if (!entry) return;

    const auto addOnce = [&](Int32 local) {
        const uint64_t number = entry->firstPoint + static_cast<uint64_t>(local);
        if (std::find(points.begin(), points.end(), number) == points.end()) points.push_back(number);
    };
    const Int32 localPoint = static_cast<Int32>(point - entry->firstPoint);
    for (const Int32 polygon : polygonsAt(*entry->neighbor, localPoint)) {
        const CPolygon& corners = entry->object->GetPolygonR()[polygon];
        const Int32 count = cornerCount(corners);
        for (Int32 corner = 0; corner < count; ++corner) {
            if (corners[corner] != localPoint) continue;
            addOnce(corners[(corner + count - 1) % count]);
            addOnce(corners[(corner + 1) % count]);
            break;
        }
    }
}
