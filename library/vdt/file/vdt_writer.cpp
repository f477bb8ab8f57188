#include "vdt/file/vdt_writer.h"

#include "vdt/file/file_access.h"
#include "vdt/file/vdt_writer_geometry.h"

#define ZLIB_CONST // input is not written to
#include <zlib.h>

#include <algorithm>
#include <fstream>
#include <utility>
#include <vector>

namespace vdt {
namespace {

constexpr const char* kVersion = "1.2";

class StreamSink final : public TextSink {
public:
    explicit StreamSink(std::ostream& target) : stream(&target) {}
    bool take(std::string_view text) override
    {
        return static_cast<bool>(stream->write(text.data(), static_cast<std::streamsize>(text.size())));
    }

private:
    std::ostream* stream;
};

// Compresses to a gzip stream without name or time, so that the same model gives the same bytes.
class GzipSink final : public TextSink {
public:
    explicit GzipSink(std::ostream& target) : stream(&target), output(65536)
    {
        constexpr int kGzipWindow = MAX_WBITS + 16;
        constexpr int kMemoryLevel = 9;
        fine = deflateInit2(&zlib, Z_DEFAULT_COMPRESSION, Z_DEFLATED, kGzipWindow, kMemoryLevel, Z_DEFAULT_STRATEGY) ==
               Z_OK;
    }
    GzipSink(const GzipSink&) = delete;
    GzipSink& operator=(const GzipSink&) = delete;
    ~GzipSink() override { deflateEnd(&zlib); }

    bool take(std::string_view text) override { return compress(text, Z_NO_FLUSH); }
    bool finish() { return compress({}, Z_FINISH); }

private:
    bool compress(std::string_view text, int flush)
    {
        zlib.next_in = reinterpret_cast<const Bytef*>(text.data());
        zlib.avail_in = static_cast<uInt>(text.size());
        do {
            zlib.next_out = output.data();
            zlib.avail_out = static_cast<uInt>(output.size());
            fine = fine && deflate(&zlib, flush) != Z_STREAM_ERROR;
            const auto count = static_cast<std::streamsize>(output.size() - zlib.avail_out);
            fine = fine && stream->write(reinterpret_cast<const char*>(output.data()), count);
        } while (fine && zlib.avail_out == 0);
        return fine;
    }

