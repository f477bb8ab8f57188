#include "app/test_plant.h"
#include "export/relief.h"
#include "picture/draw_picture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <random>

namespace verdanth::test {
namespace {

constexpr Float3 kUp{0, 1, 0};

// A four-sided leaf, seen from where its corners run counter-clockwise; texture coordinates from 0 to 1.
void addQuad(SceneMesh& mesh, const std::array<Float3, 4>& corners, uint32_t material = 0)
{
    const Float3 normal = Normalized(Cross(corners[1] - corners[0], corners[2] - corners[0]));
    const vdt::Vector2f coordinates[] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    for (size_t i = 0; i < corners.size(); ++i) {
        mesh.corners.push_back(static_cast<uint32_t>(mesh.vertices.size()));
        mesh.vertices.push_back({static_cast<uint32_t>(mesh.points.size()), coordinates[i]});
        mesh.points.push_back(corners[i]);
        mesh.normals.push_back(normal);
    }
    mesh.polygonEnds.push_back(static_cast<uint32_t>(mesh.corners.size()));
    mesh.polygonMaterials.push_back(material);
}

// Without anything in it but one material.
Scene emptyScene(const vdt::Color3f& color = {0.5F, 0.5F, 0.5F})
{
    Scene scene;
    scene.levels.emplace_back();
    scene.levels.front().body.placements = {Placement()};
    scene.materials.emplace_back();
    scene.materials.front().color = color;
    return scene;
}

// An upright square of 2 x 2 metres that faces the viewer.
Scene uprightSquare(const vdt::Color3f& color = {0.5F, 0.5F, 0.5F})
{
    Scene scene = emptyScene(color);
    addQuad(scene.levels.front().body.mesh, {{{-1, 0, 0}, {1, 0, 0}, {1, 2, 0}, {-1, 2, 0}}});
    return scene;
}

struct Shot {
    ViewDirection view;
    PictureSettings settings{.width = 48, .height = 48, .samples = 16, .ground = Ground::None};
    uint64_t copyBudget = TracedScene::kMostCopiedTriangles;
};

Picture draw(const Scene& scene, const Shot& shot = {})
{
    vdt::NullMessageHandler silence;
    const TracedScene traced(scene, silence, shot.copyBudget);
    EXPECT_EQ(traced.problem(), "");
    const Camera camera(shot.view, traced.outline(), shot.settings.width, shot.settings.height);
    Picture picture;
    EXPECT_TRUE(DrawPicture(traced, camera, shot.settings, picture, silence));
    return picture;
}

const uint8_t* pixel(const Picture& picture, uint32_t x, uint32_t y)
{
    return &picture.pixels[(size_t{y} * picture.width + x) * 4];
}

double meanOf(const Picture& picture, int channel)
{
    double sum = 0;
    for (size_t i = static_cast<size_t>(channel); i < picture.pixels.size(); i += 4) sum += picture.pixels[i];
    return sum * 4 / static_cast<double>(picture.pixels.size());
}

double difference(const Picture& a, const Picture& b)
{
    EXPECT_EQ(a.pixels.size(), b.pixels.size());
    double sum = 0;
    for (size_t i = 0; i < a.pixels.size(); ++i) sum += std::abs(a.pixels[i] - b.pixels[i]);
    return sum / static_cast<double>(a.pixels.size());
}

Picture readPicture(const std::string& path)
{
    std::string problem;
    const std::optional<Picture> picture = ReadPng(path, problem);
    EXPECT_TRUE(picture) << path << ' ' << problem;
    return picture.value_or(Picture{1, 1, {0, 0, 0, 0}});
}

void writePng(const std::string& path, const Picture& picture)
{
    const std::vector<uint8_t> bytes = EncodePng(picture);
    std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
}

// Scattered leaves of two meshes, turned, scaled and mirrored at random.
Scene scatteredLeaves(unsigned seed, int count)
{
    std::mt19937 random(seed);
    const auto between = [&](double from, double to) { return from + (to - from) * (random() / 4294967296.0); };
    Scene scene = emptyScene({0.3F, 0.6F, 0.2F});
    scene.materials.push_back(scene.materials.front());
    scene.materials.back().transmission = 0.4F;
    scene.materials.back().transmissionColor = {0.3F, 0.6F, 0.2F};
    for (uint32_t material = 0; material < 2; ++material) {
        SceneObject object;
        addQuad(object.mesh, {{{0, 0, 0}, {0.2F, 0, 0}, {0.3F, 0.5F, 0}, {0, 0.4F, 0.1F}}}, material);
        addQuad(object.mesh, {{{0, 0, 0}, {0, 0.2F, 0}, {0, 0.2F, 0.3F}, {0, 0, 0.3F}}}, 1 - material);
        for (int i = 0; i < count; ++i) {
            const auto part = [&] { return static_cast<float>(between(-1, 1)); };
            object.placements.push_back({{between(-1, 1), between(0, 3), between(-1, 1)},
                                         vdt::Normalized(vdt::Quaternion{part(), part(), part(), part()}),
                                         between(0, 1) < 0.3 ? -between(0.5, 2) : between(0.5, 2)});
        }
        scene.levels.front().foliage.push_back(std::move(object));
    }
    return scene;
}

TEST(Sampler, SpreadsEachPairOverAllCellsOfAPowerOfTwo)
{
    for (const uint32_t pixelNumber : {0U, 1U, 262143U, ~0U}) {
        for (int pair = 0; pair < 4; ++pair) {
            for (const uint32_t columns : {1U, 2U, 8U, 64U}) { // 64 samples: one in each cell, however they are cut
                std::vector<int> cells(64);
                for (uint32_t i = 0; i < 64; ++i) {
                    Sampler sampler(pixelNumber, i);
                    SamplePoint point{};
                    for (int skipped = 0; skipped <= pair; ++skipped) point = sampler.next();
                    const uint32_t rows = 64 / columns;
                    ++cells[static_cast<size_t>(point.u * static_cast<float>(columns)) * rows +
                            static_cast<size_t>(point.v * static_cast<float>(rows))];
                }
                EXPECT_EQ(cells, std::vector<int>(64, 1)) << pixelNumber << ' ' << pair << ' ' << columns;
            }
        }
    }
}

TEST(Render, GivesTheSameBytesOnEveryRunAndForAnyNumberOfThreads)
{
    const TemporaryFolder folder;
    const std::string tree = folder.write("tree.vdt", PlantText().text());
    std::string first;
    for (const char* threads : {"1", "1", "2", "5"}) {
        for (const char* ground : {"plain", "transparent"}) {
            const std::string out = folder.path(std::string(ground) + ".png");
            const RunResult run = RunApp({"render", tree, "-o", out, "--size", "64", "--samples", "24", "--threads",
                                          threads, "--ground", ground, "--season", "summer"});
            ASSERT_EQ(run.status, 0) << run.messages;
        }
        const std::string bytes = folder.read("plain.png") + folder.read("transparent.png");
        if (first.empty()) first = bytes;
        EXPECT_TRUE(bytes == first) << threads;
    }
}

TEST(Render, FramesTheWholePlantWithAMarginFromEverywhere)
{
    const Scene scene = scatteredLeaves(7, 30);
    for (const auto& [width, height] : {std::pair{48U, 48U}, std::pair{80U, 40U}, std::pair{40U, 100U}}) {
        for (const ViewDirection& view : {ViewDirection{0, 4}, {35, 14}, {200, 90}, {77, -40}}) {
            SCOPED_TRACE(std::to_string(width) + " " + std::to_string(view.azimuth));
            Shot shot{view};
            shot.settings.width = width;
            shot.settings.height = height;
            const Picture picture = draw(scene, shot);
            uint32_t left = width, right = 0, top = height, bottom = 0;
            for (uint32_t y = 0; y < height; ++y) {
                for (uint32_t x = 0; x < width; ++x) {
                    if (pixel(picture, x, y)[3] < 64) continue; // a soft edge may reach a little farther
                    left = std::min(left, x), right = std::max(right, x + 1);
                    top = std::min(top, y), bottom = std::max(bottom, y + 1);
                }
            }
            EXPECT_GT(left, 0u);
            EXPECT_LT(right, width);
            EXPECT_GT(top, 0u);
            EXPECT_LT(bottom, height);
            EXPECT_TRUE(right - left >= 0.85 * width || bottom - top >= 0.8 * height)
                << left << ' ' << right << ' ' << top << ' ' << bottom;
        }
    }
}

// Copies and instances are two ways to the same picture, but for the chance by which leaves let light pass.
TEST(Render, DrawsInstancesAsItDrawsCopies)
{
    const Scene scene = scatteredLeaves(3, 40);
    Shot shot;
    shot.settings.samples = 64;
    shot.settings.ground = Ground::Plain;
    const Picture copies = draw(scene, shot);
    shot.copyBudget = 200; // enough for one of both meshes
    EXPECT_LT(difference(copies, draw(scene, shot)), 1.0);
    shot.copyBudget = 0;
    EXPECT_LT(difference(copies, draw(scene, shot)), 1.0);
}

TEST(Render, ShowsTheBackgroundThroughWhatALeafsTextureCutsAway)
{
    const TemporaryFolder folder;
    const auto save = [&](const char* name, const std::vector<uint8_t>& pixels) {
        writePng(folder.path(name), {2, 1, pixels});
        return folder.path(name);
    };
    const std::string own = save("own.png", {255, 0, 0, 0, 255, 0, 0, 255});
    const std::string solid = save("solid.png", {0, 0, 0, 255, 255, 0, 0, 255});
    const std::string mask = save("mask.png", {0, 0, 0, 255, 255, 255, 255, 255});
    struct Row {
        std::string color, alpha;
        bool cut;
    };
    for (const Row& row : {Row{own, own, true},
                           {solid, mask, true},
                           {"", mask, true},
                           {own, own, true},
                           {solid, solid, false},
                           {solid, "", false},
                           {solid, folder.path("none.png"), false}}) {
        SCOPED_TRACE(row.color + " " + row.alpha);
        Scene scene = uprightSquare();
        scene.materials.front().colorTexture = row.color;
        scene.materials.front().alphaTexture = row.alpha;
        const Picture picture = draw(scene);
        EXPECT_EQ(pixel(picture, 14, 24)[3], row.cut ? 0 : 255);
        EXPECT_EQ(pixel(picture, 34, 24)[3], 255);
        EXPECT_EQ(pixel(picture, 34, 24)[0] > 2 * pixel(picture, 34, 24)[1], !row.color.empty());

        // Where the sun shines through the hole, the board behind is as bright as without anything before it.
        scene.materials.push_back(emptyScene().materials.front());
        addQuad(scene.levels.front().body.mesh, {{{-1, 0, -1}, {1, 0, -1}, {1, 2, -1}, {-1, 2, -1}}}, 1);
        Shot shot;
        shot.settings.sun = {0, 5};
        const Picture shaded = draw(scene, shot);
        Scene open = emptyScene();
        open.levels.front().body.mesh = scene.levels.front().body.mesh;
        EXPECT_EQ(pixel(shaded, 14, 22)[3], 255);
        EXPECT_EQ(pixel(shaded, 14, 22)[1] > 120, row.cut);
    }
}

TEST(Render, LetsLightShineThroughThinSurfacesAndNothingElse)
{
    Scene scene = uprightSquare();
    SceneMaterial& material = scene.materials.front();
    Shot shot;
    shot.settings.sun = {180, 15};
    const double board = meanOf(draw(scene, shot), 0);
    material.transmission = 0.5F;
    material.transmissionColor = {0.8F, 0.6F, 0.3F};
    const Picture leaf = draw(scene, shot);
    EXPECT_GT(meanOf(leaf, 0), board * 1.2);
    EXPECT_GT(meanOf(leaf, 0), meanOf(leaf, 1) * 1.1);
    EXPECT_GT(meanOf(leaf, 1), meanOf(leaf, 2) * 1.2);

    // The more goes through, the more of it is seen from behind and the less from the front.
    double behind = board, before = 256;
    for (const float share : {0.25F, 0.5F, 0.75F, 1.0F}) {
        material.transmission = share;
        shot.settings.sun = {180, 15};
        const double through = meanOf(draw(scene, shot), 0);
        EXPECT_GT(through, behind) << share;
        shot.settings.sun = {0, 15};
        const double back = meanOf(draw(scene, shot), 2);
        EXPECT_LT(back, before) << share;
        behind = through, before = back;
    }

    // The texture takes the colour's place, also where it is the one that colours what comes back.
    const TemporaryFolder folder;
    material.transmission = 0.5F;
    shot.settings.sun = {180, 15};
    material.transmissionTexture = folder.path("inner.png");
    writePng(material.transmissionTexture, {1, 1, {0, 0, 255, 255}});
    Picture textured = draw(scene, shot);
    EXPECT_GT(meanOf(textured, 2), meanOf(textured, 0) * 1.2);
    material.colorTexture = material.transmissionTexture;
    textured = draw(scene, shot);
    EXPECT_GT(meanOf(textured, 2), meanOf(textured, 0) * 3);
}

TEST(Render, ShowsBacksWithTheirOwnLook)
{
    const TemporaryFolder folder;
    const std::string red = folder.path("red.png");
    writePng(red, {1, 1, {255, 0, 0, 255}});
    Scene scene = uprightSquare({0, 0.8F, 0});
    scene.levels.front().foliage.push_back({{}, {{{3, 0, 0}, {}, -1}}}); // a mirrored copy turns its back as well
    scene.levels.front().foliage.front().mesh = scene.levels.front().body.mesh;
    const auto seen = [&](double azimuth, const vdt::Color3f& color, const std::string& texture) {
        SceneSide back;
        back.color = color;
        back.colorTexture = texture;
        scene.materials.front().back = back;
        const Picture picture = draw(scene, {{azimuth, 4}});
        return std::array<bool, 3>{meanOf(picture, 0) > 20, meanOf(picture, 1) > 20, meanOf(picture, 2) > 20};
    };
    using Colors = std::array<bool, 3>;
    EXPECT_EQ(seen(0, {0, 0, 0.8F}, {}), (Colors{false, true, true})); // the copy shows its back
    scene.levels.front().foliage.clear();
    EXPECT_EQ(seen(0, {0, 0, 0.8F}, {}), (Colors{false, true, false}));
    EXPECT_EQ(seen(180, {0, 0, 0.8F}, {}), (Colors{false, false, true}));
    EXPECT_EQ(seen(180, {0, 0, 0.8F}, red), (Colors{true, false, false}));
}

// Heights that rise to the right all over: a surface that looks to the left, from either side.
TEST(Render, GivesSurfacesTheReliefOfTheirHeightsAndNormals)
{
    const TemporaryFolder folder;
    Picture heights{64, 1, {}};
    for (uint8_t x = 0; x < 64; ++x) {
        const auto grey = static_cast<uint8_t>(4 * x);
        heights.pixels.insert(heights.pixels.end(), {grey, grey, grey, 255});
    }
    const std::string bump = folder.path("bump.png");
    const std::string normal = folder.path("normal.png");
    writePng(bump, heights);
    writePng(normal, NormalsOfHeights(heights, 30));
    const auto brightness = [&](double view, double sun, bool ownBack, bool asNormals = false) {
        Scene scene = uprightSquare();
        SceneSide side = scene.materials.front();
        (asNormals ? side.normalTexture : side.bumpTexture) = asNormals ? normal : bump;
        side.bumpStrength = asNormals ? 0 : 30;
        if (ownBack)
            scene.materials.front().back = side;
        else
            static_cast<SceneSide&>(scene.materials.front()) = side;
        Shot shot{{view, 4}};
        shot.settings.sun = {sun, 20};
        return meanOf(draw(scene, shot), 1);
    };
    for (const bool asNormals : {false, true}) {
        EXPECT_GT(brightness(0, -60, false, asNormals), brightness(0, 60, false, asNormals) + 10);
        EXPECT_EQ(brightness(0, -60, false, asNormals), brightness(0, -60, false));
        // From behind it rises to the left if it is the back's own; the front's is seen from inside.
        EXPECT_GT(brightness(180, 60, true, asNormals), brightness(180, -60, true, asNormals) + 10);
        EXPECT_GT(brightness(180, -60, false, asNormals), brightness(180, 60, false, asNormals) + 10);
    }
}

TEST(Render, CastsShadowsAwayFromTheSun)
{
    Scene scene = emptyScene();
    SceneMesh& mesh = scene.levels.front().body.mesh;
    addQuad(mesh, {{{-0.02F, 0, 0}, {0.02F, 0, 0}, {0.02F, 0.4F, 0}, {-0.02F, 0.4F, 0}}});
    addQuad(mesh, {{{-0.5F, 0.4F, 0.5F}, {0.5F, 0.4F, 0.5F}, {0.5F, 0.4F, -0.5F}, {-0.5F, 0.4F, -0.5F}}});
    for (const float x : {-1.2F, 1.2F}) // specks that make room in the picture for the shadow
        for (const float z : {-1.2F, 1.2F})
            addQuad(mesh, {{{x, 0, z}, {x + 0.01F, 0, z}, {x + 0.01F, 0.01F, z}, {x, 0.01F, z}}});
    for (const double azimuth : {0.0, 60.0, 90.0, 180.0, 270.0}) {
        for (const double viewAzimuth : {0.0, 120.0}) { // the sun stands as the viewer sees it
            SCOPED_TRACE(azimuth);
            Shot shot{{viewAzimuth, 90}};
            shot.settings.ground = Ground::Transparent;
            shot.settings.sun = {azimuth, 50};
            const Picture picture = draw(scene, shot);
            double x = 0, y = 0, weight = 0;
            for (uint32_t row = 0; row < picture.height; ++row) {
                for (uint32_t column = 0; column < picture.width; ++column) {
                    const uint8_t* p = pixel(picture, column, row);
                    if (p[0] != 0) continue; // the plant itself
                    x += p[3] * (column + 0.5 - picture.width / 2.0);
                    y += p[3] * (row + 0.5 - picture.height / 2.0);
                    weight += p[3];
                }
            }
            ASSERT_GT(weight, 0);
            // Seen from above, with the viewer's feet at the picture's lower edge.
            const double angle = azimuth * vdt::kPi / 180;
            const double along = -(x * std::sin(angle) + y * std::cos(angle)) / weight;
            const double across = std::fabs(x * std::cos(angle) - y * std::sin(angle)) / weight;
            EXPECT_GT(along, 2);
            EXPECT_LT(across, along / 2);
        }
    }
}

TEST(Render, PutsThePlantOnTheGroundThatIsAskedFor)
{
    const Scene scene = uprightSquare();
    Shot shot{{30, 20}};
    shot.settings.background = {0, 0, 1};
    const auto corner = [&](Ground ground) {
        shot.settings.ground = ground;
        const Picture picture = draw(scene, shot);
        const uint8_t* p = pixel(picture, 0, 0);
        return std::array<int, 4>{p[0], p[1], p[2], p[3]};
    };
    EXPECT_EQ(corner(Ground::Plain), (std::array<int, 4>{0, 0, 255, 255}));
    EXPECT_EQ(corner(Ground::Transparent)[3], 0);
    EXPECT_EQ(corner(Ground::None)[3], 0);
    const auto half = [](const Picture& picture) { // neither plant nor nothing, away from the plant's edge
        return std::count_if(picture.pixels.begin(), picture.pixels.end(), [](uint8_t v) { return v > 0 && v < 255; });
    };
    shot.settings.ground = Ground::Transparent;
    const auto withShadow = half(draw(scene, shot));
    shot.settings.ground = Ground::None;
    EXPECT_GT(withShadow, half(draw(scene, shot)));
}

TEST(Render, DrawsACloudInTheColoursOfItsPoints)
{
    Scene scene = emptyScene();
    SceneCloud& cloud = scene.levels.front().cloud;
    for (int i = 0; i < 400; ++i) {
        const auto place = static_cast<float>(i % 20) / 20;
        cloud.positions.push_back({place, static_cast<float>(i / 20) / 20.0F, 0});
        cloud.normals.push_back({0, 0, 1});
        cloud.colors.push_back(place < 0.5F ? vdt::Color3f{0.8F, 0, 0} : vdt::Color3f{0, 0, 0.8F});
    }
    cloud.areaPerPoint = 1 / 400.0;
    const Picture picture = draw(scene);
    const uint8_t* left = pixel(picture, 15, 24);
    const uint8_t* right = pixel(picture, 32, 24);
    EXPECT_GT(left[0], left[2] + 50);
    EXPECT_GT(right[2], right[0] + 50);
}

TEST(Render, SurvivesScenesWithoutAnythingSensibleInThem)
{
    const auto leafAt = [](const Placement& placement) {
        Scene scene = uprightSquare();
        SceneObject object{scene.levels.front().body.mesh, {placement}};
        scene.levels.front().foliage.push_back(std::move(object));
        return scene;
    };
    const auto square = [](float size, float height = 0) {
        Scene scene = emptyScene();
        addQuad(scene.levels.front().body.mesh,
                {{{0, height, 0}, {size, height, 0}, {size, height + size, 0}, {0, height + size, 0}}});
        return scene;
    };
    Scene onePoint = emptyScene();
    onePoint.levels.front().cloud.positions = {{1, 2, 3}};
    onePoint.levels.front().cloud.normals = {kUp};
    onePoint.levels.front().cloud.colors = {{}};
    Scene line = emptyScene();
    addQuad(line.levels.front().body.mesh, {{{0, 0, 0}, {0, 1, 0}, {0, 2, 0}, {0, 3, 0}}});
    Scene dot = emptyScene();
    addQuad(dot.levels.front().body.mesh, {{{1, 1, 1}, {1, 1, 1}, {1, 1, 1}, {1, 1, 1}}});
    const Scene scenes[] = {emptyScene(),
                            onePoint,
                            line,
                            dot,
                            square(1e-20F),
                            square(1e18F),
                            square(3e38F),
                            square(1, -1e9F),
                            leafAt({{1e29, 0, 0}, {}, 1}),
                            leafAt({{0, 0, 0}, {}, 1e29}),
                            leafAt({{0, 0, 0}, {}, 1e-29}),
                            leafAt({{0, 0, 0}, {0, 0, 0, 0}, -1})};
    for (const Scene& scene : scenes) {
        SCOPED_TRACE(&scene - scenes);
        for (const uint64_t budget : {uint64_t{0}, TracedScene::kMostCopiedTriangles}) {
            Shot shot{{35, 14}, {.width = 8, .height = 8, .samples = 5}, budget};
            EXPECT_EQ(draw(scene, shot).pixels.size(), 256u);
        }
    }
    // A leaf beyond all reach does not push the rest out of the picture.
    EXPECT_GT(meanOf(draw(scenes[8]), 3), 100);
}

TEST(Render, TurnsThePlantInEvenStepsThatMeet)
{
    const TemporaryFolder folder;
    const std::string tree = folder.write("tree.vdt", PlantText().text());
    const RunResult run = RunApp({"render", tree, "-o", folder.path("{variant}.png"), "--turntable", "16", "--size",
                                  "40", "--samples", "16", "--season", "summer"});
    ASSERT_EQ(run.status, 0) << run.messages;
    EXPECT_NE(run.out.find("16 frames, 40 x 40 pixels"), std::string::npos) << run.out;
    std::vector<Picture> frames;
    for (int i = 0; i < 16; ++i)
        frames.push_back(
            readPicture(folder.path("adult_0" + std::string(i < 10 ? "0" : "") + std::to_string(i) + ".png")));
    double largest = 0;
    for (size_t i = 0; i + 1 < frames.size(); ++i) {
        EXPECT_GT(difference(frames[i], frames[i + 1]), 0) << i;
        largest = std::max(largest, difference(frames[i], frames[i + 1]));
    }
    EXPECT_LE(difference(frames.back(), frames.front()), 1.2 * largest);
    EXPECT_GT(difference(frames[0], frames[8]), 0);
    EXPECT_FALSE(folder.has("adult.png"));
}

TEST(Render, RefusesWhatItCannotDo)
{
    const TemporaryFolder folder;
    const std::string tree = folder.write("tree.vdt", PlantText().text());
    const std::string out = folder.path("x.png");
    struct Row {
        std::vector<std::string> arguments;
        std::string problem; // part of the only error
    };
    const Row rows[] = {
        {{}, "--previews"},
        {{tree}, "--output"},
        {{"-o", out}, "plant"},
        {{tree, "-o", folder.path("x.jpg")}, "PNG"},
        {{tree, "-o", folder.path("{age}.png")}, "{age}"},
        {{tree, "-o", out, "--size", "0"}, "--size 0"},
        {{tree, "-o", out, "--size", "9000"}, "--size 9000"},
        {{tree, "-o", out, "--size", "64x"}, "640x480"},
        {{tree, "-o", out, "--size", "64x64x64"}, "640x480"},
        {{tree, "-o", out, "--background", "12345"}, "hexadecimal"},
        {{tree, "-o", out, "--background", "GGGGGG"}, "hexadecimal"},
        {{tree, "-o", out, "--samples", "0"}, "--samples"},
        {{tree, "-o", out, "--view", "back"}, "--view"},
        {{tree, "-o", out, "--turntable", "1"}, "--turntable"},
        {{tree, "-o", out, "--ground", "grass"}, "--ground"},
        {{tree, "-o", out, "--elevation", "91"}, "--elevation"},
        {{tree, "-o", out, "--sheet", out}, "--previews"},
        {{tree, "--previews", folder.path("")}, "--previews"},
        {{"--previews", folder.path("none")}, "no plant library"},
        {{tree, "--size", "8", "-o", folder.path("no/such/x.png")}, "x.png"},
    };
    for (const Row& row : rows) {
        std::vector<std::string> arguments = row.arguments;
        arguments.insert(arguments.begin(), {"render", "--threads", "1"});
        SCOPED_TRACE(arguments.back());
        const RunResult run = RunApp(arguments);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.out, "");
        const size_t error = run.messages.find("verdanth: error: ");
        ASSERT_NE(error, std::string::npos) << run.messages;
        EXPECT_NE(run.messages.find(row.problem, error), std::string::npos) << run.messages;
    }
    EXPECT_FALSE(folder.has("x.png"));
}

TEST(Previews, AreMadeWhereABrowserLooksAndOnlyWhereTheyAreMissing)
{
    const TemporaryFolder folder;
    PlantText plant;
    plant.moreModels = "<model name=\"old\" extref=\"models/old.vdt\"/><model name=\"a/b\" extref=\"models/old.vdt\"/>"
                       "<model extref=\"models/old.vdt\"/><model name=\"old\" extref=\"models/old.vdt\"/>";
    folder.write("lib/Testa_plana/Testa_plana.vdt", plant.text());
    folder.write("lib/Testa_plana/models/old.vdt", plant.targetText());
    folder.write("lib/Alba.f.minor/Alba.f.minor.vdt", PlantText().text());
    const auto make = [&](std::vector<std::string> more = {}) {
        more.insert(more.begin(), {"render", "--previews", folder.path("lib"), "--size", "16", "--samples", "2"});
        return RunApp(more);
    };
    const std::string main = "lib/Testa_plana/Testa_plana.png";
    const std::string adult = "lib/Testa_plana/models/Testa_plana_adult.png";
    const std::string old = "lib/Testa_plana/models/Testa_plana_old.png";
    const RunResult first = make({"--sheet", folder.path("sheet.png")});
    EXPECT_EQ(first.status, 0) << first.messages;
    EXPECT_NE(first.out.find("2 plants, 5 pictures made, 0 were there"), std::string::npos) << first.out;
    for (const std::string& path : {main, adult, old, std::string("lib/Alba.f.minor/Alba.png")})
        EXPECT_EQ(readPicture(folder.path(path)).width, 16u);
    EXPECT_TRUE(folder.has("lib/Alba.f.minor/models/Alba_adult.png"));
    EXPECT_EQ(folder.read(main), folder.read(adult));
    const auto pictures = [&] {
        const std::filesystem::recursive_directory_iterator all(folder.path("lib"));
        return std::count_if(begin(all), end(all),
                             [](const auto& entry) { return entry.path().extension() == ".png"; });
    };
    EXPECT_EQ(pictures(), 5);

    // The sheet shows the previews one beside the other, in the library's order.
    const Picture sheet = readPicture(folder.path("sheet.png"));
    ASSERT_EQ(sheet.width, 32u);
    ASSERT_EQ(sheet.height, 16u);
    const Picture second = readPicture(folder.path(main));
    for (uint32_t y = 0; y < 16; ++y)
        EXPECT_TRUE(std::equal(pixel(second, 0, y), pixel(second, 0, y) + 64, pixel(sheet, 16, y))) << y;

    folder.write(adult, "mine");
    std::filesystem::remove(folder.path(old));
    const RunResult again = make();
    EXPECT_EQ(again.status, 0) << again.messages;
    EXPECT_NE(again.out.find("1 pictures made, 4 were there"), std::string::npos) << again.out;
    EXPECT_EQ(folder.read(adult), "mine");
    EXPECT_TRUE(folder.has(old));
    EXPECT_EQ(make({"--overwrite"}).status, 0);
    EXPECT_NE(folder.read(adult), "mine");

    // What cannot be drawn does not keep the rest from being drawn.
    folder.write("lib/Broken/Broken.vdt", "no plant");
    std::filesystem::remove(folder.path(main));
    const RunResult partly = make();
    EXPECT_EQ(partly.status, 2);
    EXPECT_NE(partly.messages.find("Broken.vdt: holds no plant"), std::string::npos) << partly.messages;
    EXPECT_TRUE(folder.has(main));
    EXPECT_EQ(pictures(), 5);
}

} // namespace
} // namespace verdanth::test
