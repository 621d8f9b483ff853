#include <Quorvex/core/EntryPoints.h>

#include <cstring>
#include <iterator>

#include <Quorvex/core/Extensions.h>

namespace KOVA::Quorvex {

namespace {

struct NamedProcedure {
    const char* name;
    platform::GlProcedure procedure = nullptr;
};

NamedProcedure s_openGL13[] = {
    {"glActiveTexture"},           {"glClientActiveTexture"},     {"glMultiTexCoord1d"},
    {"glMultiTexCoord1dv"},        {"glMultiTexCoord1f"},         {"glMultiTexCoord1fv"},
    {"glMultiTexCoord1i"},         {"glMultiTexCoord1iv"},        {"glMultiTexCoord1s"},
    {"glMultiTexCoord1sv"},        {"glMultiTexCoord2d"},         {"glMultiTexCoord2dv"},
    {"glMultiTexCoord2f"},         {"glMultiTexCoord2fv"},        {"glMultiTexCoord2i"},
    {"glMultiTexCoord2iv"},        {"glMultiTexCoord2s"},         {"glMultiTexCoord2sv"},
    {"glMultiTexCoord3d"},         {"glMultiTexCoord3dv"},        {"glMultiTexCoord3f"},
    {"glMultiTexCoord3fv"},        {"glMultiTexCoord3i"},         {"glMultiTexCoord3iv"},
    {"glMultiTexCoord3s"},         {"glMultiTexCoord3sv"},        {"glMultiTexCoord4d"},
    {"glMultiTexCoord4dv"},        {"glMultiTexCoord4f"},         {"glMultiTexCoord4fv"},
    {"glMultiTexCoord4i"},         {"glMultiTexCoord4iv"},        {"glMultiTexCoord4s"},
    {"glMultiTexCoord4sv"},        {"glLoadTransposeMatrixf"},    {"glLoadTransposeMatrixd"},
    {"glMultTransposeMatrixf"},    {"glMultTransposeMatrixd"},    {"glSampleCoverage"},
    {"glCompressedTexImage3D"},    {"glCompressedTexImage2D"},    {"glCompressedTexImage1D"},
    {"glCompressedTexSubImage3D"}, {"glCompressedTexSubImage2D"}, {"glCompressedTexSubImage1D"},
    {"glGetCompressedTexImage"}};

NamedProcedure s_texture3D[] = {{"glTexImage3DEXT"}};

NamedProcedure s_shader[] = {{"glDeleteObjectARB"},
                             {"glGetHandleARB"},
                             {"glDetachObjectARB"},
                             {"glCreateShaderObjectARB"},
                             {"glShaderSourceARB"},
                             {"glCompileShaderARB"},
                             {"glCreateProgramObjectARB"},
                             {"glAttachObjectARB"},
                             {"glLinkProgramARB"},
                             {"glUseProgramObjectARB"},
                             {"glValidateProgramARB"},
                             {"glUniform1fARB"},
                             {"glUniform2fARB"},
                             {"glUniform3fARB"},
                             {"glUniform4fARB"},
                             {"glUniform1iARB"},
                             {"glUniform2iARB"},
                             {"glUniform3iARB"},
                             {"glUniform4iARB"},
                             {"glUniform1fvARB"},
                             {"glUniform2fvARB"},
                             {"glUniform3fvARB"},
                             {"glUniform4fvARB"},
                             {"glUniform1ivARB"},
                             {"glUniform2ivARB"},
                             {"glUniform3ivARB"},
                             {"glUniform4ivARB"},
                             {"glUniformMatrix2fvARB"},
                             {"glUniformMatrix3fvARB"},
                             {"glUniformMatrix4fvARB"},
                             {"glGetObjectParameterfvARB"},
                             {"glGetObjectParameterivARB"},
                             {"glGetInfoLogARB"},
                             {"glGetAttachedObjectsARB"},
                             {"glGetUniformLocationARB"},
                             {"glGetActiveUniformARB"},
                             {"glGetUniformfvARB"},
                             {"glGetUniformivARB"},
                             {"glGetShaderSourceARB"},
                             {"glBindAttribLocationARB"},
                             {"glGetActiveAttribARB"},
                             {"glGetAttribLocationARB"},
                             {"glBlendEquationEXT"}};

struct Group {
    NamedProcedure* begin;
    NamedProcedure* end;
};

enum GroupIndex { OPENGL_1_3, TEXTURE_3D, SHADER };
const Group s_groups[] = {{std::begin(s_openGL13), std::end(s_openGL13)},
                          {std::begin(s_texture3D), std::end(s_texture3D)},
                          {std::begin(s_shader), std::end(s_shader)}};

void LookUp(GroupIndex group) {
    for (NamedProcedure* entry = s_groups[group].begin; entry != s_groups[group].end; ++entry) {
        entry->procedure = platform::GetGlProcedure(entry->name);
    }
}

template <class Function> void Take(Function*& pointer, const char* name) {
    pointer = reinterpret_cast<Function*>(EntryPoints::Find(name));
}

} // namespace

PFNGLACTIVETEXTUREPROC EntryPoints::glActiveTexture = nullptr;
PFNGLTEXIMAGE3DEXTPROC EntryPoints::glTexImage3DEXT = nullptr;
PFNGLDELETEOBJECTARBPROC EntryPoints::glDeleteObjectARB = nullptr;
PFNGLGETHANDLEARBPROC EntryPoints::glGetHandleARB = nullptr;
PFNGLCREATESHADEROBJECTARBPROC EntryPoints::glCreateShaderObjectARB = nullptr;
PFNGLSHADERSOURCEARBPROC EntryPoints::glShaderSourceARB = nullptr;
PFNGLCOMPILESHADERARBPROC EntryPoints::glCompileShaderARB = nullptr;
PFNGLCREATEPROGRAMOBJECTARBPROC EntryPoints::glCreateProgramObjectARB = nullptr;
PFNGLATTACHOBJECTARBPROC EntryPoints::glAttachObjectARB = nullptr;
PFNGLLINKPROGRAMARBPROC EntryPoints::glLinkProgramARB = nullptr;
PFNGLUSEPROGRAMOBJECTARBPROC EntryPoints::glUseProgramObjectARB = nullptr;
PFNGLUNIFORM1FARBPROC EntryPoints::glUniform1fARB = nullptr;
PFNGLUNIFORM3FARBPROC EntryPoints::glUniform3fARB = nullptr;
PFNGLUNIFORM4FARBPROC EntryPoints::glUniform4fARB = nullptr;
PFNGLUNIFORM1IARBPROC EntryPoints::glUniform1iARB = nullptr;
PFNGLGETOBJECTPARAMETERIVARBPROC EntryPoints::glGetObjectParameterivARB = nullptr;
PFNGLGETINFOLOGARBPROC EntryPoints::glGetInfoLogARB = nullptr;
PFNGLGETUNIFORMLOCATIONARBPROC EntryPoints::glGetUniformLocationARB = nullptr;
PFNGLBLENDEQUATIONEXTPROC EntryPoints::glBlendEquationEXT = nullptr;

platform::GlProcedure EntryPoints::Find(const char* name) {
    for (const Group& group : s_groups) {
        for (NamedProcedure* entry = group.begin; entry != group.end; ++entry) {
            if (std::strcmp(entry->name, name) == 0) {
                return entry->procedure;
            }
        }
    }
    return nullptr;
}

void initOpenGL1_3Extensions() {
    LookUp(OPENGL_1_3);
    Take(EntryPoints::glActiveTexture, "glActiveTexture");
}

void init3DTextureExtension() {
    LookUp(TEXTURE_3D);
    Take(EntryPoints::glTexImage3DEXT, "glTexImage3DEXT");
}

void initShader() {
    LookUp(SHADER);
    Take(EntryPoints::glDeleteObjectARB, "glDeleteObjectARB");
    Take(EntryPoints::glGetHandleARB, "glGetHandleARB");
    Take(EntryPoints::glCreateShaderObjectARB, "glCreateShaderObjectARB");
    Take(EntryPoints::glShaderSourceARB, "glShaderSourceARB");
    Take(EntryPoints::glCompileShaderARB, "glCompileShaderARB");
    Take(EntryPoints::glCreateProgramObjectARB, "glCreateProgramObjectARB");
    Take(EntryPoints::glAttachObjectARB, "glAttachObjectARB");
    Take(EntryPoints::glLinkProgramARB, "glLinkProgramARB");
    Take(EntryPoints::glUseProgramObjectARB, "glUseProgramObjectARB");
    Take(EntryPoints::glUniform1fARB, "glUniform1fARB");
    Take(EntryPoints::glUniform3fARB, "glUniform3fARB");
    Take(EntryPoints::glUniform4fARB, "glUniform4fARB");
    Take(EntryPoints::glUniform1iARB, "glUniform1iARB");
    Take(EntryPoints::glGetObjectParameterivARB, "glGetObjectParameterivARB");
    Take(EntryPoints::glGetInfoLogARB, "glGetInfoLogARB");
    Take(EntryPoints::glGetUniformLocationARB, "glGetUniformLocationARB");
    Take(EntryPoints::glBlendEquationEXT, "glBlendEquationEXT");
}

} // namespace KOVA::Quorvex
