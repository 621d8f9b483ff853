#include <Quorvex/mesh/XRayPrograms.h>

#include <Quorvex/core/Shader.h>

namespace KOVA::Quorvex {

namespace {

// Every fragment adds a quarter of its eye-space depth, front faces with the opposite sign of back faces, so that the
// sum along a line of sight is what the surfaces enclose.
const char* const s_vertexShader = "varying float fDepth; \t\t\t\t\t\t\t"
                                   "void main(void)\t\t\t\t\t\t\t"
                                   "{\t\t\t\t\t\t\t"
                                   "fDepth = (gl_ModelViewMatrix*gl_Vertex).z; \t\t\t\t\t\t\t"
                                   "gl_ClipVertex = gl_ModelViewMatrix*gl_Vertex;\t\t\t\t\t\t\t"
                                   "gl_Position = gl_ModelViewProjectionMatrix*gl_Vertex;\t\t\t\t\t\t\t"
                                   "}";

const char* const s_fragmentShader = "varying float fDepth;\t\t\t\t\t\t\t\t\t\t\t\t"
                                     "uniform sampler2D tex;\t\t\t\t\t\t\t\t\t   "
                                     "void main(void)\t\t\t\t\t\t\t\t\t   "
                                     "{\t\t\t\t\t\t\t\t\t   "
                                     "if(gl_FrontFacing)\t\t\t\t\t\t\t\t\t\t"
                                     "gl_FragColor = vec4(vec3(-fDepth*0.25),1.0);\t\t\t\t\t\t\t\t\t\t"
                                     "else\t\t\t\t\t\t\t\t\t\t"
                                     "gl_FragColor = vec4(vec3(+fDepth*0.25),1.0);\t\t\t\t\t\t\t\t\t   "
                                     "}";

const char* const s_fragmentShaderInverseNormals = "varying float fDepth;\t\t\t\t\t\t\t\t\t\t\t\t"
                                                   "uniform sampler2D tex;\t\t\t\t\t\t\t\t\t   "
                                                   "void main(void)\t\t\t\t\t\t\t\t\t   "
                                                   "{\t\t\t\t\t\t\t\t\t   "
                                                   "if(!gl_FrontFacing)\t\t\t\t\t\t\t\t\t\t"
                                                   "gl_FragColor = vec4(vec3(-fDepth*0.25),1.0);\t\t\t\t\t\t\t\t\t\t"
                                                   "else\t\t\t\t\t\t\t\t\t\t"
                                                   "gl_FragColor = vec4(vec3(+fDepth*0.25),1.0);\t\t\t\t\t\t\t\t\t   "
                                                   "}";

} // namespace

unsigned int BuildXRayProgram(bool inverseNormals) {
    return BuildProgram(s_vertexShader, inverseNormals ? s_fragmentShaderInverseNormals : s_fragmentShader);
}

} // namespace KOVA::Quorvex
