// Materials and the shaders in them.
#pragma once

#include "c4d_baselist.h"

#define Mmaterial 5703
#define Mplugin 5705
#define Xbitmap 5833
#define Xcolor 5832

namespace host {
struct StandardMaterialCore;
}

class BaseMaterial : public BaseList2D {
public:
    static BaseMaterial* Alloc(Int32 type); // null if nobody registered the type
    static void Free(BaseMaterial*& material);

    BaseMaterial* GetNext();
    BaseMaterial* GetPred();
    void Update(Int32 preview, Bool rttm);
    /// Same type, container (without names and links) and shaders.
    Bool Compare(BaseMaterial* dst);

protected:
    using BaseList2D::BaseList2D;
};

/// One layer of a standard material's reflectance. Lent by the material, as long as that lives.
class ReflectionLayer {
public:
    /// What the ids of the layer's parameters in the material begin with; mreflection.h has the rest.
    Int32 GetDataID() const { return dataId; }

private:
    friend struct host::StandardMaterialCore;
    explicit ReflectionLayer(Int32 number) : dataId(number) {}

    Int32 dataId;
};

/// The standard material, of type Mmaterial.
class Material : public BaseMaterial {
public:
    /// On top of those there are; null if there are as many as there can be.
    ReflectionLayer* AddReflectionLayer();
    Int32 GetReflectionLayerCount() const;
    ReflectionLayer* GetReflectionLayerIndex(Int32 index); // from the lowest one; null past the end

protected:
    using BaseMaterial::BaseMaterial;
};

class BaseShader : public BaseList2D {
public:
    static BaseShader* Alloc(Int32 type);
    static void Free(BaseShader*& shader);

    BaseShader* GetNext();
    BaseShader* GetPred();
    BaseShader* GetUp();
    BaseShader* GetDown();
    BaseShader* GetDownLast();
    Bool Compare(BaseShader* dst);

protected:
    using BaseList2D::BaseList2D;
};
