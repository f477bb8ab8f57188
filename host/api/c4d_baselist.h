// Nodes: everything that stands in lists and trees of a document, and the messages that nodes get.
#pragma once

#include "c4d_basecontainer.h"
#include "lib_description.h"

class AtomArray;
class BaseContainer;
class BaseDocument;
class BaseShader;
class GeListHead;
class GeModalDialog;
class HyperFile;
class LayerObject;
class NodeData;
class Render;
class RootTextureString;
class UnitScaleData;
struct LayerData;

namespace host {
struct NodeCore; // the record behind a node
}

#define BIT_ACTIVE (1 << 1)
#define BIT_IGNOREDRAW (1 << 2)
#define BIT_VPDISABLED (1 << 2)
#define BIT_OFOLD (1 << 6)
#define BIT_CONTROLOBJECT (1 << 9)
#define BIT_IGNOREDRAWBOX (1 << 12)
#define BIT_EDITOBJECT (1 << 13)
#define BIT_HIGHLIGHT (1 << 20)
#define BIT_ACTIVERENDERDATA (1 << 28)

enum NBIT {
    NBIT_0 = 0,
    NBIT_OHIDE = 63,
    NBIT_PROTECTION = 75,
    NBIT_NOANIM = 76,
    NBIT_NOSELECT = 77,
    NBIT_EHIDE = 78,
    NBIT_REF = 79 // came with an external reference
} ENUM_END_LIST(NBIT);

enum NBITCONTROL { NBITCONTROL_SET = 1, NBITCONTROL_CLEAR = 2, NBITCONTROL_TOGGLE = 3 } ENUM_END_LIST(NBITCONTROL);

enum COPYFLAGS : Int32 {
    COPYFLAGS_0 = 0,
    COPYFLAGS_NO_HIERARCHY = (1 << 2),
    COPYFLAGS_NO_ANIMATION = (1 << 3),
    COPYFLAGS_NO_BITS = (1 << 4),
    COPYFLAGS_NO_MATERIALPREVIEW = (1 << 5),
    COPYFLAGS_NO_BRANCHES = (1 << 7),
    COPYFLAGS_DOCUMENT = (1 << 10),
    COPYFLAGS_NO_NGONS = (1 << 11),
    COPYFLAGS_CACHE_BUILD = (1 << 13),
    COPYFLAGS_RECURSIONCHECK = (1 << 14)
};
ENUM_END_FLAGS(COPYFLAGS)

enum DIRTYFLAGS {
    DIRTYFLAGS_0 = 0,
    DIRTYFLAGS_MATRIX = (1 << 1),
    DIRTYFLAGS_DATA = (1 << 2),
    DIRTYFLAGS_SELECT = (1 << 3),
    DIRTYFLAGS_CACHE = (1 << 4),
    DIRTYFLAGS_CHILDREN = (1 << 5),
    DIRTYFLAGS_DESCRIPTION = (1 << 6),
    DIRTYFLAGS_SELECTION_OBJECTS = (1 << 20),
    DIRTYFLAGS_SELECTION_TAGS = (1 << 21),
    DIRTYFLAGS_SELECTION_MATERIALS = (1 << 22),
    DIRTYFLAGS_ALL = -1
};
ENUM_END_FLAGS(DIRTYFLAGS)

#define MSG_POINTS_CHANGED 1
#define MSG_POLYGONS_CHANGED 2
#define MSG_UPDATE 5
#define MSG_SMALLUPDATE 6
#define MSG_CHANGE 7
#define MSG_BASECONTAINER 9
#define MSG_SEGMENTS_CHANGED 10
#define MSG_MULTI_DOCUMENTCLONED 11
#define MSG_MULTI_DOCUMENTIMPORTED 13
#define MSG_FILTER 14
#define MSG_TRANSFERGOALS 15
#define MSG_DESCRIPTION_INITUNDO 16
#define MSG_DESCRIPTION_CHECKUPDATE 17
#define MSG_DESCRIPTION_COMMAND 18
#define MSG_DESCRIPTION_POSTSETPARAMETER 19
#define MSG_DESCRIPTION_VALIDATE 20
#define MSG_EDIT 21
#define MSG_MENUPREPARE 22
#define MSG_RETRIEVEPRIVATEDATA 23
#define MSG_DESCRIPTION_CHECKDRAGANDDROP 26
#define MSG_DESCRIPTION_USERINTERACTION_END 31
#define MSG_MOVE_FINISHED 32
#define MSG_GETALLASSETS 112004
#define MSG_RENAMETEXTURES 112010
#define MSG_MULTI_RENDERNOTIFICATION 1001071
#define MSG_DOCUMENTINFO 1001078
#define MSG_MULTI_CLEARSUGGESTEDFOLDER 200000040
#define MSG_MULTI_SETNEWMARKERS 200000161
#define MSG_DESCRIPTION_IMPEXPORT_INIT 200000288

