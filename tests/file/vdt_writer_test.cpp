#include "support/model_text.h"
#include "support/skeleton_builder.h"
#include "support/temporary_folder.h"
#include "vdt/file/vdt_writer.h"
#include "vdt/file/xml_output.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <random>

namespace vdt::test {
namespace {

using testing::ElementsAreArray;

class RandomModel {
public:
    explicit RandomModel(uint32_t seed) : random(seed) {}

    Model make()
    {
        Model model;
        model.info = {"creator & \"co\"", "user<>", "now", "C:\\grown\\"};
        model.unit = kMillimeters;
        model.name = "Betula 'pendula'";
        model.labels = {{"de-DE", "H\xC3\xA4nge-Birke & mehr"}, {"en", " spaced > text\n"}};
        model.descriptions = {{"fr", "bouleau"}};
        model.woodColors = {{"", {number(), 0, 1, 0.5f}}, {"winter", {}}};
        model.foliageColors = {{"summer", {0.1f, number(), 0.3f, 1}}};
        for (int kind = 0; kind < 3; ++kind) model.materials.push_back(material(kind));
        for (int i = 0; i < 2; ++i) model.variants.push_back(variant());
        model.defaultVariant = 1;
        return model;
    }

    float number()
    {
        const auto bits = static_cast<uint32_t>(random());
        const float value = std::bit_cast<float>(bits);
        return std::isnan(value) ? std::bit_cast<float>(0x80000000u) : value;
    }
    double wide()
    {
        return std::ldexp(static_cast<double>(random()) + random() * 0x1p-32, static_cast<int>(random() % 80) - 60);
    }

private:
    MaterialData material(int kind)
    {
        MaterialData material;
        material.matid = kind - 1;
        material.front = {{number(), number(), number()}, "d.png", number(), {}, "", number(), "n", "", number()};
        if (kind == 1) material.aliasBack();
        if (kind == 2) material.backSide(true)->specularTexture = "back \\\" spec\\";
        material.alphaTexture = "a.png";
        material.displacementHeight = wide();
        material.displacementCentered = kind == 0;
        material.subsurfaceDepth = wide();
        return material;
    }

    ModelVariant variant()
    {
        ModelVariant variant;
        variant.name = "adult";
        variant.labels = {{"es", "adulto"}};
        variant.bound = {{-wide(), -1, 0}, {1, 2, wide()}};
        variant.qualifiers = {{-5, "summer", {{"en", "Summer"}}}, {7, "", {}}};
        variant.defaultQualifier = 1;
        for (int i = 0; i < 40; ++i) variant.skeleton.AddPoint(Vector3{wide(), -wide(), number()});
        for (uint64_t branch = 0; branch < 5; ++branch) {
            std::vector<uint64_t> points;
            std::vector<VertexAttributes> attributes;
            for (uint64_t i = 0; i < 2 + branch; ++i) {
                points.push_back(branch * 7 + i);
                attributes.push_back({wide(), number(), {number(), 1, 1}, {number(), number(), number(), number()}});
            }
            variant.skeleton.AddBranch(static_cast<int32_t>(branch) - 2, points, attributes);
        }
        for (uint64_t i = 0; i < 9; ++i)
            variant.skeleton.AddConnector({{1, number(), 1}, {0, 0, number(), 1}, wide(), static_cast<int32_t>(i)},
                                          i % 4);
        variant.skeleton.points[3].weight = number();
        for (const char* season : {"", "summer"}) variant.meshes.emplace_back(3, season, mesh());
        variant.proxies.push_back({"winter", std::move(*mesh())});
        return variant;
    }

    std::unique_ptr<Mesh> mesh()
    {
        auto made = std::make_unique<Mesh>();
        made->SetName("leaf \"1\"");
        for (int i = 0; i < 6; ++i) made->AddPoint({wide(), wide(), number()}, Vector3{0, 0, 0});
        for (uint64_t corners = 1; corners <= 5; ++corners) {
            std::vector<uint64_t> vertices, coordinates;
            for (uint64_t c = 0; c < corners; ++c) {
                vertices.push_back((c + corners) % 6);
                coordinates.push_back(made->AddUV(number(), number()));
            }
            made->AddPolygon(vertices, coordinates, static_cast<int32_t>(corners));
        }
        made->ComputeNormals();
        return made;
    }

