// Reads one model file, `.vdt` or `.vdt.gz`, into a model.
//
// All reported problems go to the message handler and leave the parse running. Unknown elements and attributes are
// passed over. References to missing points are left out of what enters the records, so that nothing behind the
// reader has to check. The format is told in docs/file_format.md. One reader does one file, on one thread.
#pragma once

#include "vdt/file/elements.h"
#include "vdt/file/number_list.h"
#include "vdt/file/simple_xml.h"
#include "vdt/model/model.h"

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

namespace vdt {

class ElementAttributes;

class VdtReader : public SimpleXml {
public:
    /// A record costs some hundred bytes and its element a dozen: without limits a small file could fill the memory.
    static constexpr size_t kMostRecords = 65536;   // variants, materials, meshes: of each kind, in one file
    static constexpr size_t kMostQualifiers = 1024; // of one variant; they are searched one by one

    /// Both belong to the caller and outlive the reader.
    VdtReader(Model& target, MessageHandler& handler);

    /// Opens the file, parses it and makes the paths in the model absolute. False if it cannot be opened, is empty
    /// or had to be given up; the model then holds what was complete by then.
    bool readFile(const std::string& path);

    void startDocument() override {}
    void endDocument() override {}
    void startElement(std::string_view name, const std::vector<XmlAttribute>& attributes) override;
    void endElement(std::string_view name) override;
    void characters(std::string_view piece) override;

protected:
    /// Called with one sentence for everything in the file that leaves no trace in the model and is not reported:
    /// unknown elements and attributes, lists that do not fit. For programs that check files.
    virtual void onLoss(const std::string& /*what*/) {}

private:
    enum class TextMode { Dropped, Floats, Integers, String };

    /// One list of numbers that belongs to a polyline, polygon or connector list.
    struct GeometryAttribute {
        std::string name;
        bool numericFloat = false;
        int32_t components = 1;
        int32_t storageClass = 2;
        Array<double> floats;
        Array<int32_t> integers;
        bool used = false;

        size_t count() const { return numericFloat ? floats.size() : integers.size(); }
    };
    struct AttributeRule;

    // vdt_reader.cpp: the frame of the file
    void readDocument(const ElementAttributes& attributes);
    void checkVersion(const std::string* version);
    void readPlant(const ElementAttributes& attributes);
    void readModelStart(const ElementAttributes& attributes);
    void readQualifier(const ElementAttributes& attributes);
    void endOpenElement();
    void takeName(std::string& name);
    bool endLabel();
    void storeLabel(LocalizedTexts& texts, const std::string& language, const char* report);
    void endBound();
    void endColor(SeasonColors& colors, const char* kind);
    void endQualifiers();
    void endModel();
    TextMode currentTextMode() const;
    bool hasRoom(size_t count, size_t most, const char* what);

    // vdt_reader_materials.cpp
    void startMaterialElement(const ElementAttributes& attributes);
    void startMaterial(const ElementAttributes& attributes);
    MaterialSide* sideToFill();
    void endMaterial();

    // vdt_reader_geometry.cpp
    bool atGeometryList() const;
    bool inGeometryList(Element child) const;
    void clearGeometryLists();
    void startAttrib(const ElementAttributes& attributes);
    void reserveAttribute();
    void startMesh(const ElementAttributes& attributes);
    bool endGeometryElement();
    void endSkeletonPoints();
    void endPolylines();
    void endConnectors();
    void endMeshPoints();
    void endPolygons();
    void endMesh();
    void endProxy();
    void endAttrib();
    const GeometryAttribute* findAttribute(const AttributeRule& rule, uint64_t requiredCount);
    void reportUnusedAttributes();
    void warnLeftOut(uint64_t count, const char* what);
    uint64_t listedVertexCount() const;

    Model* model;
    ElementStack stack;
    FloatList floats;
    IntegerList integers;
    std::string text; // of names, labels and descriptions
    std::string labelLanguage;
    std::string descriptionLanguage;
    std::string season;
    FileInfo pendingInfo;
    Qualifier qualifier;
    ModelVariant variant;
    uint64_t pendingDefault = kNone; // position of the last variant flagged as default
    bool limitReported = false;
    size_t meshCount = 0; // meshes and proxies of all variants

    MaterialData material;
    bool diffuseGivesAlpha = false;

    GeometryAttribute attrib;
    Array<int32_t> vertexCounts; // nvertices
    Array<int32_t> vertexPoints; // vertices
    std::vector<GeometryAttribute> attribs;
    std::unique_ptr<Mesh> mesh; // under construction
    int32_t meshGroup = 0;
    std::string meshQualifier;
};

} // namespace vdt
