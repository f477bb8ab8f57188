// Objects: matrices, modes, tags and caches.
#pragma once

#include "c4d_baseobject.h"
#include "c4d_basetag.h"
#include "core/node.h"

namespace host {

struct ObjectCore : NodeCore {
    explicit ObjectCore(const NodeClass& nodeClass);
    // Matrices. The local one is kept as it was set; position, scale and angles follow it, so that angles beyond a full
    // turn survive as long as they are set as such.

    const Matrix& Local() const { return local; }
    /// Through parents and the owner of the cache.
    Matrix Global() const;
    Matrix ParentGlobal() const;
    void SetLocal(const Matrix& matrix);
    void SetPosition(const Vector& newPosition);
    void SetScale(const Vector& newScale);
    void SetRotation(const Vector& hpb);
    const Vector& Scale() const { return scale; }
    const Vector& Rotation() const { return rotation; }

    // Caches. An object owns both; the root of a cache has no parent, its siblings and children belong to it.

    ObjectCore* Cache() const { return cache; }
    ObjectCore* DeformCache() const { return deformCache; }
    /// Takes `root` with its siblings over, which may be the present cache (nothing happens) or null, and frees the old
    /// one.
    void SetCache(ObjectCore* root);
    void SetDeformCache(ObjectCore* root);
    void FreeCaches() override;
    NodeCore* CacheParent() const override { return cacheOwner; }

    /// Notes all dirty counts and hides the object as somebody's input.
    void Touch();
    bool IsDirty(DIRTYFLAGS mask) const;

    /// Centre and half size in the object's own space: the plug-in's GetDimension, never negative; zero without one.
    virtual void Dimension(Vector& centre, Vector& radius) const;
    bool IsGenerator() const;

    std::vector<ListCore*> Branches() const override;
    bool GetBuiltIn(Int32 id, GeData& whole) const override;
    bool SetBuiltIn(Int32 id, const GeData& whole) override;
    bool CopyBodyTo(NodeCore& copy, COPYFLAGS flags, AliasTrans* translation) const override;
    bool WriteBody(HyperFile& file) const override;
    bool ReadBody(HyperFile& file, Int32 level) override;
    void OnInserted(ListCore* branch, NodeCore& node) override;
    void OnRemoved(ListCore* branch, NodeCore& node) override;
    UInt32 ContentCount() const override;

    mutable ListCore tags{this};
    Int32 editorMode = MODE_UNDEF;
    Int32 renderMode = MODE_UNDEF;
    bool deformMode = true; // the generator switch
    Int32 useColor = 0;     // ID_BASEOBJECT_USECOLOR_...
    Vector color;
    bool xray = false;

    // What CheckCache noted last.
    BUILDFLAGS builtFlags = BUILDFLAGS_0;
    Float builtDetail = -1;

    UInt32 shownState = 0; // of an instance: the state of its target when its cache was made

protected:
    UInt32 DerivedCount(DIRTYFLAGS flag) const override;

private:
    void moved();
    void inheritMove();
    void passMove(); // to what stands below and in the caches
    void rebuildLocal();

    Matrix local;
    Vector scale{1};
    Vector rotation; // HPB
    ObjectCore* cache = nullptr;
    ObjectCore* deformCache = nullptr;
    ObjectCore* cacheOwner = nullptr;        // set on the root of a cache and on its siblings
    UInt32 inheritedMoves = 0;               // times that something above was moved
    std::array<UInt32, kDirtyKinds> noted{}; // counts at the last Touch
};

struct TagCore : NodeCore {
    explicit TagCore(const NodeClass& nodeClass);

    ObjectCore* Object() const;
};

inline ObjectCore* CoreOf(const BaseObject* object)
{
    return static_cast<ObjectCore*>(NodeCore::Of(object));
}
inline TagCore* CoreOf(const BaseTag* tag)
{
    return static_cast<TagCore*>(NodeCore::Of(tag));
}

} // namespace host
