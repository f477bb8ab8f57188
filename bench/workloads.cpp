#include "workloads.h"

#include "grower/large_plant.h"
#include "vdt/file/vdt_writer.h"

#include <zlib.h>

#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace workloads {
namespace {

std::string compressed(const std::string& text)
{
    z_stream zlib{};
    deflateInit2(&zlib, Z_DEFAULT_COMPRESSION, Z_DEFLATED, MAX_WBITS + 16, 8, Z_DEFAULT_STRATEGY);
    std::string result(deflateBound(&zlib, text.size()), '\0');
    std::string input = text;
    zlib.next_in = reinterpret_cast<Bytef*>(input.data());
    zlib.avail_in = static_cast<uInt>(input.size());
    zlib.next_out = reinterpret_cast<Bytef*>(result.data());
    zlib.avail_out = static_cast<uInt>(result.size());
    deflate(&zlib, Z_FINISH);
    result.resize(zlib.total_out);
    deflateEnd(&zlib);
    return result;
}

// To eight significant digits, which is what programs write.
void shorten(double& value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.8g", value);
    value = std::strtod(text, nullptr);
}

void shorten(vdt::Skeleton& skeleton)
{
    for (vdt::SkeletonPoint& point : skeleton.points)
        for (double* value : {&point.position.x, &point.position.y, &point.position.z}) shorten(*value);
    for (vdt::SkeletonBranch& branch : skeleton.branches)
        for (vdt::SkeletonVertex* vertex = branch.firstVertex; vertex; vertex = vertex->next)
            shorten(vertex->attributes.radius);
    for (vdt::SkeletonConnector& connector : skeleton.connectors) shorten(connector.attributes.scale);
}

} // namespace

const std::string& LargeText()
{
    static const std::string text = [] {
        vdt::Model model = grower::GrowLargePlant();
        shorten(model.variants.front().skeleton);
        vdt::NullMessageHandler silent;
        std::ostringstream stream;
        vdt::VdtWriter(model, silent).write(stream);
        return stream.str();
    }();
    return text;
}

const std::string& LargeGzip()
{
    static const std::string gzip = compressed(LargeText());
    return gzip;
}

} // namespace workloads
