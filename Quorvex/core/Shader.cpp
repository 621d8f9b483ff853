#include <Quorvex/core/Shader.h>

#include <Quorvex/core/EntryPoints.h>

namespace KOVA::Quorvex {

namespace {

void AttachShader(GLhandleARB program, GLenum type, const char* source) {
    const GLhandleARB shader = EntryPoints::glCreateShaderObjectARB(type);
    EntryPoints::glShaderSourceARB(shader, 1, &source, nullptr);
    EntryPoints::glCompileShaderARB(shader);
    EntryPoints::glAttachObjectARB(program, shader);
    EntryPoints::glDeleteObjectARB(shader); // goes when the program goes
}

} // namespace

unsigned int BuildProgram(const char* vertexSource, const char* fragmentSource) {
    const GLhandleARB program = EntryPoints::glCreateProgramObjectARB();
    AttachShader(program, GL_FRAGMENT_SHADER_ARB, fragmentSource);
    if (vertexSource != nullptr) {
        AttachShader(program, GL_VERTEX_SHADER_ARB, vertexSource);
    }
    EntryPoints::glLinkProgramARB(program);
    return program;
}

void UseProgram(unsigned int program) {
    if (EntryPoints::glUseProgramObjectARB != nullptr) {
        EntryPoints::glUseProgramObjectARB(program);
    }
}

unsigned int GetCurrentProgram() {
    return EntryPoints::glGetHandleARB != nullptr ? EntryPoints::glGetHandleARB(GL_PROGRAM_OBJECT_ARB) : 0;
}

void DeleteProgram(unsigned int program) {
    if (EntryPoints::glDeleteObjectARB != nullptr) {
        EntryPoints::glDeleteObjectARB(program);
    }
}

void SelectTextureUnit(unsigned int unit) {
    if (EntryPoints::glActiveTexture != nullptr) {
        EntryPoints::glActiveTexture(GL_TEXTURE0 + unit);
    }
}

} // namespace KOVA::Quorvex
