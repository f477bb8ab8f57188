// Polygon objects and the tags that carry data of their own.
//
// Points and polygons lie in plain arrays, and so do the records of variable tags. A variable tag in an object always
// has one record a polygon: it is resized with the object, and when it is inserted. Indices of polygons are the
// plug-ins' affair, but for those that come from files, which are checked.
#pragma once

#include "c4d_basetag.h"
#include "c4d_tools.h"
#include "core/object.h"
#include "core/plain_array.h"
#include "core/selection_record.h"
#include "lib_ngon.h"

/// The n-gons of an object: none.
struct NgonRecord {
    NgonBase ngons;
};

namespace host {

struct VariableTagCore;

struct PolygonCore : ObjectCore {
    explicit PolygonCore(const NodeClass& nodeClass);

    /// Resizes the variable tags too. False, with nothing changed, for negative counts and without memory.
    bool Resize(Int32 pointCount, Int32 polygonCount);
    /// Takes the box of all points.
    void UpdateBox();

    void Dimension(Vector& centre, Vector& radius) const override;
    void OnMessage(Int32 type, void* data) override;
    bool CopyBodyTo(NodeCore& copy, COPYFLAGS flags, AliasTrans* translation) const override;
    bool WriteBody(HyperFile& file) const override;
    bool ReadBody(HyperFile& file, Int32 level) override;
    void OnInserted(ListCore* branch, NodeCore& node) override;

    PlainArray<Vector> points;
    PlainArray<CPolygon> polygons;
    SelectionRecord pointSelection;
    SelectionRecord polygonSelection;
    NgonRecord outlines;
    Vector boxCentre, boxRadius; // of the points at the last update

protected:
    UInt32 DerivedCount(DIRTYFLAGS flag) const override;

private:
    std::vector<VariableTagCore*> variableTags() const;
};

/// Texture coordinates or normals: a record of fixed size for each polygon.
struct VariableTagCore : TagCore {
    explicit VariableTagCore(const NodeClass& nodeClass);

    Int32 Count() const { return static_cast<Int32>(bytes.size() / recordSize); }
    /// Makes sure that Resize() up to so many cannot fail.
    bool Reserve(Int32 count) { return bytes.reserve(static_cast<size_t>(count) * recordSize); }
    bool Resize(Int32 count) { return bytes.resize(static_cast<size_t>(count) * recordSize); }

    bool CopyBodyTo(NodeCore& copy, COPYFLAGS flags, AliasTrans* translation) const override;
    bool WriteBody(HyperFile& file) const override;
    bool ReadBody(HyperFile& file, Int32 level) override;

    size_t recordSize;
    PlainArray<UChar> bytes;
};

struct SelectionTagCore : TagCore {
    explicit SelectionTagCore(const NodeClass& nodeClass);

    bool CopyBodyTo(NodeCore& copy, COPYFLAGS flags, AliasTrans* translation) const override;
    bool WriteBody(HyperFile& file) const override;
    bool ReadBody(HyperFile& file, Int32 level) override;

    SelectionRecord selection;

protected:
    UInt32 DerivedCount(DIRTYFLAGS flag) const override;
};

/// The material is a link among the parameters.
struct TextureTagCore : TagCore {
    explicit TextureTagCore(const NodeClass& nodeClass);
};

/// Null for null and for objects without polygons of their own.
PolygonCore* PolygonCoreOf(const BaseObject* object);

} // namespace host
