// Materials and the shaders in them.
#pragma once

#include "c4d_baselist.h"

#define Mmaterial 5703
#define Mplugin 5705
#define Xbitmap 5833
#define Xcolor 5832

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
