#include "core/evaluation.h"
#include "core/node.h"
#include "customgui_unitscale.h"
#include "ddoc.h"
#include "geometry/handedness.h"
#include "mmaterial.h"
#include "obase.h"
#include "plant/plant_build.h"
#include "plant/plant_units.h"
#include "support/plant_scene.h"
#include "support/plugin_ids.h"
#include "support/text.h"
#include "ttexture.h"
#include "vdt/generate/coarse_mesh.h"
#include "vdt/generate/plant_mesh.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace host::test {
namespace {

std::map<std::string, BaseSelect*> selectionsOf(BaseObject& object)
{
    std::map<std::string, BaseSelect*> selections;
    for (BaseTag* tag = object.GetFirstTag(); tag; tag = tag->GetNext())
        if (tag->GetType() == Tpolygonselection)
            selections[ToUtf8(tag->GetName())] = static_cast<SelectionTag*>(tag)->GetBaseSelect();
    return selections;
}

void expectNear(const Vector& value, const Vector& expected, Float tolerance)
{
    ASSERT_LE(Len(value - expected), tolerance) << value.x << " " << value.y << " " << value.z << " for " << expected.x
                                                << " " << expected.y << " " << expected.z;
}

// The host's object against the library's mesh: the same points under scale and mirror, the same polygons with their
// winding turned, and their texture coordinates, normals and materials corner by corner.
void expectSame(PolygonObject& object, const vdt::Mesh& mesh, Float scale, bool hasNormals)
{
    ASSERT_EQ(object.GetPointCount(), static_cast<Int32>(mesh.positions.size()));
    ASSERT_EQ(object.GetPolygonCount(), static_cast<Int32>(mesh.polygonEnds.size()));
    for (size_t i = 0; i < mesh.positions.size(); ++i)
        ASSERT_EQ(object.GetPointR()[i], ToHost(mesh.positions[i], scale)) << i;

    UVWTag* uvw = static_cast<UVWTag*>(object.GetTag(Tuvw));
    NormalTag* normals = static_cast<NormalTag*>(object.GetTag(Tnormal));
    ASSERT_TRUE(uvw);
    ASSERT_EQ(normals != nullptr, hasNormals);
    const std::map<std::string, BaseSelect*> selections = selectionsOf(object);
    Int32 selected = 0;
    for (const auto& [name, selection] : selections) selected += selection->GetCount();
    EXPECT_EQ(selected, object.GetPolygonCount()) << "each in one selection";

    for (Int32 polygon = 0; polygon < object.GetPolygonCount(); ++polygon) {
        const std::span<const uint64_t> corners = mesh.corners(static_cast<uint64_t>(polygon));
        const uint64_t start = mesh.polygonStart(static_cast<uint64_t>(polygon));
        const CPolygon& made = object.GetPolygonR()[polygon];
        ASSERT_EQ(made.IsTriangle() != 0, corners.size() == 3);
        UVWStruct coordinates;
        UVWTag::Get(uvw->GetDataAddressR(), polygon, coordinates);
        NormalStruct normal;
        if (normals) NormalTag::Get(normals->GetDataAddressR(), polygon, normal);
        const Vector madeUvs[] = {coordinates.a, coordinates.b, coordinates.c, coordinates.d};
        const Vector madeNormals[] = {normal.a, normal.b, normal.c, normal.d};
        for (size_t i = 0; i < corners.size(); ++i) {
            const size_t source = corners.size() - 1 - i;
            ASSERT_EQ(made[static_cast<Int32>(i)], static_cast<Int32>(corners[source])) << polygon;
            const vdt::Vector2f& uv = mesh.coordinates[mesh.polygonCoordinates[start + source]];
            ASSERT_EQ(madeUvs[i], Vector(uv.u, uv.v, 0)) << polygon;
            if (!normals) continue;
            const Vector expected = ToHostDirection(vdt::Normalized(mesh.normals[corners[source]]));
            expectNear(madeNormals[i], expected, 2e-4);
        }
        const std::string name = "MAT" + std::to_string(mesh.materials[static_cast<size_t>(polygon)]);
        ASSERT_TRUE(selections.contains(name) && selections.at(name)->IsSelected(polygon)) << name;
    }
}

class PlantBuilding : public testing::Test {
protected:
    // Builds without a pass of the host, with these flags.
    static PolygonObject* build(BaseObject& plant, BUILDFLAGS flags)
    {
        HierarchyHelp help = NodeCore::MakeHierarchyHelp(plant.GetDocument(), nullptr, flags, plant.GetMg());
        return static_cast<PolygonObject*>(DataOf(plant).GetVirtualObjects(&plant, &help));
    }

