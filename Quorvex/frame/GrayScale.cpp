#include <Quorvex/core/EntryPoints.h>
#include <Quorvex/core/Facade.h>
#include <Quorvex/core/Shader.h>
#include <Quorvex/frame/RenderFrame.h>

namespace KOVA::Quorvex {

namespace {

const char* const s_fragmentShader = "uniform sampler2D tex;\t\t"
                                     "void main(void)\t\t"
                                     "{\t\t"
                                     "vec4 v = texture2D(tex, gl_TexCoord[0].xy);\t\t"
                                     "float f = 0.3333333*(v.x+v.y+v.z);\t\t"
                                     "gl_FragColor = vec4(f, f, f, v.w);\t\t"
                                     "}";

} // namespace

void RenderFrame::GrayScaleRendering_SwitchOn() {
    if (!Quorvex::CheckQXExtension(CAPABILITY_SHADER)) {
        return;
    }
    if (m_grayScaleProgram == nullptr) {
        const auto deleteProgram = [](const unsigned int* program) {
            DeleteProgram(*program);
            delete program;
        };
        m_grayScaleProgram.reset(new unsigned int(BuildProgram(nullptr, s_fragmentShader)), deleteProgram);
    }
    UseProgram(*m_grayScaleProgram);
    EntryPoints::glUniform1iARB(EntryPoints::glGetUniformLocationARB(*m_grayScaleProgram, "tex"), 0);
}

void RenderFrame::GrayScaleRendering_SwitchOff() {
    UseProgram(0);
}

} // namespace KOVA::Quorvex
