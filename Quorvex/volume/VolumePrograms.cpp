#include <Quorvex/volume/VolumePrograms.h>

#include <Quorvex/core/EntryPoints.h>
#include <Quorvex/core/Shader.h>
#include <Quorvex/volume/VolumeData.h>

namespace KOVA::Quorvex {

namespace {

const char* const s_classifying = "uniform sampler1D tff;\t\t\t\t\t\t   "
                                  "uniform sampler3D tex;\t\t\t\t\t\t   "
                                  "void main(void)\t\t\t\t\t\t   "
                                  "{\t\t\t\t\t\t   "
                                  "float fValue = texture3D(tex, gl_TexCoord[0].xyz).x;\t\t\t\t\t\t   "
                                  "gl_FragColor = texture1D(tff, fValue);\t\t\t\t\t\t   "
                                  "}";

const char* const s_shading =
    "uniform sampler1D tff;\t\t\t\t\t\t   "
    "uniform sampler3D tex;\t\t\t\t\t\t   "
    "uniform float fShininess;\t\t\t\t\t\t   "
    "uniform vec3 vVoxelSize;\t\t\t\t\t\t   "
    "uniform vec4 vLightAmbient;\t\t\t\t\t\t   "
    "uniform vec3 vLightDiffuse;\t\t\t\t\t\t   "
    "void main(void)\t\t\t\t\t\t   "
    "{\t\t\t\t\t\t\t  "
    "vec3 grad;\t\t\t\t\t\t\t  "
    "float fValue = texture3D(tex, gl_TexCoord[0].xyz).x;\t\t\t\t\t\t\t  "
    "grad.x = texture3D(tex, gl_TexCoord[0].xyz + vec3(vVoxelSize.x, 0.0, 0.0)).x;\t\t\t\t\t\t\t  "
    "grad.y = texture3D(tex, gl_TexCoord[0].xyz + vec3(0.0, vVoxelSize.y, 0.0)).x;\t\t\t\t\t\t\t  "
    "grad.z = texture3D(tex, gl_TexCoord[0].xyz + vec3(0.0, 0.0, vVoxelSize.z)).x + 0.00000003;\t\t\t\t\t\t\t  "
    "grad.xyz = grad.xyz - vec3(fValue, fValue, fValue);\t\t\t\t\t\t\t  "
    "float fLight = clamp(dot(normalize(grad), vLightDiffuse), 0.0, 1.0);\t\t\t\t\t\t\t  "
    "fLight = clamp(pow(fLight, fShininess), 0.0, 1.0);\t\t\t\t\t\t\t  "
    "vec4 vLight = clamp(vLightAmbient+vec4(fLight, fLight, fLight, 1.0), 0.0, 1.0);\t\t\t\t\t\t\t  "
    "gl_FragColor = vLight*texture1D(tff, fValue);\t\t\t\t\t\t   "
    "}";

const char* const s_vertexShader = "uniform vec4 v1;\t\t\t\t"
                                   "uniform vec4 v2;\t\t\t\t"
                                   "void main(void)\t\t\t\t"
                                   "{\t\t\t\t"
                                   "gl_ClipVertex = gl_ModelViewMatrix*gl_Vertex;\t\t\t\t"
                                   "gl_Position = gl_ModelViewProjectionMatrix*gl_Vertex;\t\t\t\t"
                                   "gl_TexCoord[0] = v1*(gl_Vertex-v2); \t\t\t\t"
                                   "}";

void RequireStatus(GLhandleARB object, GLenum status) {
    GLint succeeded = 0;
    EntryPoints::glGetObjectParameterivARB(object, status, &succeeded);
    if (succeeded == 0) {
        throw "failed"; // NOLINT(hicpp-exception-baseclass): what hosts expect to catch
    }
}

// A GL object that is deleted when its scope is left. Shaders that are attached go with their program.
class ScopedObject {
public:
    explicit ScopedObject(GLhandleARB handle) : m_handle(handle) {}
    ScopedObject(const ScopedObject&) = delete;
    ScopedObject& operator=(const ScopedObject&) = delete;
    ~ScopedObject() {
        if (m_handle != 0) {
            DeleteProgram(m_handle);
        }
    }
    GLhandleARB Get() const { return m_handle; }
    GLhandleARB Release() {
        const GLhandleARB handle = m_handle;
        m_handle = 0;
        return handle;
    }

private:
    GLhandleARB m_handle;
};

void Compile(GLhandleARB shader, const char* source) {
    EntryPoints::glShaderSourceARB(shader, 1, &source, nullptr);
    EntryPoints::glCompileShaderARB(shader);
    RequireStatus(shader, GL_OBJECT_COMPILE_STATUS_ARB);
}

GLhandleARB Link(const char* fragmentSource) {
    const ScopedObject fragment(EntryPoints::glCreateShaderObjectARB(GL_FRAGMENT_SHADER_ARB));
    Compile(fragment.Get(), fragmentSource);
    const ScopedObject vertex(EntryPoints::glCreateShaderObjectARB(GL_VERTEX_SHADER_ARB));
    Compile(vertex.Get(), s_vertexShader);
    ScopedObject program(EntryPoints::glCreateProgramObjectARB());
    EntryPoints::glAttachObjectARB(program.Get(), fragment.Get());
    EntryPoints::glAttachObjectARB(program.Get(), vertex.Get());
    EntryPoints::glLinkProgramARB(program.Get());
    RequireStatus(program.Get(), GL_OBJECT_LINK_STATUS_ARB);
    return program.Release();
}

VolumeProgram Build(const char* fragmentSource) {
    VolumeProgram program;
    program.handle = Link(fragmentSource);
    const auto find = [&program](const char* name) {
        return EntryPoints::glGetUniformLocationARB(program.handle, name);
    };
    program.tex = find("tex");
    program.tff = find("tff");
    program.textureScale = find("v1");
    program.textureOrigin = find("v2");
    program.shininess = find("fShininess");
    program.gradientStep = find("vVoxelSize");
    program.ambient = find("vLightAmbient");
    program.lightDirection = find("vLightDiffuse");
    return program;
}

VolumeProgram s_programs[2]; // classifying, lit

} // namespace

void VolumeProgram::UseTextureScale(const VolumeData& data) const {
    const Vector3f scale = data.GetTex1();
    EntryPoints::glUniform4fARB(textureScale, scale.x, scale.y, scale.z, 1.0F);
}

void VolumeProgram::UseBrick(const VolumeData& data, const Brick& brick) const {
    const Vector3f origin = brick.GetBB0() - data.GetTex2();
    glBindTexture(GL_TEXTURE_3D, brick.GetTextureID());
    EntryPoints::glUniform4fARB(textureOrigin, origin.x, origin.y, origin.z, 1.0F);
}

const VolumeProgram& GetVolumeProgram(bool lit) {
    VolumeProgram& program = s_programs[lit ? 1 : 0];
    if (program.handle == 0) {
        program = Build(lit ? s_shading : s_classifying);
    }
    return program;
}

void ReleaseVolumePrograms() {
    for (VolumeProgram& program : s_programs) {
        if (program.handle != 0) {
            DeleteProgram(program.handle);
        }
    }
    ForgetVolumePrograms();
}

void ForgetVolumePrograms() {
    for (VolumeProgram& program : s_programs) {
        program = VolumeProgram();
    }
}

} // namespace KOVA::Quorvex
