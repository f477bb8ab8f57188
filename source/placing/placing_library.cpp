#include "placing/placing_library.h"

#include "placing/placing.h"
#include "support/plugin_ids.h"

static_assert(kPlantPlacingLibraryId == kPlantBrowserId);

namespace {

// A step left open would swallow what the user does next.
class UndoStep {
public:
    explicit UndoStep(BaseDocument& changed) : document(changed) { document.StartUndo(); }
    UndoStep(const UndoStep&) = delete;
    UndoStep& operator=(const UndoStep&) = delete;
    ~UndoStep() { document.EndUndo(); }

private:
    BaseDocument& document;
};

Bool applyModelToSelection(BaseDocument* document, const Filename& file, Int32 kind, Int32 option, LayerObject* layer)
{
    if (!document) return false;
    StopAllThreads();
    const UndoStep step(*document);
    if (!ApplyModelToSelection(document, file, kind, option, layer)) return false;
    EventAdd();
    return true;
}

} // namespace

PlantPlacingLibrary g_PlantPlacingLibrary = {{}, applyModelToSelection};
