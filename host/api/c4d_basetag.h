// Tags: what hangs on objects.
#pragma once

#include "c4d_baseobject.h"

#define Tpoint 5600
#define Tpolygon 5604
#define Tphong 5612
#define Ttexture 5616
#define Tuvw 5671
#define Tpolygonselection 5673
#define Tpointselection 5674
#define Tplugin 5691
#define Tbase 5694
#define Tvariable 5695
#define Tedgeselection 5701
#define Tnormal 5711

class BaseTag : public BaseList2D {
public:
    static BaseTag* Alloc(Int32 type); // null for an unknown type
    static void Free(BaseTag*& tag);

    BaseTag* GetNext();
    BaseTag* GetPred();
    BaseObject* GetObject();

protected:
    using BaseList2D::BaseList2D;
};

/// One record for each point or polygon of the object.
class VariableTag : public BaseTag {
public:
    static VariableTag* Alloc(Int32 type, Int32 count);
    static void Free(VariableTag*& tag);

    Int32 GetDataCount() const;

protected:
    using BaseTag::BaseTag;
};

struct UVWStruct {
    Vector a, b, c, d;

    UVWStruct() = default;
    UVWStruct(const Vector& t_a, const Vector& t_b, const Vector& t_c) : a(t_a), b(t_b), c(t_c) {}
    UVWStruct(const Vector& t_a, const Vector& t_b, const Vector& t_c, const Vector& t_d)
        : a(t_a),
          b(t_b),
          c(t_c),
          d(t_d)
    {
    }
};

class UVWTag : public VariableTag {
public:
    static UVWTag* Alloc(Int32 count); // of polygons
    static void Free(UVWTag*& tag);

    UVWHandle GetDataAddressW();
    ConstUVWHandle GetDataAddressR() const;
    static void Get(ConstUVWHandle dataptr, Int32 i, UVWStruct& res);
    static void Set(UVWHandle dataptr, Int32 i, const UVWStruct& s);

protected:
    using VariableTag::VariableTag;
};

struct NormalStruct {
    Vector a, b, c, d;

    NormalStruct() = default;
    NormalStruct(const Vector& t_a, const Vector& t_b, const Vector& t_c, const Vector& t_d)
        : a(t_a),
          b(t_b),
          c(t_c),
          d(t_d)
    {
    }
};

/// One normal a corner, kept as 16-bit fixed point.
class NormalTag : public VariableTag {
public:
    static NormalTag* Alloc(Int32 count); // of polygons
    static void Free(NormalTag*& tag);

    NormalHandle GetDataAddressW();
    ConstNormalHandle GetDataAddressR() const;
    static void Get(ConstNormalHandle dataptr, Int32 i, NormalStruct& res);
    static void Set(NormalHandle dataptr, Int32 i, const NormalStruct& s);

protected:
    using VariableTag::VariableTag;
};

class SelectionTag : public BaseTag {
public:
    static SelectionTag* Alloc(Int32 type);
    static void Free(SelectionTag*& tag);

    BaseSelect* GetBaseSelect();

protected:
    using BaseTag::BaseTag;
};

class TextureTag : public BaseTag {
public:
    static TextureTag* Alloc();
    static void Free(TextureTag*& tag);

    void SetMaterial(BaseMaterial* material);
    /// Null if the material is in no document or in another one.
    BaseMaterial* GetMaterial(Bool ignoredoc = false);

protected:
    using BaseTag::BaseTag;
};
