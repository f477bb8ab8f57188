// Turns a draw list into pixels with OpenGL 3.3, in whatever context is current: that one has to be current for each
// call, the destructor's too.
#pragma once

#include "view/draw_list.h"
#include "view/view_image.h"

#include <memory>
#include <string>

namespace host {

class ViewRenderer {
public:
    ViewRenderer();
    ViewRenderer(const ViewRenderer&) = delete;
    ViewRenderer& operator=(const ViewRenderer&) = delete;
    ~ViewRenderer();

    /// Draws the list in its frame's size. False, with `problem` told, if the context cannot.
    bool drawImage(const DrawList& list, ViewImage& image, std::string& problem);

    /// The same, into a framebuffer of the context at least as large as the frame; its lower left corner is filled.
    bool drawInto(const DrawList& list, unsigned framebuffer, std::string& problem);

private:
    struct Resources;
    bool draw(const DrawList& list, std::string& problem);

    std::unique_ptr<Resources> resources; // made by the first picture
};

} // namespace host
