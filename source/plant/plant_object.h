// The plant in a scene: a generator object that stands for one variant of one model file.
//
// What it shows stands in its parameters (plant_parameters.h), which the host keeps. Everything here is made anew after
// a scene was loaded, and a scene whose model is missing opens all the same. There are no locks: the host evaluates,
// draws and sends messages in turns, and who works on a model meanwhile holds a handle of his own.
#pragma once

#include "c4d.h"
#include "plant/c4d_draw_helper.h"
#include "plant/plant_colours.h"
#include "plant/plant_parameters.h"

/// Everything but the building of geometry.
class BasePlantObject : public ObjectData {
public:
    Bool Init(GeListNode* node) override;
    Bool Read(GeListNode* node, HyperFile* file, Int32 level) override;
    Bool Message(GeListNode* node, Int32 type, void* data) override;
    /// The copy shows the same model, but draws nothing before it was built.
    Bool CopyTo(NodeData* destination, GeListNode* source, GeListNode* copy, COPYFLAGS flags,
                AliasTrans* trans) override;
    /// Always false: the description that is loaded and filled here counts by its flag.
    Bool GetDDescription(GeListNode* node, Description* description, DESCFLAGS_DESC& flags) override;
    Bool GetDEnabling(GeListNode* node, const DescID& id, const GeData& value, DESCFLAGS_ENABLE flags,
                      const BaseContainer* item) override;
    /// In model units, with a half depth below 0.
    void GetDimension(BaseObject* object, Vector* center, Vector* halfSize) override;
    BaseObject* GetVirtualObjects(BaseObject* object, HierarchyHelp* help) override = 0;

    /// Chooses the model's default variant and that variant's default qualifier, once the model has been read. False
    /// if there is none, or if a parameter cannot be set.
    Bool RefreshFromSelection(BaseObject& object);

    Int32 builtMode = NOTOK;                  // display mode of the last build that succeeded
    String statistics;                        // the text shown last
    vdt::ModelHandle model;                   // what is shown
    MaterialChanges materialDirty;            // of the materials that coloured the last point cloud
    C4dDrawHelper drawHelper;                 // the last point cloud
    BUILDFLAGS lastBuildFlags = BUILDFLAGS_0; // of the last look at the cache
    Float lastLod = 0;

private:
    void documentInformation(BaseObject& object, const DocumentInfoData& information);
    void findMissingFile(BaseObject& object, BaseDocument* document);
    void parameterSet(BaseObject& object, Int32 id);
    void reportAssets(BaseObject& object, AssetData& assets);
    void reload(BaseObject& object, const VerdanthSelectionData& asRead, BaseDocument* document);
    void stripFolder(BaseObject& object);
};

class PlantObjectPlayer final : public BasePlantObject {
public:
    static NodeData* Alloc();

    BaseObject* GetVirtualObjects(BaseObject* object, HierarchyHelp* help) override;
};

/// The plant behind an object; null for null and for any other object.
BasePlantObject* PlantOf(BaseObject* object);
