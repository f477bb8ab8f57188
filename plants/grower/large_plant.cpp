#include "grower/large_plant.h"

#include "grower/organs.h"
#include "grower/plant.h"
#include "grower/vocabulary.h"

namespace grower {
namespace {

constexpr size_t kStemCount = 40000;
constexpr uint64_t kConnectorCount = 60000;
constexpr int kGroupCount = 3;

AgeRecipe largeAge()
{
    const StemRecipe branch{.spacing = 16,
                            .firstAt = 0.1,
                            .lastAt = 0.97,
                            .length = {0.42, 0.15},
                            .segment = 84,
                            .wander = 6,
                            .pullAtTip = -0.1,
                            .shortest = 10};
    AgeRecipe age{.name = "adult", .seed = 2024, .height = 2600, .trunkRadius = 30, .tipRadius = 0.1};
    age.crown = {{0.1, 0.1}, {0.4, 0.32}, {0.7, 0.25}, {1, 0.03}};
    age.trunk = {.segment = 15, .wander = 2};
    StemRecipe bough = branch;
    bough.spacing = 14;
    bough.length = {0.95, 0.1};
    StemRecipe twig = branch;
    twig.length = {0.9, 0.2};
    twig.segment = 36.5;
    age.stems = {bough, branch, twig};
    return age;
}

} // namespace

vdt::Model GrowLargePlant()
{
    const AgeRecipe age = largeAge();
    Stems stems = GrowStems(age);
    if (stems.size() > kStemCount) stems.resize(kStemCount); // parents come first, so the rest is whole
    ThickenStems(age, stems);

    vdt::Model model;
    model.name = "Planta magna";
    model.variants.emplace_back();
    vdt::ModelVariant& variant = model.variants.back();
    variant.name = age.name;
    variant.labels = AgeLabels(age.name);
    variant.qualifiers = Seasons();
    variant.defaultQualifier = kSummer;
    variant.skeleton = BuildSkeleton(age, stems);

    // Colours and turns that nothing rounds: every number is as long in the text as numbers get.
    Random random(age.seed, 1);
    const auto part = [&] { return static_cast<float>(random.real()); };
    for (vdt::SkeletonPoint& point : variant.skeleton.points) {
        point.position = point.position + vdt::Vector3{random.real(), random.real(), random.real()} * 1e-3;
        point.restPosition = point.position;
    }
    for (vdt::SkeletonBranch& branch : variant.skeleton.branches)
        for (vdt::SkeletonVertex* vertex = branch.firstVertex; vertex; vertex = vertex->next)
            vertex->attributes.color = {part(), part(), part()};
    for (uint64_t i = 0; i < kConnectorCount; ++i) {
        vdt::ConnectorAttributes attributes;
        attributes.color = {part(), part(), part()};
        attributes.orient = vdt::Normalized(vdt::Quaternion{part(), part(), part(), part()});
        attributes.scale = random.between(0.7, 1.3);
        attributes.group = static_cast<int32_t>(random.below(kGroupCount));
        variant.skeleton.AddConnector(attributes, random.below(static_cast<uint32_t>(variant.skeleton.points.size())));
    }

    const LeafShape leaf{.halfWidth = {{0, 0.05}, {0.4, 0.3}, {1, 0}}};
    for (int group = 0; group < kGroupCount; ++group) {
        auto mesh = std::make_unique<vdt::Mesh>();
        mesh->SetName("leaf");
        AddSpray(*mesh, {.leaves = 3 + group, .seed = static_cast<uint64_t>(group) + 1}, leaf, {.material = 1});
        variant.meshes.emplace_back(group, "", std::move(mesh));
    }
    for (const int32_t id : {0, 1}) {
        model.materials.emplace_back();
        model.materials.back().matid = id;
        model.materials.back().name = id == 0 ? "wood" : "leaf";
    }
    variant.bound = variant.computeBound();
    return model;
}

} // namespace grower
