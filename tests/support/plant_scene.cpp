#include "support/plant_scene.h"

#include "mmaterial.h"
#include "oplant.h"
#include "support/plugin_ids.h"
#include "support/text.h"
#include "ttexture.h"

#include <gtest/gtest.h>

#include <array>
#include <stdexcept>
#include <sys/inotify.h>
#include <unistd.h>

namespace host::test {
namespace {

// A trunk with a side branch; leaves in groups 1 and 2 at the points that are named.
std::string skeleton(std::string_view leaves, std::string_view groups)
{
    return "<skeleton><points>0 0 0  0 10 0  1 20 2  4 14 1  -3 16 -4  2 25 1</points><polylines><nvertices>4 2 2"
           "</nvertices><vertices>0 1 2 5  1 3  2 4</vertices><attrib name=\"matid\" type=\"int\" "
           "storageclass=\"primitive\">1 1 1</attrib><attrib name=\"radius\" type=\"float\" storageclass=\"vertex\">"
           "0.9 0.7 0.5 0.2  0.3 0.1  0.25 0.1</attrib></polylines><connectors><vertices>" +
           std::string(leaves) + "</vertices><attrib name=\"group\" type=\"int\" storageclass=\"vertex\">" +
           std::string(groups) + "</attrib></connectors></skeleton>";
}

std::string leaf(int group, std::string_view season)
{
    return "<mesh name=\"leaf\" group=\"" + std::to_string(group) + "\"" +
           (season.empty() ? "" : " qualifier=\"" + std::string(season) + "\"") +
           "><points>0 0 0  1 0 2  0 1 4  -1 0 2</points><polygons><nvertices>4 3</nvertices><vertices>0 1 2 3  0 2 3"
           "</vertices><attrib name=\"matid\" type=\"int\" storageclass=\"primitive\">2 3</attrib><attrib "
           "name=\"tex\" type=\"float2\" storageclass=\"vertex\">0.5 0 1 0.5 0.5 1 0 0.5  0 0 1 0 1 1</attrib>"
           "</polygons></mesh>";
}

std::string seasons(std::string_view first, std::string_view second, int byDefault)
{
    return "<qualifiers default=\"" + std::to_string(byDefault) + "\"><qualifier id=\"1\" name=\"" +
           std::string(first) + "\"><label lang=\"en\">In " + std::string(first) +
           "</label></qualifier><qualifier id=\"2\" name=\"" + std::string(second) + "\"/></qualifiers>";
}

constexpr std::string_view kProxies =
    "<proxy><mesh qualifier=\"flat\"><points>0 0 0 9 0 0 9 9 0</points><polygons><nvertices>3</nvertices><vertices>"
    "0 1 2</vertices></polygons></mesh></proxy><proxy><mesh><points>-5 0 1  5 0 1  5 30 1  -5 30 2</points><polygons>"
    "<nvertices>4</nvertices><vertices>0 1 2 3</vertices></polygons></mesh></proxy>";

} // namespace

std::string OakText(std::string_view unit, std::string_view stub)
{
    return "<verdanth version=\"1.2\"><plant unit=\"" + std::string(unit) +
           "\" name=\"Quercus\"><label lang=\"en\">Oak</label><label lang=\"de-DE\">Eiche</label><materials>"
           "<material matid=\"1\" name=\"bark\"><diffuse color=\"0.5 0.25 0.125\"/></material>"
           "<material matid=\"2\" name=\"leaf\"><diffuse color=\"0.25 0.75 0.125\"/></material></materials>"
           "<model name=\"young\"><label lang=\"en\">Young</label>" +
           seasons("summer", "autumn", 2) + skeleton("2 3 4 5 3", "1 1 1 2 2") + leaf(1, "summer") + leaf(2, "autumn") +
           leaf(2, "") + "</model><model name=\"adult\" default=\"true\" extref=\"" + std::string(stub) +
           "\"><label lang=\"de\">Alt</label><bound>-5 0 -6 7 40 8</bound>" + std::string(kProxies) +
           "</model><model>" + skeleton("2 3 4", "1 1 1") + leaf(1, "") + "</model></plant></verdanth>";
}

std::string OakAdultText()
{
    return "<verdanth version=\"1.2\"><model>" + seasons("winter", "spring", 2) +
           skeleton("1 2 3 4 5 5", "1 1 1 1 2 2") + leaf(1, "winter") + leaf(1, "spring") + leaf(2, "spring") +
           "</model></verdanth>";
}

PlantScene::PlantScene(const TestHostOptions& options) : ModuleHost(options), document(BaseDocument::Alloc())
{
    InsertBaseDocument(document);
    SetActiveDocument(document);
}

std::string PlantScene::writeOak(const std::string& folderName)
{
    folder.write(folderName + "/oak_adult.vdt", OakAdultText());
    return folder.write(folderName + "/oak.vdt", OakText());
}

BaseObject& PlantScene::place(const std::string& path)
{
    BaseObject* plant = BaseObject::Alloc(kPlantObjectId);
    if (!plant) throw std::runtime_error("no plant object"); // ends the test
    BaseObject* last = document->GetFirstObject();
    while (last && last->GetNext()) last = last->GetNext();
    document->InsertObject(plant, nullptr, last);
    if (!path.empty()) Choose(*plant, path);
    return *plant;
}

BaseObject& PlantScene::place(const std::string& path, Int32 variant, Int32 qualifier)
{
    BaseObject& plant = place(path);
    Set(plant, PLANT_VARIANT, variant);
    Set(plant, PLANT_QUALIFIER, qualifier);
    return plant;
}

BaseMaterial& PlantScene::addMaterial(const Vector& colour, Int32 type)
{
    BaseMaterial* material = BaseMaterial::Alloc(type);
    if (!material) throw std::runtime_error("no material");
    document->InsertMaterial(material);
    Set(*material, MATERIAL_COLOR_COLOR, colour);
    return *material;
}

TextureTag& PlantScene::addTexture(BaseObject& object, BaseMaterial& material, const char* restriction, Int32 side)
{
    TextureTag* tag = TextureTag::Alloc();
    object.InsertTag(tag, object.GetLastTag());
    tag->SetMaterial(&material);
    Set(*tag, TEXTURETAG_RESTRICTION, GeData(String(restriction)));
    Set(*tag, TEXTURETAG_SIDE, side);
    return *tag;
}

void PlantScene::evaluate(BUILDFLAGS flags)
{
    document->ExecutePasses(nullptr, true, true, true, flags);
}

PolygonObject* PlantScene::evaluated(BaseObject& object, BUILDFLAGS flags)
{
    evaluate(flags);
    BaseObject* cache = object.GetCache();
    return cache && cache->GetType() == Opolygon ? static_cast<PolygonObject*>(cache) : nullptr;
}

Int32 IntegerOf(BaseList2D& node, Int32 id)
{
    GeData value;
    EXPECT_TRUE(node.GetParameter(id, value, DESCFLAGS_GET_0)) << id;
    return value.GetInt32();
}

std::string TextOfParameter(BaseList2D& node, Int32 id)
{
    GeData value;
    EXPECT_TRUE(node.GetParameter(id, value, DESCFLAGS_GET_0)) << id;
    return value.GetType() == DA_FILENAME ? ToUtf8(value.GetFilename()) : ToUtf8(value.GetString());
}

void Set(BaseList2D& node, Int32 id, const GeData& value)
{
    EXPECT_TRUE(node.SetParameter(id, value, DESCFLAGS_SET_0)) << id;
}

VerdanthSelectionData SelectionOf(BaseObject& plant)
{
    VerdanthSelectionData selection;
    EXPECT_TRUE(ReadSelection(plant, selection));
    return selection;
}

void Choose(BaseObject& plant, const std::string& path)
{
    VerdanthSelectionData selection = SelectionOf(plant);
    selection.file = ToFilename(path);
    selection.Update(plant.GetDocument());
    EXPECT_TRUE(WriteSelection(plant, selection));
}

BasePlantObject& DataOf(BaseObject& plant)
{
    return *static_cast<BasePlantObject*>(plant.GetNodeData());
}

Filename ToFilename(const std::string& path)
{
    return Filename(ToHostString(path));
}

OpenedFiles::OpenedFiles(const std::string& folder) : watch(inotify_init1(IN_NONBLOCK))
{
    EXPECT_GE(inotify_add_watch(watch, folder.c_str(), IN_OPEN), 0);
}

OpenedFiles::~OpenedFiles()
{
    close(watch);
}

int OpenedFiles::count(std::string_view fileName)
{
    int opened = 0;
    alignas(inotify_event) std::array<char, 65536> events;
    for (ssize_t size; (size = read(watch, events.data(), events.size())) > 0;) {
        for (const char* at = events.data(); at < events.data() + size;) {
            const auto* event = reinterpret_cast<const inotify_event*>(at);
            if (event->len > 0 && fileName == event->name) ++opened;
            at += sizeof(inotify_event) + event->len;
        }
    }
    return opened;
}

} // namespace host::test