    std::ostream* stream;
    std::vector<Bytef> output;
    z_stream zlib{};
    bool fine = true;
};

// A path inside the base directory as the reader will join it again; any other as it stands.
std::string_view relativePath(std::string_view path, std::string_view base)
{
    if (base.empty() || !path.starts_with(base)) return path;
    const std::string_view rest = path.substr(base.size());
    return rest.empty() || rest.starts_with("..") || IsAbsolutePath(rest) ? path : rest;
}

void writePath(XmlOutput& xml, std::string_view attribute, std::string_view path, const VdtWriterOptions& options)
{
    if (!path.empty()) xml.attribute(attribute, relativePath(path, options.baseDirectory));
}

void writeTextIfAny(XmlOutput& xml, std::string_view attribute, std::string_view value)
{
    if (!value.empty()) xml.attribute(attribute, value);
}

std::string colorText(const Color3f& color)
{
    return NumberText(color.r) + ' ' + NumberText(color.g) + ' ' + NumberText(color.b);
}

void writeLabels(XmlOutput& xml, std::string_view element, const LocalizedTexts& texts)
{
    for (const auto& [language, text] : texts) {
        if (text.empty() || language.empty() || normalizeLanguage(language) != language)
            xml.fail("a label without text or with the improper language \"" + language + "\"");
        xml.open(element);
        xml.attribute("lang", language);
        xml.text(text);
        xml.close();
    }
}

void writeFileInfo(XmlOutput& xml, const FileInfo& info)
{
    writeTextIfAny(xml, "creator", info.creator);
    writeTextIfAny(xml, "user", info.user);
    writeTextIfAny(xml, "timestamp", info.timestamp);
    writeTextIfAny(xml, "source", info.source);
}

void writeColors(XmlOutput& xml, std::string_view element, const SeasonColors& colors)
{
    for (const auto& [season, color] : colors) {
        xml.open(element);
        xml.attribute("season", season);
        xml.text(colorText({color.r, color.g, color.b}) + ' ' + NumberText(color.a));
        xml.close();
    }
}

void writeTextured(XmlOutput& xml, std::string_view element, const Color3f& color, std::string_view texture,
                   float roughness, const VdtWriterOptions& options)
{
    xml.open(element);
    xml.attribute("color", colorText(color));
    writePath(xml, "texture", texture, options);
    xml.attribute("roughness", roughness);
    xml.close();
}

// The diffuse element comes first: it is what gives a material a back of its own.
void writeSide(XmlOutput& xml, std::string_view element, const MaterialSide& side, const VdtWriterOptions& options)
{
    xml.open(element);
    writeTextured(xml, "diffuse", side.diffuseColor, side.diffuseTexture, side.diffuseRoughness, options);
    writeTextured(xml, "specular", side.specularColor, side.specularTexture, side.specularRoughness, options);
    if (!side.normalTexture.empty()) {
        xml.open("normal");
        writePath(xml, "texture", side.normalTexture, options);
        xml.close();
    }
    if (!side.bumpTexture.empty() || side.bumpStrength != 0) {
        xml.open("bump");
        writePath(xml, "texture", side.bumpTexture, options);
        xml.attribute("strength", side.bumpStrength);
        xml.close();
    }
    xml.close();
}

void writeMaterial(XmlOutput& xml, const MaterialData& material, const VdtWriterOptions& options)
{
    xml.open("material");
    xml.attribute("matid", int64_t{material.matid});
    writeTextIfAny(xml, "name", material.name);
    if (material.back()) xml.attribute("sides", int64_t{2});
    writeSide(xml, "front", material.front, options);
    if (material.hasSeparateBack()) writeSide(xml, "back", *material.back(), options);
    if (!material.alphaTexture.empty()) {
        xml.open("alpha");
        writePath(xml, "texture", material.alphaTexture, options);
        xml.close();
    }
    xml.open("displacement");
    writePath(xml, "texture", material.displacementTexture, options);
    xml.attribute("height", material.displacementHeight);
    xml.attribute("centered", int64_t{material.displacementCentered});
    xml.close();
    xml.open("subsurface");
    writePath(xml, "texture", material.subsurfaceTexture, options);
    xml.attribute("depth", material.subsurfaceDepth);
    xml.attribute("color", colorText(material.subsurfaceColor));
    xml.close();
    xml.close();
}

void writeQualifiers(XmlOutput& xml, const ModelVariant& variant)
{
    if (variant.qualifiers.empty()) return;
    const uint64_t chosen = variant.defaultQualifier;
    const int64_t id = chosen < variant.qualifiers.size() ? variant.qualifiers[chosen].id : 0;
    const auto first = std::ranges::find(variant.qualifiers, id, &Qualifier::id);
    if (first - variant.qualifiers.begin() != static_cast<std::ptrdiff_t>(chosen))
        xml.fail("a default qualifier that its id does not tell from others");

    xml.open("qualifiers");
    xml.attribute("default", id);
    for (const Qualifier& qualifier : variant.qualifiers) {
        xml.open("qualifier");
        xml.attribute("id", qualifier.id);
        writeTextIfAny(xml, "name", qualifier.name);
        writeLabels(xml, "label", qualifier.labels);
        xml.close();
    }
    xml.close();
}

void writeVariant(XmlOutput& xml, const ModelVariant& variant, bool isDefault, const VdtWriterOptions& options)
{
    xml.open("model");
    writePath(xml, "extref", variant.extref, options);
    if (isDefault) xml.attribute("default", int64_t{1});
    writeTextIfAny(xml, "name", variant.name);
    writeLabels(xml, "label", variant.labels);
    if (variant.bound != Box()) {
        const auto& [min, max] = variant.bound;
        xml.open("bound");
        for (const double value : {min.x, min.y, min.z, max.x, max.y, max.z}) xml.number(value, 6);
        xml.close();
    }
    writeQualifiers(xml, variant);
    WriteSkeleton(xml, variant.skeleton);
    for (const VariantMesh& record : variant.meshes)
        if (record.mesh) WriteMesh(xml, *record.mesh, record.group, record.qualifier);
    for (const ProxyMesh& proxy : variant.proxies) {
        xml.open("proxy");
        WriteMesh(xml, proxy.mesh, 0, proxy.qualifier);
        xml.close();
    }
    xml.close();
}

void writePlant(XmlOutput& xml, const Model& model, const VdtWriterOptions& options)
{
    constexpr std::string_view kUnits[] = {"millimeters", "centimeters", "meters"};

    xml.open("plant");
    if (model.unit >= kMillimeters && model.unit <= kMeters) {
        xml.attribute("unit", kUnits[model.unit]);
    } else {
        xml.fail("an unknown unit");
    }
    writeTextIfAny(xml, "name", model.name);
    writeLabels(xml, "label", model.labels);
    xml.open("meta");
    writeLabels(xml, "description", model.descriptions);
    xml.close();
    xml.open("materials");
    for (const MaterialData& material : model.materials) writeMaterial(xml, material, options);
    xml.close();
    xml.open("colors");
    writeColors(xml, "wood", model.woodColors);
    writeColors(xml, "foliage", model.foliageColors);
    xml.close();
    for (uint64_t i = 0; i < model.variants.size(); ++i)
        writeVariant(xml, model.variants[i], i == model.defaultVariant, options);
    xml.close();
}

// Empty, or the reason why the model could not be written.
std::string writeModel(TextSink& sink, const Model& model, const VdtWriterOptions& options)
{
    constexpr std::string_view kHead = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    if (!sink.take(kHead)) return "the output could not be written";

    XmlOutput xml(sink);
    xml.open("verdanth");
    xml.attribute("version", kVersion);
    if (options.withoutPlant) {
        if (model.variants.empty()) return "a model without variants as the target of an extref";
        writeFileInfo(xml, model.variants.front().info);
        writeVariant(xml, model.variants.front(), false, options);
    } else {
        writeFileInfo(xml, model.info);
        writePlant(xml, model, options);
    }
    xml.close();
    return xml.finish();
}

// Empty, or the reason why the stream could not be written.
std::string writeTo(std::ostream& stream, bool compressed, const Model& model, const VdtWriterOptions& options)
{
    if (!compressed) {
        StreamSink sink(stream);
        return writeModel(sink, model, options);
    }
    GzipSink sink(stream);
    std::string reason = writeModel(sink, model, options);
    if (!sink.finish() && reason.empty()) reason = "the output could not be written";
    return reason;
}

// The same for a file.
std::string writeTo(const std::filesystem::path& path, bool compressed, const Model& model,
                    const VdtWriterOptions& options)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    if (!file) return "the file cannot be made";