    std::mt19937 random;
};

std::string textOf(const Model& model, VdtWriterOptions options = {})
{
    RecordingMessages messages;
    std::ostringstream stream;
    EXPECT_TRUE(VdtWriter(model, messages, std::move(options)).write(stream)) << messages.errors.at(0);
    return stream.str();
}

template <class T> std::string bytesOf(const Array<T>& values)
{
    return {reinterpret_cast<const char*>(values.data()), values.size() * sizeof(T)};
}

void expectSameMesh(const Mesh& a, const Mesh& b)
{
    EXPECT_EQ(a.name, b.name);
    EXPECT_EQ(bytesOf(a.positions), bytesOf(b.positions));
    EXPECT_EQ(bytesOf(a.coordinates), bytesOf(b.coordinates));
    EXPECT_EQ(bytesOf(a.polygonEnds), bytesOf(b.polygonEnds));
    EXPECT_EQ(bytesOf(a.polygonVertices), bytesOf(b.polygonVertices));
    EXPECT_EQ(bytesOf(a.materials), bytesOf(b.materials));
}

} // namespace

TEST(VdtWriter, WhatItWritesReadsBackTheSame)
{
    for (uint32_t seed = 1; seed <= 20; ++seed) {
        const Model model = RandomModel(seed).make();
        const std::string text = textOf(model);
        const ReadModel read = readText(text);
        EXPECT_TRUE(read.messages.errors.empty() && read.messages.warnings.empty() && read.losses.empty());
        EXPECT_EQ(textOf(read.model), text);
        EXPECT_EQ(read.model.info, model.info);
        EXPECT_EQ(read.model.name, model.name);
        EXPECT_EQ(read.model.unit, model.unit);
        EXPECT_EQ(read.model.labels, model.labels);
        EXPECT_EQ(read.model.descriptions, model.descriptions);
        EXPECT_EQ(read.model.woodColors, model.woodColors);
        EXPECT_EQ(read.model.foliageColors, model.foliageColors);
        EXPECT_THAT(read.model.materials, ElementsAreArray(model.materials));
        ASSERT_EQ(read.model.variants.size(), 2u);
        EXPECT_EQ(read.model.defaultVariant, 1u);
        for (size_t i = 0; i < 2; ++i) {
            const ModelVariant& a = model.variants[i];
            const ModelVariant& b = read.model.variants[i];
            EXPECT_EQ(a.bound, b.bound);
            EXPECT_EQ(a.labels, b.labels);
            EXPECT_EQ(a.qualifiers, b.qualifiers);
            EXPECT_EQ(a.defaultQualifier, b.defaultQualifier);
            EXPECT_EQ(Everything(a.skeleton), Everything(b.skeleton));
            ASSERT_EQ(b.meshes.size(), 2u);
            EXPECT_EQ(b.meshes[1].qualifier, "summer");
            expectSameMesh(*a.meshes[1].mesh, *b.meshes[1].mesh);
            ASSERT_EQ(b.proxies.size(), 1u);
            expectSameMesh(a.proxies[0].mesh, b.proxies[0].mesh);
        }
    }
}

TEST(VdtWriter, FilesAreWrittenWholeAndTheSameEachTime)
{
    const TemporaryFolder folder;
    Model model = RandomModel(1).make();
    model.materials[0].front.diffuseTexture = folder.path("textures/bark.png");
    RecordingMessages messages;
    std::string first;
    for (const char* name : {"a.vdt", "b.vdt.gz", "c.vdt.gz"}) {
        ASSERT_TRUE(VdtWriter(model, messages).writeFile(folder.path(name)));
        Model read;
        ASSERT_TRUE(VdtReader(read, messages).readFile(folder.path(name)));
        EXPECT_EQ(read.materials[0].front.diffuseTexture, folder.path("textures/bark.png"));
        EXPECT_FALSE(folder.has(std::string(name) + ".part"));
    }
    EXPECT_EQ(folder.read("b.vdt.gz"), folder.read("c.vdt.gz"));
    EXPECT_THAT(folder.read("a.vdt"), testing::HasSubstr("\"textures/bark.png\""));
    EXPECT_FALSE(VdtWriter(model, messages).writeFile(folder.path("no/such/folder.vdt")));
    EXPECT_THAT(messages.errors.at(0), testing::HasSubstr("no/such/folder.vdt"));
}

TEST(VdtWriter, RefusesWhatTheFormatCannotTell)
{
    using Spoil = void (*)(Model&);
    const Spoil spoils[] = {
        [](Model& m) { m.labels["en"] = "a < b"; },
        [](Model& m) { m.labels["german"] = "x"; },
        [](Model& m) { m.labels["en"].clear(); },
        [](Model& m) { m.name = std::string("a\0b", 3); },
        [](Model& m) { m.name = std::string(4097, 'x'); },
        [](Model& m) { m.unit = 9; },
        [](Model& m) { m.variants[0].qualifiers[0].id = 7; },
        [](Model& m) { m.variants[0].skeleton.connectors[0].point = 99; },
        [](Model& m) {
            const uint64_t six[] = {0, 1, 2, 3, 4, 5};
            m.variants[0].meshes[0].mesh->AddPolygon(six, six, 0);
        },
    };
    for (const Spoil& spoil : spoils) {
        Model model = RandomModel(2).make();
        spoil(model);
        RecordingMessages messages;
        std::ostringstream stream;
        EXPECT_FALSE(VdtWriter(model, messages).write(stream)) << &spoil - spoils;
        EXPECT_EQ(messages.errors.size(), 1u);
    }
}

TEST(VdtWriter, WritesTheTargetOfAnExtref)
{
    Model model = RandomModel(3).make();
    model.variants[0].info.creator = "grower";
    const ReadModel read = readText(textOf(model, {.withoutPlant = true}));
    ASSERT_EQ(read.model.variants.size(), 1u);
    EXPECT_EQ(read.model.variants[0].info.creator, "grower");
    EXPECT_EQ(Everything(read.model.variants[0].skeleton), Everything(model.variants[0].skeleton));
}

} // namespace vdt::test
