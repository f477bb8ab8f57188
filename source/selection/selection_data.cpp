#include "selection/selection_data.h"

#include "support/library_location.h"
#include "support/model_cache.h"
#include "support/model_path.h"
#include "support/text.h"

#include <algorithm>
#include <string>

namespace {

// The entry at `index` if it has the name, else the first that has.
template <class Choice> Int32 findChoice(const std::vector<Choice>& choices, const String& name, Int32 index)
{
    const auto count = static_cast<Int32>(choices.size());
    if (index >= 0 && index < count && choices[static_cast<size_t>(index)].name == name) return index;
    const auto found = std::ranges::find_if(choices, [&name](const Choice& choice) { return choice.name == name; });
    return found == choices.end() ? NOTOK : static_cast<Int32>(found - choices.begin());
}

template <class Choice> void choose(const std::vector<Choice>& choices, Int32 wanted, String& name, Int32& index)
{
    const bool isThere = wanted >= 0 && wanted < static_cast<Int32>(choices.size());
    name = isThere ? choices[static_cast<size_t>(wanted)].name : String();
    index = isThere ? wanted : NOTOK;
}

// Entries may lack names, so without an index no name means that nobody has chosen yet.
Bool isChosen(const String& name, Int32 index)
{
    return name.Content() || index != NOTOK;
}

Int32 toIndex(uint64_t index)
{
    return index > static_cast<uint64_t>(LIMIT<Int32>::MAX) ? NOTOK : static_cast<Int32>(index);
}

Bool isNetworkPath(const Filename& path)
{
    return ToUtf8(path).starts_with("\\\\");
}

} // namespace

void VerdanthSelectionData::clearLists()
{
    plants.clear();
    qualifiers.clear();
    speciesName = String();
    label = String();
}

void VerdanthSelectionData::Clear()
{
    clearLists();
    plantName = String();
    qualifierName = String();
    plantIndex = NOTOK;
    qualifierIndex = NOTOK;
}

Bool VerdanthSelectionData::Update(BaseDocument* document, vdt::ModelHandle* shown)
{
    if (!file.Content()) {
        Clear();
        return false;
    }
    clearLists();
    const Filename path = ResolvePath(document, true);
    if (!GeFExist(path) || !IsModelFile(path)) return false;

    vdt::NullMessageHandler silent;
    const std::string key = ModelPath(path);
    const vdt::ModelHandle any = ModelCache().acquire(key, silent, vdt::kNone);
    const vdt::Model* model = any.model();
    if (!model) return true;

    speciesName = ToHostString(model->name);
    label = GetLocalizedText(model->labels);
    for (const vdt::ModelVariant& variant : model->variants) {
        const Filename geometry = variant.extref.empty() ? path : Filename(ToHostString(variant.extref));
        const Int32 index = static_cast<Int32>(plants.size());
        plants.push_back({ToHostString(variant.name), VariantLabel(variant, index), geometry});
    }
    plantIndex = isChosen(plantName, plantIndex) ? GetPlantIndex() : NOTOK;
    if (plantIndex == NOTOK) SetPlantIndex(toIndex(model->defaultVariant));

    const vdt::ModelHandle chosen = ModelCache().acquire(key, silent, ToVariantIndex(plantIndex));
    if (shown) *shown = chosen;
    LoadMissingQualifiers(chosen);
    const vdt::ModelVariant* variant = chosen.variantData(silent, false);
    if (!variant) return true;

    for (const vdt::Qualifier& qualifier : variant->qualifiers)
        qualifiers.push_back({ToHostString(qualifier.name), QualifierLabel(qualifier)});
    qualifierIndex = isChosen(qualifierName, qualifierIndex) ? GetQualifierIndex() : NOTOK;
    const bool hasDefault = variant->defaultQualifier < qualifiers.size();
    if (qualifierIndex == NOTOK && hasDefault) SetQualifierIndex(toIndex(variant->defaultQualifier));
    return true;
}

Filename VerdanthSelectionData::ResolvePath(BaseDocument* document, Bool search) const
{
    if (!file.Content() || (isNetworkPath(file) && GeFExist(file))) return file;

    // A document that was never saved has no folder to look in.
    const Filename folder = document ? document->GetDocumentPath() : Filename();
    const bool isBesideDocument = folder.Content() && IsRelativePath(file);
    const Filename path = isBesideDocument ? folder + file : file;
    if (!search || GeFExist(path)) return path;

    Filename found;
    if (FindInLibrary(path, found)) return found;
    if (!folder.Content()) return path;
    found = folder + path.GetFile();
    return GeFExist(found) ? found : path;
}

Int32 VerdanthSelectionData::GetPlantIndex() const
{
    return findChoice(plants, plantName, plantIndex);
}

Int32 VerdanthSelectionData::GetQualifierIndex() const
{
    return findChoice(qualifiers, qualifierName, qualifierIndex);
}

void VerdanthSelectionData::SetPlantIndex(Int32 index)
{
    choose(plants, index, plantName, plantIndex);
}

void VerdanthSelectionData::SetQualifierIndex(Int32 index)
{
    choose(qualifiers, index, qualifierName, qualifierIndex);
}

Bool IsRelativePath(const Filename& path)
{
    return !vdt::IsAbsolutePath(ToUtf8(path));
}

Bool FindInLibrary(const Filename& path, Filename& found)
{
    const std::string text = ModelPath(path);
    const std::string file = text.substr(text.rfind('\\') + 1); // from the start if there is no backslash
    const std::string species = file.substr(0, file.find('.'));
    const Filename library = GetPlantLibraryPath();
    if (species.empty() || !library.Content()) return false;

    const Filename candidate = library + Filename(ToHostString(species)) + Filename(ToHostString(file));
    if (!GeFExist(candidate)) return false;
    found = candidate;
    return true;
}

String VariantLabel(const vdt::ModelVariant& variant, Int32 index)
{
    const String label = GetLocalizedText(variant.labels);
    return label.Content() ? label : String("Model ") + String::IntToString(index);
}

String QualifierLabel(const vdt::Qualifier& qualifier)
{
    const String label = GetLocalizedText(qualifier.labels);
    return label.Content() ? label : ToHostString(qualifier.name);
}

void LoadMissingQualifiers(const vdt::ModelHandle& model)
{
    vdt::NullMessageHandler silent;
    const vdt::ModelVariant* variant = model.variantData(silent, false);
    if (variant && !variant->qualifiersKnown()) model.variantData(silent, true);
}
