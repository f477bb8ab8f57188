// Pictures of documents as the host's viewport shows them.
#pragma once

#include "c4d.h"
#include "export/picture.h"

#include <memory>
#include <string>

namespace host {
class GlContext;
}

namespace verdanth {

/// Angles are degrees, as a camera of a rendered picture has them: at azimuth 0 the viewer stands in front, and walks
/// to his right.
struct ViewSettings {
    uint32_t width = 512;
    uint32_t height = 512;
    double azimuth = 0;
    double elevation = 0;
    double distance = 1; // 1 fills the picture
    bool grid = true;    // on the floor
    bool boxes = true;   // for what has no polygons
};

class ViewPainter {
public:
    ViewPainter();
    ViewPainter(const ViewPainter&) = delete;
    ViewPainter& operator=(const ViewPainter&) = delete;
    ~ViewPainter();

    /// False, with `problem` told, where the system has no usable OpenGL.
    bool start(std::string& problem);

    /// Draws the document's first view, turned and moved so that all of it is seen. The document must have been
    /// evaluated. False, with `problem` told, if the picture is beyond the system.
    bool draw(BaseDocument& document, const ViewSettings& settings, Picture& picture, std::string& problem);

private:
    std::unique_ptr<host::GlContext> context;
};

} // namespace verdanth
