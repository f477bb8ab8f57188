// Where OpenGL calls go. The renderer calls into whatever context is current on its thread: one of these, or a
// widget's.
#pragma once

#include <memory>
#include <string>

namespace host {

class GlContext {
public:
    virtual ~GlContext() = default;

    /// Makes it this thread's context; it may be current on one thread at a time. False, with `problem` told, if that
    /// fails.
    virtual bool makeCurrent(std::string& problem) = 0;
    virtual void doneCurrent() = 0;
};

/// A context without a window, a display server or a toolkit. Null, with `problem` told, where the system has no usable
/// OpenGL 3.3.
std::unique_ptr<GlContext> CreateOffscreenContext(std::string& problem);

} // namespace host
