#include "grower/recipe.h"
#include "grower/vocabulary.h"

#include <algorithm>
#include <set>

namespace grower {
namespace {

class Checker {
public:
    explicit Checker(const SpeciesRecipe& speciesRecipe) : recipe(speciesRecipe) {}

    std::vector<std::string> run()
    {
        checkTexts("label", recipe.labels);
        checkTexts("description", recipe.descriptions);
        expect(recipe.name.find(' ') != std::string::npos, "the botanical name has no species");
        expect(recipe.wood.contains(""), "no wood colour without a season");
        for (const vdt::Qualifier& season : Seasons())
            expect(recipe.foliage.contains(season.name), "no foliage colour for " + season.name);
        checkTextures();
        checkMaterials();
        checkOrgans();
        expect(!recipe.ages.empty(), "no ages");
        for (const AgeRecipe& age : recipe.ages) checkAge(age);
        for (size_t i = 1; i < recipe.ages.size(); ++i)
            expect(recipe.ages[i - 1].height < recipe.ages[i].height, recipe.ages[i].name + " is not the taller age");
        expect(materials.contains(recipe.proxyBark) && materials.contains(recipe.proxyFoliage),
               "the proxy has materials that are not there");
        return std::move(faults);
    }

private:
    void expect(bool holds, const std::string& fault)
    {
        if (!holds) faults.push_back(fault);
    }

    void checkTexts(const std::string& what, const vdt::LocalizedTexts& texts)
    {
        for (const char* language : kLanguages) {
            const auto found = texts.find(language);
            expect(found != texts.end() && !found->second.empty(), "no " + what + " in " + language);
        }
    }

    void checkTextures()
    {
        for (const TextureRecipe& texture : recipe.textures) {
            expect(textures.insert(texture.file).second, "two textures " + texture.file);
            expect(texture.draw != nullptr, "nothing draws " + texture.file);
        }
    }

    void checkSide(const std::string& material, const SideRecipe& side)
    {
        expect(textures.contains(side.texture), "material " + material + " has no texture \"" + side.texture + "\"");
        expect(side.normal.empty() || textures.contains(side.normal),
               "material " + material + " has no texture \"" + side.normal + "\"");
    }

    void checkMaterials()
    {
        for (const MaterialRecipe& material : recipe.materials) {
            expect(materials.insert(material.id).second, "two materials " + std::to_string(material.id));
            checkSide(material.name, material.front);
            if (material.back) checkSide(material.name, *material.back);
        }
    }

    void checkOrgans()
    {
        for (const OrganRecipe& organ : recipe.organs) {
            const auto isIt = [&](const vdt::Qualifier& season) { return season.name == organ.season; };
            expect(organ.season.empty() || std::any_of(Seasons().begin(), Seasons().end(), isIt),
                   organ.name + " has the season \"" + organ.season + "\"");
            groups.insert(organ.group);
            if (!organ.build) {
                expect(false, "nothing builds " + organ.name);
                continue;
            }
            vdt::Mesh mesh;
            organ.build(mesh);
            expect(mesh.PolygonCount() > 0, organ.name + " has no polygons");
            expect(std::all_of(mesh.materials.begin(), mesh.materials.end(),
                               [&](int32_t id) { return materials.contains(id); }),
                   organ.name + " has a material that is not there");
        }
    }

    void checkStem(const std::string& age, const StemRecipe& stem)
    {
        expect(stem.spacing > 0 && stem.segment > 0, age + " has stems without spacing or segment");
        expect(stem.firstAt >= 0 && stem.firstAt < stem.lastAt && stem.lastAt <= 1,
               age + " has stems outside of their parents");
        expect(stem.changeFrom >= 0 && stem.changeFrom < 1, age + " has stems that change beyond their parents' tips");
        expect(materials.contains(stem.material), age + " has stems of a material that is not there");
    }

    void checkAge(const AgeRecipe& age)
    {
        expect(!AgeLabels(age.name).empty(), "no age is called \"" + age.name + "\"");
        expect(age.height > 0 && age.tipRadius > 0 && age.trunkRadius > age.tipRadius, age.name + " has no trunk");
        const auto rises = [](const ProfilePoint& a, const ProfilePoint& b) { return a.at >= b.at; };
        expect(age.crown.size() >= 2 &&
                   std::adjacent_find(age.crown.begin(), age.crown.end(), rises) == age.crown.end(),
               age.name + "'s crown does not rise");
        checkStem(age.name, age.trunk);
        for (const FootBark& bark : age.footBarks)
            expect(materials.contains(bark.material), age.name + " has a foot of a material that is not there");
        for (const StemRecipe& stem : age.stems) checkStem(age.name, stem);
        if (age.scaffold) {
            const ScaffoldRecipe& scaffold = *age.scaffold;
            expect(scaffold.buds > 0 && scaffold.step > 0, age.name + "'s scaffold does not grow");
            expect(scaffold.nearEnough > scaffold.step && scaffold.reach > scaffold.nearEnough,
                   age.name + "'s scaffold never reaches its buds");
            expect(materials.contains(scaffold.material) && materials.contains(scaffold.thinMaterial),
                   age.name + " has a scaffold of a material that is not there");
        }
        for (const FoliageRule& rule : age.foliage) {
            expect(rule.fromLayer <= std::min(rule.lastLayer, static_cast<int>(age.stems.size())),
                   age.name + " has foliage on no stems");
            expect(rule.perVertex > 0 && !rule.groups.empty(), age.name + " has foliage without groups");
            for (const int32_t group : rule.groups)
                expect(groups.contains(group), age.name + " has foliage of group " + std::to_string(group));
        }
    }

    const SpeciesRecipe& recipe;
    std::vector<std::string> faults;
    std::set<std::string> textures;
    std::set<int32_t> materials;
    std::set<int32_t> groups;
};

} // namespace

std::vector<std::string> RecipeFaults(const SpeciesRecipe& recipe)
{
    return Checker(recipe).run();
}

} // namespace grower
