#include "inspect/check_file.h"

#include "console/text_table.h"
#include "exit_status.h"
#include "files/input_file.h"
#include "inspect/check_gzip.h"
#include "inspect/check_variant.h"
#include "inspect/checked_reader.h"
#include "lookup/open_plant.h"

#include <algorithm>
#include <set>

namespace verdanth {
namespace {

// One model file with what its reader noted.
struct ReadFile {
    vdt::Model model;
    bool hasPlant = false;
    std::vector<bool> variantHasFrames;
};

// False, with the reason among the findings, if nothing can be had from the file.
bool readChecked(const std::string& path, ReadFile& read, FindingList& findings, vdt::MessageHandler& messages)
{
    const std::string problem = ProblemOfFile(path);
    if (!problem.empty()) {
        findings.fail("file", problem);
        return false;
    }

    FindingMessages handler(findings, messages);
    CheckedReader reader(read.model, handler, findings);
    const bool complete = reader.readFile(path);
    CheckGzip(path, findings, messages);
    read.hasPlant = reader.hasPlant;
    read.variantHasFrames = reader.variantHasFrames;
    read.variantHasFrames.resize(read.model.variants.size());
    if (!complete)
        findings.fail("file", "cannot be read to its end");
    else if (read.model.variants.empty())
        findings.fail("file", "holds no variant of a plant");
    return complete && !read.model.variants.empty();
}

void checkTexture(const std::string& texture, const std::string& use, const std::string& modelFile,
                  std::set<std::string>& told, FindingList& findings)
{
    if (texture.empty() || !told.insert(use + texture).second) return;
    const std::string problem = IsSameFile(texture, modelFile) ? "is the model file itself" : ProblemOfFile(texture);
    if (!problem.empty()) findings.warn("texture", use + " " + texture + " " + problem);
}

void checkTextures(const vdt::Model& model, const std::string& path, FindingList& findings)
{
    std::set<std::string> told;
    std::set<int32_t> ids;
    for (const vdt::MaterialData& material : model.materials) {
        const std::string owner = Numbered("material", material.matid) + ": ";
        const auto check = [&](const std::string& texture, const char* use) {
            checkTexture(texture, owner + use, path, told, findings);
        };
        const auto checkSide = [&](const vdt::MaterialSide& side, const std::string& name) {
            check(side.diffuseTexture, (name + "diffuse texture").c_str());
            check(side.specularTexture, (name + "specular texture").c_str());
            check(side.normalTexture, (name + "normal texture").c_str());
            check(side.bumpTexture, (name + "bump texture").c_str());
        };
        checkSide(material.front, "");
        if (material.hasSeparateBack()) checkSide(*material.back(), "back's ");
        if (material.alphaTexture != material.front.diffuseTexture) check(material.alphaTexture, "alpha texture");
        check(material.displacementTexture, "displacement texture");
        check(material.subsurfaceTexture, "subsurface texture");
        if (!ids.insert(material.matid).second)
            findings.warn("material", Numbered("two materials have the id", material.matid));
    }
}

class FileCheck {
public:
    FileCheck(CheckReport& checkReport, vdt::MessageHandler& handler)
        : report(&checkReport),
          messages(&handler),
          mainFindings(checkReport.findings, checkReport.file)
    {
    }

    void run()
    {
        if (!readChecked(report->file, mainFile, mainFindings, *messages)) return;

        checkTextures(mainFile.model, report->file, mainFindings);
        bool anyUsable = false;
        for (uint64_t i = 0; i < mainFile.model.variants.size() && !messages->isCancelled(); ++i)
            anyUsable |= checkVariant(i);
        if (!anyUsable && !messages->isCancelled())
            mainFindings.fail("variant", "none of its variants has anything to show");
    }

private:
    // False if the variant has no geometry to give.
    bool checkVariant(uint64_t index)
    {
        vdt::ModelVariant& variant = mainFile.model.variants[index];
        const std::string title =
            variant.name.empty() ? VariantTitle(mainFile.model, index) : "variant \"" + variant.name + "\"";
        const bool stub = !variant.extref.empty();
        if (stub && !variant.skeleton.isEmpty()) {
            mainFindings.warn("extref", title + ": has geometry of its own, so its extref is never read");
        } else if (stub && !takeOverTarget(variant, title)) {
            return false;
        }

        // Loading a file of its own computes the frames.
        const CheckedVariant checked{variant, title, stub || mainFile.variantHasFrames[index]};
        CheckVariant(checked, mainFindings);
        if (mainFile.hasPlant) CheckMaterialIds(checked, mainFile.model, mainFindings);
        const bool usable = !variant.skeleton.isEmpty() || !variant.meshes.empty();
        variant.releaseGeometry();
        return usable;
    }

    // Reads the file behind a stub as its expansion does.
    bool takeOverTarget(vdt::ModelVariant& variant, const std::string& title)
    {
        const std::string& target = variant.extref;
        const auto unusable = [&](const std::string& why) {
            mainFindings.warn("extref", title + ": " + target + " " + why);
            return false;
        };
        if (IsSameFile(target, report->file)) return unusable("is the file itself");
        if (const std::string problem = ProblemOfFile(target); !problem.empty()) return unusable(problem);

        ReadFile read;
        std::vector<Finding> targetFindings;
        FindingList list(targetFindings, target);
        const bool loaded = readChecked(target, read, list, *messages);
        for (Finding& finding : targetFindings) finding.unusable = false; // other variants may be whole
        if (checkedTargets.insert(target).second)
            report->findings.insert(report->findings.end(), targetFindings.begin(), targetFindings.end());
        if (!loaded) return unusable("holds no variant that can be loaded");

        vdt::ModelVariant& first = read.model.variants.front();
        if (!first.extref.empty() && first.skeleton.isEmpty())
            return unusable("is a stub again, which is not followed");
        if (first.skeleton.points.empty()) return unusable("has a skeleton without points, so it never loads");
        if (read.model.variants.size() > 1)
            mainFindings.warn("extref", title + ": " + target + " holds " + std::to_string(read.model.variants.size()) +
                                            " variants, of which the first alone is used");
        variant.skeleton.Swap(first.skeleton);
        variant.meshes.swap(first.meshes);
        if (!first.qualifiers.empty()) variant.qualifiers.swap(first.qualifiers);
        return true;
    }

    CheckReport* report;
    vdt::MessageHandler* messages;
    FindingList mainFindings;
    ReadFile mainFile;
    std::set<std::string> checkedTargets;
};

} // namespace

int CheckReport::status() const
{
    if (std::any_of(findings.begin(), findings.end(), [](const Finding& f) { return f.unusable; })) return kFailure;
    return findings.empty() ? kSuccess : kFindings;
}

CheckReport CheckModelFile(const std::string& path, vdt::MessageHandler& messages)
{
    CheckReport report{path, {}};
    FileCheck(report, messages).run();
    return report;
}

} // namespace verdanth