#define MSG_DOCUMENTINFO_TYPE_SETACTIVE 1000
#define MSG_DOCUMENTINFO_TYPE_LOAD 1001
#define MSG_DOCUMENTINFO_TYPE_MERGE 1002
#define MSG_DOCUMENTINFO_TYPE_BEFOREMERGE 1003
#define MSG_DOCUMENTINFO_TYPE_SAVE_BEFORE 1004
#define MSG_DOCUMENTINFO_TYPE_SAVE_AFTER 1005
#define MSG_DOCUMENTINFO_TYPE_SAVEPROJECT_BEFORE 1006
#define MSG_DOCUMENTINFO_TYPE_SAVEPROJECT_AFTER 1007
#define MSG_DOCUMENTINFO_TYPE_REMOVE 1008
#define MSG_DOCUMENTINFO_TYPE_TOOL_CHANGED 1009
#define MSG_DOCUMENTINFO_TYPE_OBJECT_INSERT 1010
#define MSG_DOCUMENTINFO_TYPE_TAG_INSERT 1011
#define MSG_DOCUMENTINFO_TYPE_MATERIAL_INSERT 1012
#define MSG_DOCUMENTINFO_TYPE_UNDO 1013
#define MSG_DOCUMENTINFO_TYPE_REDO 1014
#define MSG_DOCUMENTINFO_TYPE_PASTE 1015
#define MSG_DOCUMENTINFO_TYPE_COPY 1016
#define MSG_DOCUMENTINFO_TYPE_MAKEPROJECT 1020

#define Tbaselist2d 110050
#define Tbasedocument 110059
#define ID_LISTHEAD 110063
#define Tgelistnode 110069
#define Rbase 110304
#define Mbase 5702
#define Xbase 5707
#define VPbase 5709
#define Fbase 1001024
#define Olayer 100004801

#define ID_BASELIST_NAME 900

class C4DAtom {
public:
    Int32 GetType() const;
    /// True for the own type and for all base types.
    Bool IsInstanceOf(Int32 id) const;

    /// Synchronous, on the caller's thread.
    Bool Message(Int32 type, void* data = nullptr);

    C4DAtom* GetClone(COPYFLAGS flags, AliasTrans* trn); // the caller's; null on failure
    Bool CopyTo(C4DAtom* dst, COPYFLAGS flags, AliasTrans* trn);

    Bool GetDescription(Description* description, DESCFLAGS_DESC flags);
    /// False if there is no such parameter. `t_data` is a copy.
    Bool GetParameter(const DescID& id, GeData& t_data, DESCFLAGS_GET flags);
    Bool SetParameter(const DescID& id, const GeData& t_data, DESCFLAGS_SET flags);
    Bool GetEnabling(const DescID& id, const GeData& t_data, DESCFLAGS_ENABLE flags, const BaseContainer* itemdesc);

    /// A count that only grows.
    UInt32 GetDirty(DIRTYFLAGS flags) const;
    void SetDirty(DIRTYFLAGS flags);

protected:
    friend struct host::NodeCore;
    explicit C4DAtom(host::NodeCore& record) : core(&record) {}
    ~C4DAtom() = default;
    C4DAtom(const C4DAtom&) = delete;
    C4DAtom& operator=(const C4DAtom&) = delete;

    host::NodeCore* core;
};

class C4DAtomGoal : public C4DAtom {
protected:
    using C4DAtom::C4DAtom;
};

class GeListNode : public C4DAtomGoal {
public:
    GeListNode* GetNext();
    GeListNode* GetPred();
    GeListNode* GetDown();
    GeListNode* GetUp();
    GeListNode* GetDownLast();
    void InsertBefore(GeListNode* node);
    void InsertAfter(GeListNode* node);
    void InsertUnder(GeListNode* node);
    void InsertUnderLast(GeListNode* node);
    /// Takes the node out of its list; it is the caller's then.
    void Remove();

    /// The plug-in's instance behind the node; null for the host's own nodes.
    NodeData* GetNodeData(Int32 index = 0);
    const NodeData* GetNodeData(Int32 index = 0) const;
    /// Null if the node is in none.
    BaseDocument* GetDocument();
    Bool GetNBit(NBIT bit) const;
    Bool ChangeNBit(NBIT bit, NBITCONTROL bitmode);
    Int32 GetInfo(); // flags of the registration

protected:
    using C4DAtomGoal::C4DAtomGoal;
};

class GeListHead : public GeListNode {
public:
    GeListNode* GetFirst();
    void InsertLast(GeListNode* node);

protected:
    using GeListNode::GeListNode;
};

class BaseList2D : public GeListNode {
public:
    static BaseList2D* Alloc(Int32 type);
    static void Free(BaseList2D*& node);

    BaseList2D* GetNext();

    String GetName() const;
    void SetName(const String& name);

    BaseContainer GetData();
    BaseContainer* GetDataInstance();
    const BaseContainer* GetDataInstance() const;
    void SetData(const BaseContainer& bc, Bool add = true);

    void SetBit(Int32 mask);
    Bool GetBit(Int32 mask) const;

    BaseShader* GetFirstShader() const;
    /// The node owns the shader from here on. First in the list without `pred`.
    void InsertShader(BaseShader* shader, BaseShader* pred = nullptr);

