// Documents.
#pragma once

#include "c4d_basematerial.h"
#include "c4d_baseobject.h"
#include "c4d_basetag.h"

class BaseDraw;
class BaseSceneHook;
class BaseThread;
class BaseVideoPost;
class NetRenderService;

enum UNDOTYPE {
    UNDOTYPE_0 = 0,
    UNDOTYPE_CHANGE = 40, // before the change
    UNDOTYPE_CHANGE_NOCHILDREN = 41,
    UNDOTYPE_CHANGE_SMALL = 42,
    UNDOTYPE_CHANGE_SELECTION = 43,
    UNDOTYPE_NEW = 44,    // after the insertion
    UNDOTYPE_DELETE = 45, // before the removal
    UNDOTYPE_ACTIVATE = 46,
    UNDOTYPE_DEACTIVATE = 47,
    UNDOTYPE_BITS = 48,
    UNDOTYPE_HIERARCHY_PSR = 49
} ENUM_END_LIST(UNDOTYPE);

enum GETACTIVEOBJECTFLAGS {
    GETACTIVEOBJECTFLAGS_0 = 0,
    GETACTIVEOBJECTFLAGS_CHILDREN = (1 << 0),
    GETACTIVEOBJECTFLAGS_SELECTIONORDER = (1 << 1)
};
ENUM_END_FLAGS(GETACTIVEOBJECTFLAGS)

enum SCENEFILTER {
    SCENEFILTER_0 = 0,
    SCENEFILTER_OBJECTS = (1 << 0),
    SCENEFILTER_MATERIALS = (1 << 1),
    SCENEFILTER_DIALOGSALLOWED = (1 << 3),
    SCENEFILTER_PROGRESSALLOWED = (1 << 4),
    SCENEFILTER_MERGESCENE = (1 << 5),
    SCENEFILTER_NONEWMARKERS = (1 << 6),
    SCENEFILTER_SAVECACHES = (1 << 7),
    SCENEFILTER_NOUNDO = (1 << 8),
    SCENEFILTER_IDENTIFY_ONLY = (1 << 11)
};
ENUM_END_FLAGS(SCENEFILTER)

enum EVENT { EVENT_0 = 0, EVENT_FORCEREDRAW = (1 << 0), EVENT_ANIMATE = (1 << 1) };
ENUM_END_FLAGS(EVENT)

#define SELECTION_NEW 0
#define SELECTION_ADD 1
#define SELECTION_SUB 2

#define DOCUMENTSETTINGS_GENERAL 0
#define DOCUMENTSETTINGS_MODELING 1
#define DOCUMENTSETTINGS_DOCUMENT 2
#define DOCUMENTSETTINGS_ANIMATIONSYSTEM 7
#define DOCUMENTSETTINGS_TOOLS 8

class RenderData : public BaseList2D {
public:
    static RenderData* Alloc();
    static void Free(RenderData*& data);

    RenderData* GetNext();
    RenderData* GetPred();
    BaseVideoPost* GetFirstVideoPost();
    void InsertVideoPost(BaseVideoPost* post, BaseVideoPost* pred = nullptr);

protected:
    using BaseList2D::BaseList2D;
};

class BaseVideoPost : public BaseList2D {
public:
    static BaseVideoPost* Alloc(Int32 type);
    static void Free(BaseVideoPost*& post);

    BaseVideoPost* GetNext();
    BaseVideoPost* GetPred();

protected:
    using BaseList2D::BaseList2D;
};

class BaseDocument : public BaseList2D {
public:
    static BaseDocument* Alloc(); // in no list
    static void Free(BaseDocument*& document);

    BaseDocument* GetNext();

    Filename GetDocumentName();
    void SetDocumentName(const Filename& name);
    Filename GetDocumentPath(); // the folder; empty if it was never saved
    void SetDocumentPath(const Filename& path);

    BaseObject* GetFirstObject();
    BaseMaterial* GetFirstMaterial();
    GeListHead* GetLayerObjectRoot();
    RenderData* GetFirstRenderData();
    RenderData* GetActiveRenderData();
    void SetActiveRenderData(RenderData* data);
    void InsertRenderData(RenderData* data, RenderData* parent, RenderData* pred);
    BaseSceneHook* FindSceneHook(Int32 id) const;

    /// First in the list without `pred`. The document owns it from here on.
    void InsertObject(BaseObject* object, BaseObject* parent, BaseObject* pred, Bool checknames = false);
    void InsertMaterial(BaseMaterial* material, BaseMaterial* pred = nullptr, Bool checknames = false);
    BaseObject* SearchObject(const String& name);
    BaseMaterial* SearchMaterial(const String& name);

    BaseObject* GetActiveObject(); // null if there is none or several
    BaseMaterial* GetActiveMaterial();
    void GetActiveObjects(AtomArray& selection, GETACTIVEOBJECTFLAGS flags) const;
    void GetActiveMaterials(AtomArray& selection) const;
    void SetActiveObject(BaseObject* object, Int32 mode = SELECTION_NEW);
    void SetActiveMaterial(BaseMaterial* material, Int32 mode = SELECTION_NEW);

    Bool StartUndo();
    Bool EndUndo();
    Bool AddUndo(UNDOTYPE type, void* data);
    Bool DoUndo(Bool multiple = false);
    Bool DoRedo();
    void FlushUndoBuffer();

    /// The document's own container; null for kinds that this host does not keep.
    BaseContainer* GetSettingsInstance(Int32 type);

    BaseDraw* GetActiveBaseDraw();
    BaseDraw* GetBaseDraw(Int32 num);
    Int32 GetBaseDrawCount();

    BaseTime GetTime();
    void SetTime(const BaseTime& time);

    Bool GetChanged();
    void SetChanged();

    Bool ExecutePasses(BaseThread* bt, Bool animation, Bool expressions, Bool caches, BUILDFLAGS flags);

protected:
    using BaseList2D::BaseList2D;
};

BaseDocument* GetActiveDocument(); // may be null
void InsertBaseDocument(BaseDocument* document);
void SetActiveDocument(BaseDocument* document);
void KillDocument(BaseDocument*& document);
/// Null on failure; the caller's.
BaseDocument* LoadDocument(const Filename& name, SCENEFILTER loadflags, BaseThread* thread);
Bool SaveDocument(BaseDocument* document, const Filename& name, Int32 saveflags, Int32 format);
Bool MergeDocument(BaseDocument* document, const Filename& name, SCENEFILTER loadflags, BaseThread* thread);
void InsertCreateObject(BaseDocument* document, BaseObject* object, BaseObject* activeobj = nullptr);
void EventAdd(EVENT eventflag = EVENT_0);

/// Looks for a file in the document's folder, its folder "tex" and the texture paths of the preferences.
Bool GenerateTexturePath(const Filename& docpath, const Filename& srcname, const Filename& suggestedfolder,
                         Filename* dstname, NetRenderService* service = nullptr, BaseThread* bt = nullptr);