    static const vdt::ModelVariant& variantOf(BaseObject& plant)
    {
        vdt::NullMessageHandler silent;
        return *DataOf(plant).model.variantData(silent, true);
    }

    // True if a further evaluation builds again.
    bool buildsAgain(BaseObject& plant, BUILDFLAGS flags = BUILDFLAGS_0)
    {
        const BaseObject* cache = plant.GetCache();
        const UInt32 count = plant.GetDirty(DIRTYFLAGS_CACHE);
        scene.evaluate(flags);
        return plant.GetCache() != cache || plant.GetDirty(DIRTYFLAGS_CACHE) != count;
    }

    PlantScene scene;
    std::string oak = scene.writeOak();
};

TEST_F(PlantBuilding, TheFullMeshIsTheLibrarysUnderScaleAndMirror)
{
    // Parameters that differ from those of a new plant, and the same for the library.
    struct Row {
        const char* file;
        Int32 variant;
        std::vector<std::pair<Int32, Float>> parameters;
        vdt::PlantMeshOptions options;
    };
    const std::string seedling = VERDANTH_DOCS "/examples/seedling.vdt";
    const Row rows[] = {
        {seedling.c_str(), 0, {}, {.season = "summer"}},
        {seedling.c_str(), 0, {{PLANT_QUALIFIER, 1}}, {.season = "autumn"}},
        {seedling.c_str(), 0, {{PLANT_QUALIFIER, 9}, {PLANT_SUBDIVISION_LEVEL, 0}}, {.subdivisionLevel = 0}},
        {oak.c_str(), 1, {{PLANT_SUBDIVISION_LEVEL, 2}}, {.season = "winter", .subdivisionLevel = 2}},
        {oak.c_str(), 1, {{PLANT_QUALIFIER, 1}, {PLANT_SUBDIVISION_MODE, 1}}, {.season = "spring", .uniform = true}},
        {oak.c_str(),
         1,
         {{PLANT_LIMIT_LEVEL, 1}, {PLANT_MAX_LEVEL, 1}, {PLANT_FOLIAGE_AMOUNT, 0.5}},
         {.season = "winter", .reduction = {.maxLevel = 1, .foliageAmount = 0.5F}}},
        {oak.c_str(),
         1,
         {{PLANT_LIMIT_RADIUS, 1}, {PLANT_MIN_RADIUS, 0.6}, {PLANT_FOLIAGE_THINNING, 0.5}, {PLANT_MAX_LEVEL, 1}},
         {.season = "winter", .reduction = {.minRadius = 0.6F, .foliageThinning = 0.5F}}}};
    for (const Row& row : rows) {
        SCOPED_TRACE(&row - rows);
        BaseObject& plant = scene.place(row.file, row.variant);
        Set(plant, PLANT_DISPLAY_MODE, PLANT_DISPLAY_MODE_FULL);
        for (const auto& [id, value] : row.parameters) plant.GetDataInstance()->SetFloat(id, value);
        PolygonObject* object = scene.evaluated(plant);
        ASSERT_TRUE(object);
        vdt::Mesh mesh;
        vdt::NullMessageHandler silent;
        vdt::BuildPlantMesh(variantOf(plant), row.options, mesh, silent);
        ASSERT_GT(mesh.polygonEnds.size(), 0u);
        expectSame(*object, mesh, 1, true);
        EXPECT_FALSE(object->GetTag(Tphong)) << "the plant has none";
    }
}

TEST_F(PlantBuilding, LevelsOutOfRangeAreHarmless)
{
    BaseObject& plant = scene.place(oak, 1);
    Set(plant, PLANT_DISPLAY_MODE, PLANT_DISPLAY_MODE_FULL);
    BaseContainer& container = *plant.GetDataInstance();
    const auto polygons = [&](std::initializer_list<std::pair<Int32, GeData>> parameters) {
        for (const auto& [id, value] : parameters) container.SetData(id, value);
        PolygonObject* object = scene.evaluated(plant);
        return object ? object->GetPolygonCount() : -1;
    };
    const Int32 flat = polygons({{PLANT_SUBDIVISION_LEVEL, 0}});
    EXPECT_EQ(polygons({{PLANT_SUBDIVISION_LEVEL, -1}}), flat);
    EXPECT_EQ(polygons({{PLANT_LIMIT_LEVEL, 1}, {PLANT_MAX_LEVEL, -7}}), flat) << "no limit";
    EXPECT_LT(polygons({{PLANT_MAX_LEVEL, 1}}), flat);
    container.SetInt32(PLANT_LIMIT_LEVEL, 0);
    const Float noNumber = std::nan("");
    EXPECT_GT(polygons({{PLANT_FOLIAGE_AMOUNT, noNumber}, {PLANT_FOLIAGE_THINNING, noNumber}}), 0);
    EXPECT_GT(polygons({{PLANT_LIMIT_RADIUS, 1}, {PLANT_MIN_RADIUS, noNumber}}), 0);
    EXPECT_GE(polygons({{PLANT_QUALIFIER, -3}, {PLANT_VARIANT, 99}}), 0);
    EXPECT_EQ(DataOf(plant).model.variant, 1u) << "the default one";
}

TEST_F(PlantBuilding, TheProxyIsTheStoredOneOrTheHull)
{
    OpenedFiles opened(scene.folder.path("oak"));
    BaseObject& adult = scene.place(scene.folder.write(
        "oak/own.vdt", "<verdanth version=\"1.2\"><plant><model extref=\"oak_adult.vdt\"><qualifiers><qualifier "
                       "id=\"0\"/></qualifiers><proxy><mesh qualifier=\"flat\"/></proxy><proxy><mesh><points>0 0 0 9 0 "
                       "1 9 9 0</points><polygons><nvertices>3</nvertices><vertices>0 1 2</vertices></polygons></mesh>"
                       "</proxy></model></plant></verdanth>"));
    PolygonObject* object = scene.evaluated(adult);
    ASSERT_TRUE(object);
    expectSame(*object, *vdt::FindProxy(*DataOf(adult).model.model()->variants.data(), ""), 1, false);
    EXPECT_EQ(opened.count("oak_adult.vdt"), 0) << "without its geometry";

    // Five leaves make a hull, three do not.
    for (const Int32 variant : {0, 2}) {
        SCOPED_TRACE(variant);
        BaseObject& plant = scene.place(oak, variant);
        object = scene.evaluated(plant);
        ASSERT_TRUE(object);
        vdt::Mesh mesh;
        vdt::NullMessageHandler silent;
        vdt::BuildHullMesh(variantOf(plant), "", mesh, silent);
        expectSame(*object, mesh, 1, false);
    }
}

TEST_F(PlantBuilding, BoxAndCloudAreTheCornersOfTheBound)
{
    OpenedFiles opened(scene.folder.path("oak"));
    const std::string stub = scene.folder.write(
        "oak/own.vdt", "<verdanth version=\"1.2\"><plant unit=\"meters\"><model extref=\"oak_adult.vdt\"><qualifiers>"
                       "<qualifier id=\"0\"/></qualifiers><bound>-5 0 -6 7 40 8</bound></model><model/></plant>"
                       "</verdanth>");
    BaseObject& box = scene.place(stub);
    Set(box, PLANT_DISPLAY_MODE, PLANT_DISPLAY_MODE_BOX);
    PolygonObject* object = scene.evaluated(box);
    ASSERT_TRUE(object);
    ASSERT_EQ(object->GetPointCount(), 2);
    EXPECT_EQ(object->GetPolygonCount(), 0);
    EXPECT_EQ(object->GetPointR()[0], Vector(-500, 0, 600));
    EXPECT_EQ(object->GetPointR()[1], Vector(700, 4000, -800));
    EXPECT_EQ(opened.count("oak_adult.vdt"), 0);
    EXPECT_TRUE(DataOf(box).statistics == String()) << "nothing is read for it";

    Set(box, PLANT_DISPLAY_MODE, PLANT_DISPLAY_MODE_CLOUD);
    object = scene.evaluated(box);
    ASSERT_TRUE(object);
    EXPECT_EQ(object->GetPointCount(), 2);
    const vdt::Box bound = variantOf(box).computeBound();
    EXPECT_EQ(object->GetPointR()[1], ToHost(bound.max, 100));
    EXPECT_EQ(DataOf(box).drawHelper.scale, 100);
    EXPECT_EQ(DataOf(box).drawHelper.polylines.size(), 3u);

    for (const Int32 mode : {PLANT_DISPLAY_MODE_BOX, PLANT_DISPLAY_MODE_CLOUD}) {
        BaseObject& empty = scene.place(stub, 1);
        Set(empty, PLANT_DISPLAY_MODE, mode);
        object = scene.evaluated(empty);
        ASSERT_TRUE(object);
        EXPECT_EQ(object->GetPointCount(), 0) << "an empty plant has no corners";
    }
}

TEST_F(PlantBuilding, TheCacheIsKeptWhileNothingAsksForAnother)
{
    // What is due without any change, by all that decides.
    struct Row {
        Int32 proxyOnly, displayMode;
        bool rendering;
        Int32 mode;
        bool (*builds)(Int32 builtMode, Int32 displayMode);
    };
    const auto notInMode = [](Int32 builtMode, Int32 displayMode) { return builtMode != displayMode; };
    const auto never = [](Int32, Int32) { return false; };
    const auto notFull = [](Int32 builtMode, Int32) { return builtMode != PLANT_DISPLAY_MODE_FULL; };
    const auto notProxy = [](Int32 builtMode, Int32) { return builtMode != PLANT_DISPLAY_MODE_PROXY; };
    const auto notBox = [](Int32 builtMode, Int32) { return builtMode != PLANT_DISPLAY_MODE_BOX; };
    std::vector<Row> rows;
    for (Int32 shown = 0; shown < 4; ++shown) {
        rows.push_back({0, shown, false, shown, notInMode});
        rows.push_back({0, shown, true, 3, shown == 3 ? +never : +notFull});
        rows.push_back({1, shown, false, 0, notProxy});
        rows.push_back({1, shown, true, 0, never});
        rows.push_back({2, shown, false, shown, notInMode});
        rows.push_back({2, shown, true, 0, shown == 0 ? +never : +notBox});
    }
    BaseObject& plant = scene.place(oak, 0);
    scene.evaluate();
    BasePlantObject& data = DataOf(plant);
    for (const Row& row : rows) {
        for (const Int32 builtMode : {0, 1, 2, 3}) {
            SCOPED_TRACE(std::to_string(row.proxyOnly) + " " + std::to_string(row.displayMode) +
                         (row.rendering ? " rendering, built " : " built ") + std::to_string(builtMode));
            plant.GetDataInstance()->SetInt32(PLANT_PROXY_ONLY, row.proxyOnly);
            plant.GetDataInstance()->SetInt32(PLANT_DISPLAY_MODE, row.displayMode);
            plant.Touch();
            data.builtMode = builtMode;
            data.lastBuildFlags = BUILDFLAGS_0;
            const BUILDFLAGS flags = row.rendering ? BUILDFLAGS_INTERNALRENDERER : BUILDFLAGS_0;
            HierarchyHelp help = NodeCore::MakeHierarchyHelp(scene.document, nullptr, flags, Matrix());
            PlantDisplay display;
            ASSERT_TRUE(ReadDisplay(plant, flags, display));
            EXPECT_EQ(display.mode, row.mode);
            EXPECT_EQ(NeedsBuild(data, plant, help, display) != 0, row.builds(builtMode, row.displayMode));
        }
    }
}

TEST_F(PlantBuilding, AnotherRendererOrAChangeOfDataBuildsAgain)
{
    BaseObject& plant = scene.place(oak, 0);
    Set(plant, PLANT_DISPLAY_MODE, PLANT_DISPLAY_MODE_FULL);
    EXPECT_TRUE(buildsAgain(plant)) << "no cache";
    EXPECT_FALSE(buildsAgain(plant)) << "its own statistics are no change";
    EXPECT_FALSE(buildsAgain(plant, BUILDFLAGS_INTERNALRENDERER)) << "the viewport shows the full mesh already";
    EXPECT_TRUE(buildsAgain(plant, BUILDFLAGS_EXTERNALRENDERER));
    EXPECT_FALSE(buildsAgain(plant, BUILDFLAGS_EXTERNALRENDERER));
    EXPECT_EQ(DataOf(plant).lastBuildFlags, BUILDFLAGS_EXTERNALRENDERER);
    EXPECT_TRUE(buildsAgain(plant));
    Set(plant, PLANT_FOLIAGE_AMOUNT, 0.5);
    EXPECT_TRUE(buildsAgain(plant));
    plant.SetAbsPos(Vector(1, 2, 3));
    EXPECT_FALSE(buildsAgain(plant));

    Set(plant, PLANT_DISPLAY_MODE, PLANT_DISPLAY_MODE_CLOUD);
    EXPECT_TRUE(buildsAgain(plant));
    EXPECT_FALSE(DataOf(plant).drawHelper.points.empty());
    EXPECT_TRUE(buildsAgain(plant, BUILDFLAGS_INTERNALRENDERER));
    EXPECT_TRUE(DataOf(plant).drawHelper.points.empty()) << "only a cloud has them";
    EXPECT_TRUE(buildsAgain(plant));
    EXPECT_FALSE(DataOf(plant).drawHelper.points.empty());
}

TEST_F(PlantBuilding, ACloudFollowsTheColoursOfItsMaterials)
{
    BaseObject& plant = scene.place(oak, 0);
    BaseMaterial& green = scene.addMaterial(Vector(0.25, 0.5, 0.75));
    BaseMaterial& unused = scene.addMaterial(Vector(1));
    scene.addTexture(plant, green, "MAT2");
    scene.addTexture(plant, unused, "elsewhere");
    Set(plant, PLANT_DISPLAY_MODE, PLANT_DISPLAY_MODE_CLOUD);
    scene.evaluate();
    const auto change = [](BaseMaterial& material) {
        Set(material, MATERIAL_COLOR_COLOR, Vector(0.125 * material.GetDirty(DIRTYFLAGS_DATA)));
    };
    EXPECT_FALSE(buildsAgain(plant));
    change(green);
    EXPECT_TRUE(buildsAgain(plant));
    EXPECT_FALSE(buildsAgain(plant));
    change(unused);
    EXPECT_FALSE(buildsAgain(plant));
    Set(plant, PLANT_DISPLAY_MODE, PLANT_DISPLAY_MODE_FULL);
    scene.evaluate();
    change(green);
    EXPECT_FALSE(buildsAgain(plant));
}

TEST_F(PlantBuilding, MaterialColoursPassThroughTheDocumentsSpace)
{
    BaseObject& plant = scene.place(oak, 0);
    const vdt::Model* model = DataOf(plant).model.model();
    BaseMaterial& first = scene.addMaterial(Vector(0.9));
    BaseMaterial& second = scene.addMaterial(Vector(0.2));
    BaseMaterial& back = scene.addMaterial(Vector(0.7));
    scene.addTexture(plant, first, "MAT1");
    scene.addTexture(plant, second, "MAT1");
    scene.addTexture(plant, back, "MAT1", TEXTURETAG_SIDE_BACK);
    scene.addTexture(plant, first, "MAT");
    scene.addTexture(plant, first, "bark");
    BaseContainer& settings = *scene.document->GetDataInstance();
    settings.SetVector(DOCUMENT_DEFAULTMATERIAL_COLOR, Vector(0.2));

    for (const bool linear : {false, true}) {
        SCOPED_TRACE(linear);
        settings.SetBool(DOCUMENT_LINEARWORKFLOW, true);
        settings.SetInt32(DOCUMENT_COLORPROFILE, linear ? DOCUMENT_COLORPROFILE_LINEAR : DOCUMENT_COLORPROFILE_SRGB);
        MaterialChanges changes;
        const PlantColours colours = MaterialColours(plant, model, &changes);
        ASSERT_EQ(colours.size(), 1u);
        EXPECT_NEAR(colours.at(1).r, linear ? 0.484529 : 0.2, 1e-6) << "the last tag's";
        EXPECT_EQ(changes.size(), 2u) << "the back is not looked at";
        vdt::Color3f others;
        EXPECT_TRUE(DefaultColour(scene.document, others));
        EXPECT_NEAR(others.g, linear ? 0.484529 : 0.2, 1e-6);

        // A material of an unknown kind, or without a colour, leaves the model's own in either space.
        second.GetDataInstance()->RemoveData(MATERIAL_COLOR_COLOR);
        second.GetDataInstance()->SetString(MATERIAL_COLOR_COLOR, "no colour");
        EXPECT_NEAR(MaterialColours(plant, model).at(1).g, 0.25, 1e-6);
        second.GetDataInstance()->SetVector(MATERIAL_COLOR_COLOR, Vector(0.2));

        Set(plant, PLANT_DISPLAY_MODE, PLANT_DISPLAY_MODE_FULL);
        plant.SetDirty(DIRTYFLAGS_DATA);
        ObjectColorProperties properties;
        scene.evaluated(plant)->GetColorProperties(&properties);
        EXPECT_EQ(properties.usecolor, ID_BASEOBJECT_USECOLOR_AUTOMATIC);
        expectNear(properties.color, linear ? Vector(0.073239, 0.447988, 0.059254) : Vector(0.3, 0.7, 0.27), 1e-6);
    }
    EXPECT_TRUE(MaterialColours(plant, nullptr).empty());
    EXPECT_FALSE(HasChangedMaterial(plant, {}));
}

TEST_F(PlantBuilding, TheStatisticsTellOfMeshOrSkeleton)
{
    BaseObject& plant = scene.place(oak, 0);
    const std::string ofSkeleton = "Skeleton points: 6, branches: 3, connectors: 5";
    struct Row {
        Int32 parameter, value;
        BUILDFLAGS flags;
        bool tellsOfMesh;
    };
    for (const Row& row : {Row{PLANT_DISPLAY_MODE, PLANT_DISPLAY_MODE_FULL, BUILDFLAGS_0, true},
                           {PLANT_DISPLAY_MODE, PLANT_DISPLAY_MODE_PROXY, BUILDFLAGS_0, true},
                           {PLANT_DISPLAY_MODE, PLANT_DISPLAY_MODE_CLOUD, BUILDFLAGS_0, false},
                           {PLANT_DISPLAY_MODE, PLANT_DISPLAY_MODE_BOX, BUILDFLAGS_0, false},
                           {PLANT_MAX_LEVEL, 1, BUILDFLAGS_INTERNALRENDERER, false}, // of what the view shows
                           {PLANT_PROXY_ONLY, PLANT_PROXY_ONLY_ON, BUILDFLAGS_0, true}}) {
        SCOPED_TRACE(std::to_string(row.parameter) + " = " + std::to_string(row.value));
        Set(plant, row.parameter, row.value);
        const PolygonObject* mesh = scene.evaluated(plant, row.flags);
        ASSERT_TRUE(mesh);
        const std::string ofMesh = "Points: " + std::to_string(mesh->GetPointCount()) +
                                   ", polygons: " + std::to_string(mesh->GetPolygonCount());
        EXPECT_EQ(TextOfParameter(plant, PLANT_STATISTICS), row.tellsOfMesh ? ofMesh : ofSkeleton);
        EXPECT_EQ(ToUtf8(DataOf(plant).statistics), TextOfParameter(plant, PLANT_STATISTICS));
    }
}

TEST_F(PlantBuilding, TheScaleLeadsFromTheModelsUnitToTheTargets)
{
    const auto setUnit = [](BaseList2D& node, Int32 id, Float scale, DOCUMENT_UNIT unit) {
        AutoAlloc<UnitScaleData> data;
        data->SetUnitScale(scale, unit);
        node.GetDataInstance()->SetData(id, GeData(CUSTOMDATATYPE_UNITSCALE, *data));
    };
    struct Row {
        const char* unit;
        Float scale; // to centimetres
    };
    for (const Row& row : {Row{"millimeters", 0.1}, {"centimeters", 1}, {"meters", 100}}) {
        SCOPED_TRACE(row.unit);
        BaseObject& plant = scene.place(scene.folder.write(std::string(row.unit) + "/oak.vdt", OakText(row.unit)), 0);
        const vdt::Model* model = DataOf(plant).model.model();
        setUnit(*scene.document, DOCUMENT_DOCUNIT, 1, DOCUMENT_UNIT_M);
        EXPECT_NEAR(ObjectScale(plant, model), row.scale / 100, 1e-12);
        plant.GetDataInstance()->SetBool(PLANT_USE_DOCUMENT_UNITS, false);
        EXPECT_NEAR(ObjectScale(plant, model), row.scale, 1e-12) << "a new plant's own unit";
        setUnit(plant, PLANT_UNITS, 2, DOCUMENT_UNIT_INCH);
        EXPECT_NEAR(ObjectScale(plant, model), row.scale / 5.08, 1e-12);
        setUnit(plant, PLANT_UNITS, 1, DOCUMENT_UNIT_MM);
        Set(plant, PLANT_DISPLAY_MODE, PLANT_DISPLAY_MODE_FULL);
        Set(plant, PLANT_LIMIT_RADIUS, true);
        plant.GetDataInstance()->SetFloat(PLANT_MIN_RADIUS, 6 * row.scale);

        vdt::Mesh mesh;
        vdt::NullMessageHandler silent;
        vdt::BuildPlantMesh(variantOf(plant), {.season = "summer", .reduction = {.minRadius = 0.6F}}, mesh, silent);
        Set(plant, PLANT_QUALIFIER, 0);
        expectSame(*scene.evaluated(plant), mesh, ObjectScale(plant, model), true);
        setUnit(*scene.document, DOCUMENT_DOCUNIT, 1, DOCUMENT_UNIT_CM);
    }
}

TEST_F(PlantBuilding, WhatCannotBeReadShowsNothing)
{
    BaseObject& unchosen = scene.place("");
    EXPECT_FALSE(scene.evaluated(unchosen));
    BaseObject& lost = scene.place(scene.folder.path("gone.vdt"));
    for (const Int32 mode : {0, 1, 2, 3}) {
        Set(lost, PLANT_DISPLAY_MODE, mode);
        EXPECT_FALSE(scene.evaluated(lost));
        EXPECT_EQ(DataOf(lost).builtMode, -1);
    }
    // A stub whose file is gone: what needs no geometry is shown.
    BaseObject& stub = scene.place(scene.folder.write("stub.vdt", OakText("centimeters", "gone.vdt")), 1);
    for (const Int32 mode : {0, 1, 2, 3}) {
        Set(stub, PLANT_DISPLAY_MODE, mode);
        EXPECT_EQ(scene.evaluated(stub) != nullptr, mode < 2) << mode;
    }
    EXPECT_EQ(DataOf(stub).builtMode, PLANT_DISPLAY_MODE_BOX);
    EXPECT_TRUE(DataOf(stub).materialDirty.empty());
    EXPECT_TRUE(scene.console.empty());
    scene.place(scene.folder.write("broken.vdt", "<verdanth version=\"one\"><plant>"));
    EXPECT_FALSE(scene.console.empty()) << "the reader's words";
}

TEST_F(PlantBuilding, AStubsFirstBuildKnowsItsSeason)
{
    BaseObject& plant = scene.place("");
    VerdanthSelectionData selection;
    selection.file = ToFilename(oak);
    plant.GetDataInstance()->SetInt32(PLANT_VARIANT, 1);
    plant.GetDataInstance()->SetInt32(PLANT_QUALIFIER, 1);
    plant.GetDataInstance()->SetData(PLANT_SELECTION, GeData(kSelectionDataTypeId, selection));
    plant.GetDataInstance()->SetInt32(PLANT_DISPLAY_MODE, PLANT_DISPLAY_MODE_FULL);
    PolygonObject* first = build(plant, BUILDFLAGS_0);
    ASSERT_TRUE(first);
    const Int32 count = first->GetPolygonCount();
    PolygonObject::Free(first);
    plant.SetDirty(DIRTYFLAGS_DATA);
    first = build(plant, BUILDFLAGS_0);
    EXPECT_EQ(first->GetPolygonCount(), count);
    vdt::Mesh mesh;
    vdt::NullMessageHandler silent;
    vdt::BuildPlantMesh(variantOf(plant), {.season = "spring"}, mesh, silent);
    expectSame(*first, mesh, 1, true);
    PolygonObject::Free(first);
}

TEST_F(PlantBuilding, RenderedClonesGetTheFullMeshAndThePlantsTags)
{
    BaseObject& plant = scene.place(oak, 0);
    BaseMaterial& bark = scene.addMaterial(Vector(0.5));
    scene.addTexture(plant, bark, "MAT1");
    plant.MakeTag(Tphong);
    scene.evaluate();
    EXPECT_EQ(DataOf(plant).builtMode, PLANT_DISPLAY_MODE_PROXY);
    const auto texturesOf = [](BaseObject& object) {
        int count = 0;
        for (BaseTag* tag = object.GetFirstTag(); tag; tag = tag->GetNext()) count += tag->GetType() == Ttexture;
        return count;
    };
    for (const bool proxyOnly : {false, true}) {
        Set(plant, PLANT_PROXY_ONLY, Int32(proxyOnly));
        const bool done = Render(*scene.document, BUILDFLAGS_INTERNALRENDERER, [&](BaseDocument& rendered) {
            BaseObject& clone = *rendered.GetFirstObject();
            EXPECT_EQ(DataOf(clone).builtMode, proxyOnly ? PLANT_DISPLAY_MODE_PROXY : PLANT_DISPLAY_MODE_FULL);
            BaseObject& output = *clone.GetCache();
            EXPECT_EQ(texturesOf(output), 1);
            EXPECT_TRUE(output.GetTag(Tphong) && !output.GetTag(Tphong, 1)) << "the plant's own";
            return true;
        });
        EXPECT_TRUE(done);
    }
    EXPECT_EQ(DataOf(plant).builtMode, PLANT_DISPLAY_MODE_PROXY);
}

} // namespace
} // namespace host::test