    LayerObject* GetLayerObject(BaseDocument* doc);
    Bool SetLayerObject(LayerObject* layer);
    /// Null without a layer.
    const LayerData* GetLayerData(BaseDocument* doc, Bool rawdata = false);
    Bool SetLayerData(BaseDocument* doc, const LayerData& data);

protected:
    using GeListNode::GeListNode;
};

/// A weak reference to a node: null once the node is gone.
class BaseLink {
public:
    static BaseLink* Alloc();
    static void Free(BaseLink*& link);

    void SetLink(C4DAtomGoal* target);
    BaseList2D* GetLink(const BaseDocument* doc, Int32 instanceof = 0) const;
    BaseList2D* ForceGetLink() const;
    Bool CopyTo(BaseLink* destination, COPYFLAGS flags, AliasTrans* trans) const;
    BaseLink* GetClone(COPYFLAGS flags, AliasTrans* trans) const;

private:
    friend struct host::NodeCore;
    friend struct host::GeValue;
    BaseLink() = default;
    BaseLink(const BaseLink& other);
    BaseLink& operator=(const BaseLink& other);
    ~BaseLink();

    UInt64 marker = 0;             // of the target; 0 for none
    AliasTrans* waiting = nullptr; // redirects this link, a copy, when the copying is over
};

/// Collects the copies that are made of nodes, so that links among them follow.
class AliasTrans {
public:
    static AliasTrans* Alloc();
    static void Free(AliasTrans*& trans);
    Bool Init(BaseDocument* doc);
    void Translate(Bool connect_oldgoals);

private:
    friend struct host::NodeCore;
    AliasTrans();
    ~AliasTrans();

    struct Pairs;
    std::unique_ptr<Pairs> pairs;
};

/// Pointers to nodes. Owns nothing.
class AtomArray {
public:
    static AtomArray* Alloc();
    static void Free(AtomArray*& array);

    Int32 GetCount() const { return static_cast<Int32>(atoms.size()); }
    C4DAtom* GetIndex(Int32 index) const; // null past the end
    Bool Append(C4DAtom* atom);
    Bool Append(AtomArray* source);
    Bool Remove(C4DAtom* atom);
    Int32 Find(C4DAtom* atom);
    void Flush() { atoms.clear(); }
    Bool CopyTo(AtomArray* destination) const;

private:
    AtomArray() = default;
    ~AtomArray() = default;

    std::vector<C4DAtom*> atoms;
};

struct LayerData {
    Bool solo = false;
    Bool view = true;
    Bool render = true;
    Bool manager = true;
    Bool locked = false;
    Bool generators = true;
    Bool deformers = true;
    Bool expressions = true;
    Bool animation = true;
    Vector color;
    Bool xref = true;
};

class LayerObject : public BaseList2D {
public:
    static LayerObject* Alloc();
    static void Free(LayerObject*& layer);

    LayerObject* GetNext();
    LayerObject* GetPred();
    LayerObject* GetUp();
    LayerObject* GetDown();
    LayerObject* GetDownLast();

protected:
    using BaseList2D::BaseList2D;
};

struct DocumentImported {
    BaseDocument* doc = nullptr;
    Int32 c4dversion = 0;
    Int32 fileformat = 0;
    Bool gui_allowed = false; // else nobody may ask the user anything
};

struct DocumentInfoData {
    Int32 type = 0; // MSG_DOCUMENTINFO_TYPE_...
    Int32 fileformat = 0;
    BaseDocument* doc = nullptr;
    Filename filename;
    BaseList2D* bl = nullptr;
    Bool gui_allowed = false;
    void* data = nullptr;
};

struct DescriptionPostSetValue {
    const DescID* descid = nullptr;
};

struct DescriptionCheckUpdate {
    BaseDocument* doc = nullptr;
    Int32 drawflags = 0;
    const DescID* descid = nullptr;
};

struct DescriptionCommand {
    DescID id;
    BaseContainer msg;
};

struct DescriptionInitUndo {
    BaseDocument* doc = nullptr;
    const DescID* descid = nullptr;
};

struct RenderNotificationData {
    BaseDocument* doc = nullptr;
    Bool start = false;
    Bool animated = false;
    Bool external = false;
    Render* render = nullptr;
};

enum ASSETDATA_FLAG {
    ASSETDATA_FLAG_0 = 0,
    ASSETDATA_FLAG_CURRENTFRAMEONLY = (1 << 0),
    ASSETDATA_FLAG_TEXTURESONLY = (1 << 1),
    ASSETDATA_FLAG_NET = (1 << 2)
};
ENUM_END_FLAGS(ASSETDATA_FLAG)

/// Asks nodes for the files that they need.
struct AssetData {
    BaseDocument* doc = nullptr;
    RootTextureString* rs = nullptr;
    ASSETDATA_FLAG flags = ASSETDATA_FLAG_0;

    /// Reports a file, which need not exist. `bl` may be null.
    Bool Add(const Filename& fn, BaseList2D* bl, Bool netRequestOnDemand = false);
};

/// What a length in `src` units has to be multiplied with to be in `dst` units; a null unit is 1 cm.
Float CalculateTranslationScale(const UnitScaleData* src, const UnitScaleData* dst);
