#include "vdt/file/vdt_reader.h"

#include "vdt/file/element_attributes.h"
#include "vdt/file/file_access.h"
#include "vdt/file/inflate_stream.h"

#include <algorithm>
#include <fstream>
#include <utility>

namespace vdt {
namespace {

constexpr const char* kNoLabelOrProperLanguage = "Empty label or label without proper language attribute specified!";
constexpr const char* kNoLabelOrLanguage = "Empty label or label without language attribute specified!";
constexpr const char* kNoProperLanguage = "Description without proper language attribute specified!";

std::string lowered(std::string value)
{
    for (char& c : value)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return value;
}

// The inflated size as a gzip file's last four bytes tell it, the file's own size for any other; for progress alone.
uint64_t sizeToRead(std::istream& file, bool gzip)
{
    file.clear();
    if (!gzip) {
        file.seekg(0, std::ios::end);
        return static_cast<uint64_t>(std::max<std::streamoff>(0, file.tellg()));
    }
    unsigned char bytes[4] = {};
    file.seekg(-4, std::ios::end);
    file.read(reinterpret_cast<char*>(bytes), sizeof bytes);
    return bytes[0] | bytes[1] << 8 | bytes[2] << 16 | static_cast<uint64_t>(bytes[3]) << 24;
}

// Tells what went wrong with compressed data. True if reading has to count as failed.
bool reportInflateState(zlib_stream::InflateState state, const std::string& path, MessageHandler& messages)
{
    using zlib_stream::InflateState;
    switch (state) {
    case InflateState::Truncated:
        messages.warning("The compressed data of \"" + path + "\" is cut short; what comes before is read.");
        return false;
    case InflateState::Corrupt:
        messages.warning("The compressed data of \"" + path + "\" is damaged; what comes before is read.");
        return false;
    case InflateState::TooLarge:
        messages.error("The compressed data of \"" + path +
                       "\" inflates to more than a hundred times its size; reading ends there.");
        return true;
    default: return false;
    }
}

} // namespace

VdtReader::VdtReader(Model& target, MessageHandler& handler) : SimpleXml(handler), model(&target)
{
}

bool VdtReader::readFile(const std::string& path)
{
    std::vector<char> fileBuffer(65536);
    std::ifstream file;
    file.rdbuf()->pubsetbuf(fileBuffer.data(), static_cast<std::streamsize>(fileBuffer.size()));
    OpenForReading(file, path);

    bool parsed = false;
    if (file.is_open()) {
        const uint64_t size = sizeToRead(file, zlib_stream::zip_istream(file).isGzip());
        file.clear();
        file.seekg(0);
        zlib_stream::zip_istream inflating(file);
        if (inflating.isGzip()) {
            parsed = parse(inflating, size);
            if (reportInflateState(inflating.state(), path, *messageHandler)) parsed = false;
        } else {
            parsed = parse(file, size);
        }
    }
    model->mapPaths(MakeAbsolutePathMapper(DirectoryOfPath(path)));
    return parsed;
}

void VdtReader::startElement(std::string_view name, const std::vector<XmlAttribute>& xmlAttributes)
{
    const Element element = FindElement(name);
    floats.clear();
    integers.clear();
    stack.push(element);
    const ElementAttributes attributes(xmlAttributes);

    switch (element) {
    case Element::Unknown: onLoss("The element \"" + std::string(name) + "\" is unknown."); return;
    case Element::Polylines:
    case Element::Connectors:
    case Element::Polygons:
        if (atGeometryList()) clearGeometryLists();
        break;
    case Element::Verdanth: readDocument(attributes); break;
    case Element::Plant: readPlant(attributes); break;
    case Element::Qualifier: readQualifier(attributes); break;
    case Element::Qualifiers:
        if (const std::string* id = attributes.find("default"))
            variant.defaultQualifier = static_cast<uint64_t>(ParseInteger(*id).value);
        break;
    case Element::Wood:
    case Element::Foliage:
        if (stack.endsWith({Element::Colors, element})) attributes.read("season", season);
        break;
    case Element::Attrib: startAttrib(attributes); break;
    case Element::Model: readModelStart(attributes); break;
    case Element::Mesh: startMesh(attributes); break;
    case Element::Label:
    case Element::Description: {
        std::string& language = element == Element::Label ? labelLanguage : descriptionLanguage;
        const std::string* tag = attributes.find("lang");
        language = tag ? normalizeLanguage(*tag) : std::string();
        break;
    }
    default: startMaterialElement(attributes); break;
    }
    attributes.forEachUnasked([&](const std::string& attribute) {
        onLoss("The attribute \"" + attribute + "\" of \"" + std::string(name) + "\" is unknown or out of place.");
    });
}

void VdtReader::readDocument(const ElementAttributes& attributes)
{
    checkVersion(attributes.find("version"));
    attributes.read("creator", pendingInfo.creator);
    attributes.read("user", pendingInfo.user);
    attributes.read("timestamp", pendingInfo.timestamp);
    attributes.read("source", pendingInfo.source);
}

void VdtReader::checkVersion(const std::string* version)
{
    if (!version || version->empty()) messageHandler->error("Verdanth file version missing!");

    std::string_view rest = version ? std::string_view(*version) : std::string_view();
    const ParsedNumber<int64_t> major = ParseInteger(rest);
    ParsedNumber<int64_t> minor;
    rest.remove_prefix(major.length);
    if (major.length > 0 && rest.starts_with('.')) minor = ParseInteger(rest.substr(1));
    if (minor.length == 0) messageHandler->error("Malformed Verdanth file version!");

    if (major.value > 1 || (major.value == 1 && minor.value >= 3))
        messageHandler->error("Verdanth file cannot be read since it seems to be exported from a newer version!");
}

void VdtReader::readPlant(const ElementAttributes& attributes)
{
    attributes.read("name", model->name);
    const std::string* unit = attributes.find("unit");
    if (!unit) return;
    if (*unit == "millimeters") model->unit = kMillimeters;
    if (*unit == "centimeters") model->unit = kCentimeters;
    if (*unit == "meters") model->unit = kMeters;
}

void VdtReader::readModelStart(const ElementAttributes& attributes)
{
    variant.reset();
    attributes.read("extref", variant.extref);
    attributes.read("name", variant.name);
    const std::string* isDefault = attributes.find("default");
    if (isDefault && (*isDefault == "1" || lowered(*isDefault) == "true")) pendingDefault = model->variants.size();
}

void VdtReader::readQualifier(const ElementAttributes& attributes)
{
    qualifier = {};
    if (const std::string* id = attributes.find("id")) qualifier.id = ParseInteger(*id).value;
    attributes.read("name", qualifier.name);
}

VdtReader::TextMode VdtReader::currentTextMode() const
{
    if (stack.elements().empty()) return TextMode::Dropped;
    switch (stack.elements().back()) {
    case Element::Name:
    case Element::Label:
    case Element::Description: return TextMode::String;
    case Element::Bound: return TextMode::Floats;
    case Element::Attrib: return attrib.numericFloat ? TextMode::Floats : TextMode::Integers;
    case Element::Wood: return stack.endsWith({Element::Colors, Element::Wood}) ? TextMode::Floats : TextMode::Dropped;
    case Element::Foliage:
        return stack.endsWith({Element::Colors, Element::Foliage}) ? TextMode::Floats : TextMode::Dropped;
    case Element::Points:
        return stack.endsWith({Element::Mesh, Element::Points}) ||
                       stack.endsWith({Element::Model, Element::Skeleton, Element::Points})
                   ? TextMode::Floats
                   : TextMode::Dropped;
    case Element::Nvertices:
    case Element::Vertices: return inGeometryList(stack.elements().back()) ? TextMode::Integers : TextMode::Dropped;
    default: return TextMode::Dropped;
    }
}

void VdtReader::characters(std::string_view piece)
{
    switch (currentTextMode()) {
    case TextMode::Floats: floats.append(piece); break;
    case TextMode::Integers: integers.append(piece); break;
    case TextMode::String: text += piece; break;
    case TextMode::Dropped: break;
    }
}

void VdtReader::endElement(std::string_view /*name*/)
{
    floats.finish();
    integers.finish();
    endOpenElement();
    stack.pop();
}

// The first place that matches decides.
void VdtReader::endOpenElement()
{
    const auto at = [this](std::initializer_list<Element> path) { return stack.endsWith(path); };

    if (at({Element::Plant, Element::Materials, Element::Material})) return endMaterial();
    if (at({Element::Model, Element::Qualifiers, Element::Qualifier})) {
        if (hasRoom(variant.qualifiers.size(), kMostQualifiers, "qualifiers of a variant"))
            variant.qualifiers.push_back(std::exchange(qualifier, {}));
        return;
    }
    if (at({Element::Model, Element::Qualifiers})) return endQualifiers();
    if (at({Element::Model, Element::Qualifiers, Element::Qualifier, Element::Name})) return takeName(qualifier.name);
    if (endGeometryElement()) return;
    if (at({Element::Model})) return endModel();
    if (at({Element::Plant})) {
        model->info = pendingInfo;
        return;
    }
    if (at({Element::Verdanth, Element::Plant, Element::Name})) return takeName(model->name);
    if (at({Element::Model, Element::Bound})) return endBound();
    if (endLabel()) return;
    if (at({Element::Colors, Element::Wood})) return endColor(model->woodColors, "Wood");
    if (at({Element::Colors, Element::Foliage})) return endColor(model->foliageColors, "Foliage");
}

void VdtReader::takeName(std::string& name)
{
    if (!text.empty()) name = std::exchange(text, {});
}

void VdtReader::endQualifiers()
{
    const auto id = static_cast<int64_t>(variant.defaultQualifier);
    const auto found = std::ranges::find(variant.qualifiers, id, &Qualifier::id);
    if (found != variant.qualifiers.end()) {
        variant.defaultQualifier = static_cast<uint64_t>(found - variant.qualifiers.begin());
        return;
    }
    messageHandler->warning("Unknown default qualifier given (" + std::to_string(id) + ")!");
    variant.defaultQualifier = 0;
}

void VdtReader::endModel()
{
    // Without a plant around it the file is the target of some extref, and tells who wrote this variant.
    if (stack.endsWith({Element::Verdanth, Element::Model})) variant.info = std::exchange(pendingInfo, {});
    if (hasRoom(model->variants.size(), kMostRecords, "variants")) model->variants.push_back(std::move(variant));
    // Only now: the element of a variant that was flagged may never have ended.
    if (pendingDefault < model->variants.size()) model->defaultVariant = pendingDefault;
    variant = {};
}

// True if one more record may join `count` others of its kind.
bool VdtReader::hasRoom(size_t count, size_t most, const char* what)
{
    if (count < most) return true;
    if (!limitReported)
        messageHandler->warning("Of " + std::string(what) + " a file may hold " + std::to_string(most) +
                                " at most; others are left out.");
    limitReported = true;
    return false;
}

void VdtReader::endBound()
{
    const Array<double>& values = floats.values;
    if (values.size() != 6) {
        messageHandler->warning("Invalid bounding volume value count, found " + std::to_string(values.size()) +
                                " values, expected 6!");
        return;
    }
    variant.bound.min = {values[0], values[1], values[2]};
    variant.bound.max = {values[3], values[4], values[5]};
}

void VdtReader::endColor(SeasonColors& colors, const char* kind)
{
    const Array<double>& values = floats.values;
    if (values.size() == 3 || values.size() == 4) {
        const auto component = [&](size_t i) { return static_cast<float>(values[i]); };
        colors[season] = {component(0), component(1), component(2), values.size() == 4 ? component(3) : 1.0f};
    } else {
        messageHandler->warning(std::string(kind) + " color has wrong argument count (" +
                                std::to_string(values.size()) + ")!");
    }
    season.clear();
}

// The four places of texts in several languages. False if this is none of them.
bool VdtReader::endLabel()
{
    if (stack.endsWith({Element::Qualifier, Element::Label})) {
        storeLabel(qualifier.labels, labelLanguage, kNoLabelOrProperLanguage);
    } else if (stack.endsWith({Element::Plant, Element::Label})) {
        storeLabel(model->labels, labelLanguage, kNoLabelOrProperLanguage);
    } else if (stack.endsWith({Element::Plant, Element::Meta, Element::Description})) {
        if (!text.empty()) storeLabel(model->descriptions, descriptionLanguage, kNoProperLanguage);
    } else if (stack.endsWith({Element::Model, Element::Label})) {
        storeLabel(variant.labels, labelLanguage, kNoLabelOrLanguage);
    } else {
        return false;
    }
    return true;
}

void VdtReader::storeLabel(LocalizedTexts& texts, const std::string& language, const char* report)
{
    if (text.empty() || language.empty()) {
        // Compatibility: the text stays, and the next element's text is appended to it.
        messageHandler->warning(report);
        return;
    }
    const bool isNew = texts.try_emplace(language, std::move(text)).second;
    text.clear();
    if (!isNew) onLoss("A second text in the language \"" + language + "\" is left out.");
}

} // namespace vdt
