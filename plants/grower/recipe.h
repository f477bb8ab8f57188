// What the grower must know to grow one species at its ages and seasons.
//
// A recipe is plain data, one file a species in plants/species. Lengths are centimetres, angles degrees, y is up and
// the foot of the plant stands on the origin.
#pragma once

#include "grower/image.h"
#include "grower/profile.h"
#include "grower/random.h"
#include "grower/vocabulary.h"
#include "vdt/mesh/mesh.h"
#include "vdt/model/model.h"

#include <functional>
#include <optional>

namespace grower {

/// How the stems of one layer stand on those of the layer before, and how they grow.
struct StemRecipe {
    double spacing = 10;  // between neighbours on the parent
    double firstAt = 0.1; // the part of the parent that bears them, 0 foot to 1 tip
    double lastAt = 0.95;
    // Of the parent's length; on a trunk, of the way to the crown's edge; on a scaffold's wood, centimetres.
    Spread length{0.5, 0.1};
    double lengthAtTip = 0.4; // what is left of that near the parent's tip
    Spread angle{50, 8};      // to the parent at its foot
    double angleAtTip = 35;   // the same near the parent's tip
    double changeFrom = 0;    // the part of the parent below which nothing changes towards its tip yet
    Spread turn{137.5, 20};   // around the parent from one to the next
    Spread startTurn{0, 180}; // of the first one; 0 is sideways
    double segment = 10;      // between two vertices
    double wander = 4;        // random turn at each vertex
    double pull = 0;          // towards the sky, or the ground where negative, at the foot; 0 to 1
    double pullAtTip = 0;     // the same at the tip
    double shortest = 2;      // shorter ones do not grow
    bool leavesCrown = false; // else shorter where growing straight on would lead far out of the crown
    Spread clearance{};       // how far above the ground those that hang end
    int32_t material = 0;
};

/// The wood of a plant whose branches compete for space: see scaffold.cpp.
struct ScaffoldRecipe {
    int buds = 2000;        // places in the crown that want to be reached
    double reach = 200;     // how far a bud is felt
    double nearEnough = 60; // a bud that the wood has come so near to is served
    double step = 30;       // between two vertices
    double wander = 0.25;   // random share of a step's direction
    double pull = 0.1;      // towards the sky
    double hollow = 0.3;    // the crown's inner part without buds, of its radius
    int clumps = 0;         // the buds keep together in so many; spread evenly at 0
    double clumpRadius = 100;
    double clumpHeight = 0.5;  // of the radius
    double clearance = 0.1;    // the wood's height below the first bud, of the plant's height
    int leaders = 1;           // stems into which the trunk divides there; more than one begin by themselves
    double leaderAngle = 25;   // to the sky
    double leaderLength = 0.2; // of the plant's height
    double twigWood = 150;     // twigs stand on wood that bears no more wood than so much behind it
    int32_t material = 0;
    int32_t thinMaterial = 0; // of branches that begin as twig wood
};

/// Where foliage stands on the stems.
struct FoliageRule {
    int fromLayer = 2;             // stems of this layer and beyond; trunk and scaffold are 0, `stems` begins with 1
    int lastLayer = 99;            // and not beyond this one
    std::vector<int32_t> groups{}; // one of them at each place
    double firstAt = 0.1;          // the part of the stem that bears it
    double perVertex = 1;          // how many at each vertex
    bool tipOnly = false;          // at the stem's last vertex alone
    Spread angle{0, 10};           // to the stem
    Spread scale{1, 0.2};
    Profile scaleAlong{};   // a factor to that by the place on the stem, 0 foot to 1 tip; without points it is 1
    double droop = 0;       // how far it turns towards the ground, or the sky where negative, 0 to 1
    double faceUp = 1;      // 1: faces the sky; 0: whichever way
    bool upperSide = false; // "the sky" is the stem's own upper side, which at its foot is that of the parent's tip
};

/// Bark that only the trunk's foot has, up to a height above its flare. What stands higher is a branch further from the
/// root, which meshes round less: best begun where leaves hide it.
struct FootBark {
    double below = 0.1; // of the plant's height
    int32_t material = 0;
};

struct AgeRecipe {
    std::string name{}; // "young", "medium", "adult"
    uint64_t seed = 1;
    double height = 100;
    double trunkRadius = 1; // at the foot, above the flare
    double tipRadius = 0.1;
    double flare = 0; // how much wider the very foot is, of the radius
    double flareHeight = 20;
    double trunkLength = 1; // of the height
    Profile crown{};        // radius by height, both of the plant's height
    StemRecipe trunk{};
    std::vector<FootBark> footBarks{};        // lowest first
    std::optional<ScaffoldRecipe> scaffold{}; // in place of a trunk that runs to the top
    std::vector<StemRecipe> stems{}; // each layer on the one before; on a scaffold the first stands on its thin wood
    std::vector<FoliageRule> foliage{};
};

/// A picture, drawn on demand.
struct TextureRecipe {
    std::string file{}; // below the species' textures
    std::function<Image()> draw{};
};

/// A mesh that connectors of a group place in a season; in all of them if there is none.
struct OrganRecipe {
    int32_t group = 0;
    std::string season{};
    std::string name{};
    std::function<void(vdt::Mesh&)> build{};
};

struct SideRecipe {
    std::string texture{}; // one of the textures; its mean colour is the side's colour
    std::string normal{};
    float diffuseRoughness = 0;
    vdt::Color3f specular{};
    float specularRoughness = 0.4f;
};

struct MaterialRecipe {
    int32_t id = 0;
    std::string name{};
    SideRecipe front{};
    std::optional<SideRecipe> back{};
    int turns = 1;           // on stems: how many turns around the stem the pictures are long
    bool cutOut = false;     // the front's texture has the outline in its alpha
    double translucency = 0; // how strongly light comes through, 0 to 1
    double depth = 0;        // how thick that is, model units
};

struct SpeciesRecipe {
    std::string name{}; // botanical
    vdt::LocalizedTexts labels{};
    vdt::LocalizedTexts descriptions{};
    vdt::SeasonColors wood{};
    vdt::SeasonColors foliage{};
    std::vector<TextureRecipe> textures{};
    std::vector<MaterialRecipe> materials{};
    std::vector<OrganRecipe> organs{};
    std::vector<AgeRecipe> ages{};        // youngest first; the last is the default
    SeasonPosition shownSeason = kSummer; // in which the plant is shown where nobody asks for another
    int32_t proxyBark = 0;
    int32_t proxyFoliage = 0;
    bool storeProxy = false; // a light stand-in in the file, instead of one made on demand
};

/// What is wrong with a recipe, one line each; empty for a good one.
std::vector<std::string> RecipeFaults(const SpeciesRecipe& recipe);

} // namespace grower
