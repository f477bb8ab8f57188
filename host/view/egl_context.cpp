#include "view/gl_context.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <cstring>

namespace host {
namespace {

std::string eglProblem(const std::string& what)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    const EGLint code = eglGetError();
    std::string number;
    for (int shift = 12; shift >= 0; shift -= 4) number += kDigits[code >> shift & 0xF];
    return "no usable OpenGL: " + what + " (EGL error 0x" + number + ")";
}

bool lists(const char* extensions, const char* wanted)
{
    const size_t length = std::strlen(wanted);
    for (const char* at = extensions; at && (at = std::strstr(at, wanted)); at += length)
        if ((at == extensions || at[-1] == ' ') && (at[length] == ' ' || at[length] == 0)) return true;
    return false;
}

// A display that needs neither a screen nor a server; the system's default one where that is not known.
EGLDisplay openDisplay()
{
    const char* extensions = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    if (lists(extensions, "EGL_MESA_platform_surfaceless") && lists(extensions, "EGL_EXT_platform_base")) {
        const auto getPlatformDisplay =
            reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(eglGetProcAddress("eglGetPlatformDisplayEXT"));
        if (getPlatformDisplay) return getPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, nullptr, nullptr);
    }
    return eglGetDisplay(EGL_DEFAULT_DISPLAY);
}

class EglContext : public GlContext {
public:
    EglContext() = default;
    EglContext(const EglContext&) = delete;
    EglContext& operator=(const EglContext&) = delete;

    // The display is the process's: ending it would take other contexts with it.
    ~EglContext() override
    {
        if (context == EGL_NO_CONTEXT) return;
        if (eglGetCurrentContext() == context) doneCurrent();
        eglDestroyContext(display, context);
    }

    bool create(std::string& problem)
    {
        display = openDisplay();
        EGLint major = 0, minor = 0;
        if (display == EGL_NO_DISPLAY || !eglInitialize(display, &major, &minor)) {
            problem = eglProblem("no driver answers");
            return false;
        }
        const char* extensions = eglQueryString(display, EGL_EXTENSIONS);
        if (!lists(extensions, "EGL_KHR_surfaceless_context")) {
            problem = "no usable OpenGL: the driver draws into windows only";
            return false;
        }
        constexpr EGLint kConfiguration[] = {EGL_SURFACE_TYPE, EGL_DONT_CARE, EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT,
                                             EGL_NONE};
        EGLConfig configuration = nullptr;
        EGLint count = 0;
        if (!eglBindAPI(EGL_OPENGL_API) || !eglChooseConfig(display, kConfiguration, &configuration, 1, &count) ||
            count == 0) {
            problem = eglProblem("the driver has no desktop OpenGL");
            return false;
        }
        constexpr EGLint kAttributes[] = {
            EGL_CONTEXT_MAJOR_VERSION,           3,       EGL_CONTEXT_MINOR_VERSION, 3, EGL_CONTEXT_OPENGL_PROFILE_MASK,
            EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT, EGL_NONE};
        context = eglCreateContext(display, configuration, EGL_NO_CONTEXT, kAttributes);
        if (context != EGL_NO_CONTEXT) return true;
        problem = eglProblem("the driver has no version 3.3");
        return false;
    }

    bool makeCurrent(std::string& problem) override
    {
        // The interface that contexts are bound to is the thread's own setting.
        if (eglBindAPI(EGL_OPENGL_API) && eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, context)) return true;
        problem = eglProblem("the context cannot be used on this thread");
        return false;
    }

    void doneCurrent() override { eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT); }

private:
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLContext context = EGL_NO_CONTEXT;
};

} // namespace

std::unique_ptr<GlContext> CreateOffscreenContext(std::string& problem)
{
    auto context = std::make_unique<EglContext>();
    if (!context->create(problem)) return nullptr;
    return context;
}

} // namespace host
