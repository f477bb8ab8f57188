// A host with the module in it, an open document, and small models to place plants of.
#pragma once

#include "plant/plant_object.h"
#include "support/test_host.h"

#include <string>
#include <string_view>

namespace host::test {

/// Three variants in centimetres: "young", complete, with the seasons "summer" and "autumn"; "adult", the default, a
/// stub in a file of its own with the seasons "winter" and "spring", a bound, and proxies without a name and of the
/// name "flat"; and one without a name or label, with three leaves and no seasons. Materials 1 (bark) and 2 (leaf).
std::string OakText(std::string_view unit = "centimeters", std::string_view stub = "oak_adult.vdt");
std::string OakAdultText();

class PlantScene : public ModuleHost {
public:
    explicit PlantScene(const TestHostOptions& options = {});

    /// Writes both files. Gives the main file's path.
    std::string writeOak(const std::string& folderName = "oak");
    /// A plant object, last in the document. With an empty path nothing is chosen.
    BaseObject& place(const std::string& path);
    /// The same, showing variant and qualifier.
    BaseObject& place(const std::string& path, Int32 variant, Int32 qualifier = 0);
    BaseMaterial& addMaterial(const Vector& colour, Int32 type = Mmaterial);
    /// Behind the object's other texture tags.
    TextureTag& addTexture(BaseObject& object, BaseMaterial& material, const char* restriction, Int32 side = 0);
    void evaluate(BUILDFLAGS flags = BUILDFLAGS_0);
    PolygonObject* evaluated(BaseObject& object, BUILDFLAGS flags = BUILDFLAGS_0);

    BaseDocument* document; // the active one
};

// Of any node, by parameter.
Int32 IntegerOf(BaseList2D& node, Int32 id);
std::string TextOfParameter(BaseList2D& node, Int32 id);
void Set(BaseList2D& node, Int32 id, const GeData& value);

VerdanthSelectionData SelectionOf(BaseObject& plant);
void Choose(BaseObject& plant, const std::string& path);
BasePlantObject& DataOf(BaseObject& plant);
Filename ToFilename(const std::string& path);

/// Counts how often files of a folder are opened.
class OpenedFiles {
public:
    explicit OpenedFiles(const std::string& folder);
    OpenedFiles(const OpenedFiles&) = delete;
    OpenedFiles& operator=(const OpenedFiles&) = delete;
    ~OpenedFiles();

    /// Since the last call.
    int count(std::string_view fileName);

private:
    int watch;
};

} // namespace host::test
