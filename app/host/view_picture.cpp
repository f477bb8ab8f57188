#include "host/view_picture.h"

#include "vdt/math/vector.h"
#include "view/draw_document.h"
#include "view/gl_context.h"
#include "view/view_renderer.h"

namespace verdanth {

ViewPainter::ViewPainter() = default;
ViewPainter::~ViewPainter() = default;

bool ViewPainter::start(std::string& problem)
{
    context = host::CreateOffscreenContext(problem);
    return context && context->makeCurrent(problem);
}

bool ViewPainter::draw(BaseDocument& document, const ViewSettings& settings, Picture& picture, std::string& problem)
{
    BaseDraw* shown = document.GetActiveBaseDraw();
    if (!shown) {
        problem = "the document has no view";
        return false;
    }
    constexpr double kRadian = vdt::kPi / 180;
    host::ViewCore& view = *host::CoreOf(shown);
    view.options = {.grid = settings.grid, .boxes = settings.boxes};
    view.setSize(static_cast<Int32>(settings.width), static_cast<Int32>(settings.height));
    host::ShowAll(document, view, host::CameraAxes(settings.azimuth * kRadian, settings.elevation * kRadian),
                  settings.distance);

    host::DrawList list;
    host::ViewImage image;
    host::ViewRenderer renderer;
    host::DrawDocument(document, view, nullptr, list);
    if (!renderer.drawImage(list, image, problem)) return false;
    picture = {image.width, image.height, std::move(image.pixels)};
    return true;
}

} // namespace verdanth
