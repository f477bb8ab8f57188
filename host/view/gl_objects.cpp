#include "view/gl_objects.h"

namespace host {
namespace {

GLuint compile(GLenum kind, const char* text, std::string& problem)
{
    const GLuint shader = glCreateShader(kind);
    glShaderSource(shader, 1, &text, nullptr);
    glCompileShader(shader);
    GLint done = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &done);
    if (done) return shader;

    std::array<char, 1000> words{};
    glGetShaderInfoLog(shader, static_cast<GLsizei>(words.size()), nullptr, words.data());
    problem = std::string("the OpenGL driver refuses a shader: ") + words.data();
    glDeleteShader(shader);
    return 0;
}

} // namespace

GlProgram::~GlProgram()
{
    if (program) glDeleteProgram(program);
}

bool GlProgram::build(const char* vertexText, const char* fragmentText, std::string& problem)
{
    const GLuint vertex = compile(GL_VERTEX_SHADER, vertexText, problem);
    const GLuint fragment = vertex ? compile(GL_FRAGMENT_SHADER, fragmentText, problem) : 0;
    GLint done = GL_FALSE;
    if (fragment) {
        program = glCreateProgram();
        glAttachShader(program, vertex);
        glAttachShader(program, fragment);
        glLinkProgram(program);
        glGetProgramiv(program, GL_LINK_STATUS, &done);
        if (!done) problem = "the OpenGL driver cannot link a shader";
    }
    if (vertex) glDeleteShader(vertex);
    if (fragment) glDeleteShader(fragment);
    return done;
}

void GlProgram::use() const
{
    glUseProgram(program);
}

void GlProgram::set(const char* name, float value) const
{
    glUniform1f(glGetUniformLocation(program, name), value);
}

void GlProgram::set(const char* name, GLint value) const
{
    glUniform1i(glGetUniformLocation(program, name), value);
}

void GlProgram::set(const char* name, const std::array<float, 2>& value) const
{
    glUniform2fv(glGetUniformLocation(program, name), 1, value.data());
}

void GlProgram::set(const char* name, const std::array<float, 3>& value) const
{
    glUniform3fv(glGetUniformLocation(program, name), 1, value.data());
}

void GlProgram::set(const char* name, const std::array<float, 4>& value) const
{
    glUniform4fv(glGetUniformLocation(program, name), 1, value.data());
}

void GlProgram::set(const char* name, const std::array<float, 16>& value) const
{
    glUniformMatrix4fv(glGetUniformLocation(program, name), 1, GL_FALSE, value.data());
}

GlBuffer::GlBuffer(GLenum bufferTarget) : target(bufferTarget)
{
    glGenBuffers(1, &buffer);
}

GlBuffer::~GlBuffer()
{
    glDeleteBuffers(1, &buffer);
}

void GlBuffer::fill(const void* bytes, size_t size) const
{
    bind();
    glBufferData(target, static_cast<GLsizeiptr>(size), bytes, GL_STREAM_DRAW);
}

void GlBuffer::bind() const
{
    glBindBuffer(target, buffer);
}

bool GlCanvas::resize(GLsizei wantedWidth, GLsizei wantedHeight, GLsizei wantedSamples, bool withDepth)
{
    if (frame && width == wantedWidth && height == wantedHeight && samples == wantedSamples &&
        withDepth == (depth != 0))
        return true;
    free();
    width = wantedWidth;
    height = wantedHeight;
    samples = wantedSamples;

    glGenFramebuffers(1, &frame);
    glBindFramebuffer(GL_FRAMEBUFFER, frame);
    glGenRenderbuffers(1, &colors);
    glBindRenderbuffer(GL_RENDERBUFFER, colors);
    glRenderbufferStorageMultisample(GL_RENDERBUFFER, samples, GL_RGBA8, width, height);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, colors);
    if (withDepth) {
        glGenRenderbuffers(1, &depth);
        glBindRenderbuffer(GL_RENDERBUFFER, depth);
        glRenderbufferStorageMultisample(GL_RENDERBUFFER, samples, GL_DEPTH_COMPONENT24, width, height);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, depth);
    }
    if (glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE) return true;
    free();
    return false;
}

void GlCanvas::free()
{
    if (depth) glDeleteRenderbuffers(1, &depth);
    if (colors) glDeleteRenderbuffers(1, &colors);
    if (frame) glDeleteFramebuffers(1, &frame);
    frame = colors = depth = 0;
}

} // namespace host
