#include "selection/models_being_read.h"

#include <algorithm>

namespace {

struct KeptModel {
    Filename file; // as it stands in the scene
    String plantName;
    vdt::ModelHandle model;
};

std::vector<KeptModel>& keptModels()
{
    static std::vector<KeptModel> models;
    return models;
}

auto isKeptFor(const VerdanthSelectionData& selection)
{
    return [&selection](const KeptModel& kept) {
        return kept.file == selection.file && kept.plantName == selection.plantName;
    };
}

} // namespace

Bool ModelsBeingRead::Update(VerdanthSelectionData& selection)
{
    vdt::ModelHandle shown;
    const Bool updated = selection.Update(nullptr, &shown);
    std::vector<KeptModel>& kept = keptModels();
    if (shown.model() && std::ranges::none_of(kept, isKeptFor(selection)))
        kept.push_back({selection.file, selection.plantName, shown});
    return updated;
}

void ModelsBeingRead::Release(const VerdanthSelectionData& selection)
{
    std::erase_if(keptModels(), isKeptFor(selection));
}

void ModelsBeingRead::ReleaseAll()
{
    keptModels().clear();
}

size_t ModelsBeingRead::Count()
{
    return keptModels().size();
}