    std::string reason = writeTo(file, compressed, model, options);
    file.close();
    if (!file && reason.empty()) reason = "the output could not be written";
    return reason;
}

} // namespace

VdtWriter::VdtWriter(const Model& source, MessageHandler& handler, VdtWriterOptions writerOptions)
    : model(&source),
      messageHandler(&handler),
      options(std::move(writerOptions))
{
}

bool VdtWriter::writeFile(const std::string& path)
{
    VdtWriterOptions fileOptions = options;
    if (fileOptions.baseDirectory.empty()) fileOptions.baseDirectory = DirectoryOfPath(path);

    const std::filesystem::path target = ToFilePath(path);
    const std::filesystem::path beside = ToFilePath(path + ".part");
    std::string reason = writeTo(beside, path.ends_with(".gz"), *model, fileOptions);
    std::error_code error;
    if (reason.empty()) {
        std::filesystem::rename(beside, target, error);
        if (error) reason = error.message();
    }
    if (reason.empty()) return true;
    std::filesystem::remove(beside, error);
    messageHandler->error("\"" + path + "\" could not be written: " + reason + ".");
    return false;
}

bool VdtWriter::write(std::ostream& stream, bool compressed)
{
    const std::string reason = writeTo(stream, compressed, *model, options);
    if (!reason.empty()) messageHandler->error("The model could not be written: " + reason + ".");
    return reason.empty();
}

} // namespace vdt
