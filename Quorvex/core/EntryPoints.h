#pragma once

#include <Quorvex/core/OpenGL.h>
#include <Quorvex/platform/Gl.h>

namespace KOVA::Quorvex {

// Looks up one entry point; null when the driver does not export it. A context must be current.
template <class Function> void LoadEntryPoint(Function*& pointer, const char* name) {
    pointer = reinterpret_cast<Function*>(platform::GetGlProcedure(name));
}

// The entry points beyond OpenGL 1.1 that no single class owns, filled by initOpenGL1_3Extensions,
// init3DTextureExtension and initShader. Only those that the library calls have a name here; the others of their groups
// are looked up to learn what the driver exports (see EntryPoints.cpp).
struct EntryPoints {
    static PFNGLACTIVETEXTUREPROC glActiveTexture;

    static PFNGLTEXIMAGE3DEXTPROC glTexImage3DEXT;

    static PFNGLDELETEOBJECTARBPROC glDeleteObjectARB;
    static PFNGLGETHANDLEARBPROC glGetHandleARB;
    static PFNGLCREATESHADEROBJECTARBPROC glCreateShaderObjectARB;
    static PFNGLSHADERSOURCEARBPROC glShaderSourceARB;
    static PFNGLCOMPILESHADERARBPROC glCompileShaderARB;
    static PFNGLCREATEPROGRAMOBJECTARBPROC glCreateProgramObjectARB;
    static PFNGLATTACHOBJECTARBPROC glAttachObjectARB;
    static PFNGLLINKPROGRAMARBPROC glLinkProgramARB;
    static PFNGLUSEPROGRAMOBJECTARBPROC glUseProgramObjectARB;
    static PFNGLUNIFORM1FARBPROC glUniform1fARB;
    static PFNGLUNIFORM3FARBPROC glUniform3fARB;
    static PFNGLUNIFORM4FARBPROC glUniform4fARB;
    static PFNGLUNIFORM1IARBPROC glUniform1iARB;
    static PFNGLGETOBJECTPARAMETERIVARBPROC glGetObjectParameterivARB;
    static PFNGLGETINFOLOGARBPROC glGetInfoLogARB;
    static PFNGLGETUNIFORMLOCATIONARBPROC glGetUniformLocationARB;
    static PFNGLBLENDEQUATIONEXTPROC glBlendEquationEXT;

    // One entry point of the three groups by its name, used or not; null when it was not found or is not of them.
    static platform::GlProcedure Find(const char* name);
};

} // namespace KOVA::Quorvex
