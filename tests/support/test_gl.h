// OpenGL for tests that look at pixels.
#pragma once

#include "view/gl_context.h"

#include <stdlib.h>

namespace host::test {

/// A current context. Null, with `problem` told, where the system has no usable OpenGL: such tests skip themselves.
/// A driver that draws on the processor starts no threads, which a thread checker could not see through.
inline std::unique_ptr<GlContext> CurrentTestContext(std::string& problem)
{
    setenv("LP_NUM_THREADS", "0", 1);
    std::unique_ptr<GlContext> context = CreateOffscreenContext(problem);
    return context && context->makeCurrent(problem) ? std::move(context) : nullptr;
}

} // namespace host::test
