// What the renderer keeps in a graphics context: shader programs, buffers, framebuffers. All of it belongs to the
// context that was current when it was made, which has to be current when it ends.
#pragma once

#define GL_GLEXT_PROTOTYPES
#include <GL/glcorearb.h>
#include <array>
#include <string>

namespace host {

class GlProgram {
public:
    GlProgram() = default;
    GlProgram(const GlProgram&) = delete;
    GlProgram& operator=(const GlProgram&) = delete;
    ~GlProgram();

    /// False, with the compiler's words in `problem`, if the driver refuses the texts.
    bool build(const char* vertexText, const char* fragmentText, std::string& problem);

    void use() const;
    void set(const char* name, float value) const;
    void set(const char* name, GLint value) const;
    void set(const char* name, const std::array<float, 2>& value) const;
    void set(const char* name, const std::array<float, 3>& value) const;
    void set(const char* name, const std::array<float, 4>& value) const;
    /// Columns one behind the other.
    void set(const char* name, const std::array<float, 16>& value) const;

private:
    GLuint program = 0;
};

/// A buffer of bytes that is filled anew for each picture.
class GlBuffer {
public:
    explicit GlBuffer(GLenum target);
    GlBuffer(const GlBuffer&) = delete;
    GlBuffer& operator=(const GlBuffer&) = delete;
    ~GlBuffer();

    void fill(const void* bytes, size_t size) const;
    void bind() const;

private:
    GLenum target;
    GLuint buffer = 0;
};

/// Colour and depth to draw into, with several samples a pixel or one.
class GlCanvas {
public:
    GlCanvas() = default;
    GlCanvas(const GlCanvas&) = delete;
    GlCanvas& operator=(const GlCanvas&) = delete;
    ~GlCanvas() { free(); }

    /// Keeps what is there where it fits. False if the driver cannot.
    bool resize(GLsizei wantedWidth, GLsizei wantedHeight, GLsizei wantedSamples, bool withDepth);
    GLuint framebuffer() const { return frame; }

private:
    void free();

    GLuint frame = 0, colors = 0, depth = 0;
    GLsizei width = 0, height = 0, samples = 0;
};

} // namespace host
