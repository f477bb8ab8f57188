// Objects of the scene tree, with their tags, caches and geometry.
#pragma once

#include "c4d_baselist.h"

class BaseDraw;
class BaseMaterial;
class BaseSelect;
class BaseTag;
class BaseThread;
class HierarchyHelp;
class NgonBase;
class VariableTag;

#define Opolygon 5100
#define Ospline 5101
#define Ocamera 5103
#define Oinstance 5126
#define Oline 5137
#define Onull 5140
#define Oplugin 5154
#define Obase 5155
#define Opoint 5156
#define Ocube 5159
#define Osphere 5160
#define Oxref 1025766

#define OBJECT_MODIFIER (1 << 0)
#define OBJECT_HIERARCHYMODIFIER (1 << 1)
#define OBJECT_GENERATOR (1 << 2)
#define OBJECT_INPUT (1 << 3)
#define OBJECT_PARTICLEMODIFIER (1 << 5)
#define OBJECT_NOCACHESUB (1 << 6)
#define OBJECT_ISSPLINE (1 << 7)
#define OBJECT_USECACHECOLOR (1 << 10)
#define OBJECT_POINTOBJECT (1 << 11)
#define OBJECT_POLYGONOBJECT (1 << 12)

#define MODE_ON 0
#define MODE_OFF 1
#define MODE_UNDEF 2 // as the parent

struct ObjectColorProperties {
    Int32 usecolor = 0; // ID_BASEOBJECT_USECOLOR_...
    Vector color;
    Bool xray = false;
};

enum BUILDFLAGS {
    BUILDFLAGS_0 = 0,
    BUILDFLAGS_INTERNALRENDERER = (1 << 1),
    BUILDFLAGS_EXTERNALRENDERER = (1 << 2),
    BUILDFLAGS_ISOPARM = (1 << 3)
};
ENUM_END_FLAGS(BUILDFLAGS)

class BaseObject : public BaseList2D {
public:
    static BaseObject* Alloc(Int32 type); // null for an unknown type
    /// With its children and tags; it must stand in no list.
    static void Free(BaseObject*& object);

    BaseObject* GetNext();
    BaseObject* GetPred();
    BaseObject* GetUp();
    BaseObject* GetDown();
    BaseObject* GetDownLast();

    Vector GetAbsPos() const;
    Vector GetAbsScale() const;
    Vector GetAbsRot() const; // HPB, radians
    void SetAbsPos(const Vector& position);
    void SetAbsScale(const Vector& scale);
    void SetAbsRot(const Vector& hpb);

    Matrix GetMl() const;
    void SetMl(const Matrix& m);
    /// Through parents and, from the root of a cache, through the object whose cache it is.
    Matrix GetMg() const;
    void SetMg(const Matrix& m);

    Vector GetMp();  // centre of the object's own box
    Vector GetRad(); // its half size

    Int32 GetEditorMode() const; // MODE_...
    void SetEditorMode(Int32 mode);
    Int32 GetRenderMode() const;
    void SetRenderMode(Int32 mode);
    Bool GetDeformMode() const; // the generator's switch
    void SetDeformMode(Bool on);

    BaseTag* GetFirstTag();
    BaseTag* GetLastTag();
    BaseTag* GetTag(Int32 type, Int32 nr = 0);
    /// The object owns the tag from here on. First in the list without `pred`.
    void InsertTag(BaseTag* tag, BaseTag* pred = nullptr);
    BaseTag* MakeTag(Int32 type, BaseTag* pred = nullptr);
    VariableTag* MakeVariableTag(Int32 type, Int32 count, BaseTag* pred = nullptr);
    void KillTag(Int32 type, Int32 nr = 0);
    /// Copies tags that are shown in the manager, variable tags, tags that act on children: true for yes, false for
    /// no, NOTOK for both.
    Bool CopyTagsTo(BaseObject* dest, Int32 visible, Int32 variable, Int32 hierarchical, AliasTrans* trans);

    BaseObject* GetCache(HierarchyHelp* hh = nullptr);
    BaseObject* GetDeformCache();
    BaseObject* GetCacheParent();
    /// True if the cache must be built anew for this evaluation. Notes what was asked for.
    Bool CheckCache(HierarchyHelp* hh);
    /// True if a count of the mask has risen since the last Touch().
    Bool IsDirty(DIRTYFLAGS flags);
    void Touch();

    void GetColorProperties(ObjectColorProperties* properties);
    void SetColorProperties(ObjectColorProperties* properties);

protected:
    using BaseList2D::BaseList2D;
};

class PointObject : public BaseObject {
public:
    Int32 GetPointCount() const;
    const Vector* GetPointR() const; // null without points
    Vector* GetPointW();
    BaseSelect* GetPointS();
    Bool ResizeObject(Int32 pcnt);

protected:
    using BaseObject::BaseObject;
};

/// A triangle has its third corner twice.
struct CPolygon {
    Int32 a = 0, b = 0, c = 0, d = 0;

    CPolygon() = default;
    CPolygon(Int32 t_a, Int32 t_b, Int32 t_c) : a(t_a), b(t_b), c(t_c), d(t_c) {}
    CPolygon(Int32 t_a, Int32 t_b, Int32 t_c, Int32 t_d) : a(t_a), b(t_b), c(t_c), d(t_d) {}

    Int32& operator[](Int32 corner) { return corner == 0 ? a : corner == 1 ? b : corner == 2 ? c : d; }
    const Int32& operator[](Int32 corner) const { return corner == 0 ? a : corner == 1 ? b : corner == 2 ? c : d; }
    Bool IsTriangle() const { return c == d; }
    Bool operator==(const CPolygon& other) const
    {
        return a == other.a && b == other.b && c == other.c && d == other.d;
    }
};

class PolygonObject : public PointObject {
public:
    static PolygonObject* Alloc(Int32 pcnt, Int32 vcnt);
    static void Free(PolygonObject*& object);

    Int32 GetPolygonCount() const;
    const CPolygon* GetPolygonR() const;
    CPolygon* GetPolygonW();
    BaseSelect* GetPolygonS();
    /// Keeps what is there, and resizes the variable tags too. Pointers and handles have to be fetched again.
    Bool ResizeObject(Int32 pcnt, Int32 vcnt);
    NgonBase* GetNgonBase();

protected:
    using PointObject::PointObject;
};

/// The circumstances of one evaluation of a generator. The host's.
class HierarchyHelp {
public:
    BaseDocument* GetDocument() const { return document; }
    BaseThread* GetThread() const { return thread; } // may be null
    Float GetLOD() const { return levelOfDetail; }
    BUILDFLAGS GetBuildFlags() const { return buildFlags; }
    Matrix* GetMg() { return &matrix; }

private:
    friend struct host::NodeCore;
    HierarchyHelp() = default;

    BaseDocument* document = nullptr;
    BaseThread* thread = nullptr;
    Float levelOfDetail = 1;
    BUILDFLAGS buildFlags = BUILDFLAGS_0;
    Matrix matrix;
};
