#include <Quorvex/mesh/MeshRenderer.h>

#include <cassert>

#include <Quorvex/core/EntryPoints.h>
#include <Quorvex/core/ExtensionTokens.h>
#include <Quorvex/core/Facade.h>
#include <Quorvex/core/GlThread.h>
#include <Quorvex/core/Shader.h>
#include <Quorvex/mesh/Mesh.h>
#include <Quorvex/mesh/XRayPrograms.h>

namespace KOVA::Quorvex {

bool MeshRenderer::s_bExtensions = false;
unsigned int MeshRenderer::s_XRayShader = 0;
unsigned int MeshRenderer::s_XRayShaderInverseNormals = 0;
void (*MeshRenderer::glBindBufferARB)(unsigned int, unsigned int) = nullptr;

namespace {

void SetClientState(GLenum state, bool enabled) {
    if (enabled) {
        glEnableClientState(state);
    } else {
        glDisableClientState(state);
    }
}

// Three segments from a corner of the box, each a quarter of the edge long.
void DrawBoxCorner(const Vector3f& own, const Vector3f& opposite) {
    const Vector3f quarter = own * 0.75F + opposite * 0.25F;
    const Vector3f ends[] = {{quarter.x, own.y, own.z}, {own.x, quarter.y, own.z}, {own.x, own.y, quarter.z}};
    for (const Vector3f& end : ends) {
        glVertex3f(own.x, own.y, own.z);
        glVertex3f(end.x, end.y, end.z);
    }
}

void DrawBoundingBoxMarks(const MeshData& data, const MeshAttribute& attribute) {
    const float e = RenderObjectAttribute::GetBoundingBoxRescale();
    const Vector3f corners[] = {data.GetBB0() * (1.0F + e) - data.GetBB1() * e,
                                data.GetBB1() * (1.0F + e) - data.GetBB0() * e};
    const ColorRGBA color = attribute.GetBoundingBoxColor();
    glColor3f(color.r, color.g, color.b);
    glBegin(GL_LINES);
    for (int i = 0; i < 8; ++i) {
        const int x = i & 1;
        const int y = (i >> 1) & 1;
        const int z = i >> 2;
        DrawBoxCorner({corners[x].x, corners[y].y, corners[z].z},
                      {corners[1 - x].x, corners[1 - y].y, corners[1 - z].z});
    }
    glEnd();
}

void SetMaterial(const MeshAttribute& attribute, bool hasColors) {
    const float specularity = attribute.GetSpecularity();
    const float specular[] = {specularity, specularity, specularity, 1.0F};
    const float emission[] = {0.0F, 0.0F, 0.0F, 1.0F};
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, attribute.GetShininess());
    glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, specular);
    glMaterialfv(GL_FRONT_AND_BACK, GL_EMISSION, emission);
    if (hasColors) {
        glColorMaterial(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE);
        glEnable(GL_COLOR_MATERIAL);
        return;
    }
    glDisable(GL_COLOR_MATERIAL); // a mesh with colours may have been drawn before
    const ColorRGBA color = attribute.GetColor();
    const ColorRGBA ambient = color * 0.2F;
    const ColorRGBA diffuse = color * 0.8F;
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT, ambient);
    glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, diffuse);
}

void SetLightIntensity(float level) {
    const float color[] = {level, level, level, 1.0F};
    glLightfv(GL_LIGHT0, GL_DIFFUSE, color);
    glLightfv(GL_LIGHT0, GL_SPECULAR, color);
}

// Pushes filled polygons back, so that outlines drawn at the same depth afterwards are seen.
template <class Draw> void DrawPushedBack(const Draw& draw) {
    glPolygonOffset(1.0F, 1.0F);
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    draw();
    glDisable(GL_POLYGON_OFFSET_FILL);
}

template <class Draw> void DrawWithPolygonMode(GLenum mode, const Draw& draw) {
    glPolygonMode(GL_FRONT_AND_BACK, mode);
    draw();
}

template <class Draw> void DrawSurfaceWireframe(const Draw& draw) {
    SetLightIntensity(1.0F);
    DrawPushedBack(draw);
    SetLightIntensity(0.75F);
    DrawWithPolygonMode(GL_LINE, draw);
}

template <class Draw> void DrawHiddenLine(const Draw& draw) {
    glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
    DrawPushedBack(draw);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    DrawWithPolygonMode(GL_LINE, draw);
}

template <class Draw> void DrawXRay(unsigned int& program, bool inverseNormals, const Draw& draw) {
    if (program == 0) {
        program = BuildXRayProgram(inverseNormals);
    }
    UseProgram(program);
    glDepthMask(GL_FALSE);
    glDisable(GL_DEPTH_TEST);
    glBlendFunc(GL_ONE, GL_ONE);
    DrawWithPolygonMode(GL_FILL, draw);
    glEnable(GL_DEPTH_TEST);
    glDepthMask(GL_TRUE);
    UseProgram(0);
}

template <class Draw> void DrawPoints(float size, const Draw& draw) {
    glPointSize(size);
    DrawWithPolygonMode(GL_POINT, draw);
    glPointSize(1.0F);
}

// Nothing is drawn then: only where the shapes are is asked for.
bool IsSelecting() {
    GLint mode = GL_RENDER;
    glGetIntegerv(GL_RENDER_MODE, &mode);
    return mode == GL_SELECT;
}

// How a mesh is selected: filled surfaces contain their outlines. 0 when nothing of it is drawn.
GLenum PolygonModeToSelect(MeshAttribute::RenderMode mode) {
    switch (mode) {
    case MeshAttribute::RENDER_SURFACE:
    case MeshAttribute::RENDER_SURFACE_WIREFRAME:
    case MeshAttribute::RENDER_HIDDEN_LINE:
    case MeshAttribute::RENDER_XRAY:
        return GL_FILL;
    case MeshAttribute::RENDER_WIREFRAME:
        return GL_LINE;
    case MeshAttribute::RENDER_POINTS:
        return GL_POINT;
    default:
        return 0;
    }
}

// A mode that the driver cannot draw is replaced by the filled surface.
MeshAttribute::RenderMode SupportedMode(MeshAttribute::RenderMode mode) {
    const bool possible = mode != MeshAttribute::RENDER_XRAY || Quorvex::CheckQXExtension(CAPABILITY_SHADER);
    return possible ? mode : MeshAttribute::RENDER_SURFACE;
}

void CleanUpState() {
    glDisable(GL_BLEND);
    glDisableClientState(GL_INDEX_ARRAY);
    glDisable(GL_LIGHTING);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glLineWidth(1.0F);
}

} // namespace

bool MeshRenderer::Init() {
    const auto* extensions = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
    if (extensions == nullptr || !AreExtensionTokens(extensions, "GL_ARB_vertex_buffer_object")) {
        return true;
    }
    LoadEntryPoint(glBindBufferARB, "glBindBufferARB");
    if (glBindBufferARB != nullptr && MeshData::InitExtensions()) {
        s_bExtensions = true;
    }
    return true;
}

void MeshRenderer::Release() {
    if (s_XRayShader != 0) {
        UseProgram(0);
        DeleteProgram(s_XRayShader);
        s_XRayShader = 0;
    }
}

void MeshRenderer::BindBuffer(unsigned int target, unsigned int buffer) {
    if (glBindBufferARB != nullptr) {
        glBindBufferARB(target, buffer);
    }
}

// What glColorPointer and its like are given: the start of the bound buffer, or the client array with no buffer bound.
const void* MeshRenderer::BindArray(unsigned int buffer, const void* array) {
    BindBuffer(GL_ARRAY_BUFFER_ARB, buffer);
    return buffer != 0 ? nullptr : array;
}

bool MeshRenderer::SetUpColors(const MeshData& data, bool wanted) {
    // A buffer without its array is not used: there is no telling whether it is still what the mesh should look like.
    const bool enabled = wanted && data.m_colorArray != nullptr;
    if (enabled) {
        const void* pointer = BindArray(data.m_colorBuffer, data.m_colorArray);
        glColorPointer(static_cast<GLint>(data.m_colorComponents), GL_FLOAT, 0, pointer);
    }
    SetClientState(GL_COLOR_ARRAY, enabled);
    return enabled;
}

void MeshRenderer::SetUpArrays(const MeshData& data, bool lit) {
    const bool hasNormals = lit && (data.m_normalBuffer != 0 || data.m_normalArray != nullptr);
    if (hasNormals) {
        glNormalPointer(GL_FLOAT, 0, BindArray(data.m_normalBuffer, data.m_normalArray));
        glEnable(GL_LIGHTING);
    } else {
        glDisable(GL_LIGHTING);
    }
    SetClientState(GL_NORMAL_ARRAY, hasNormals);

    const bool hasVertices = data.m_vertexBuffer != 0 || data.m_vertexArray != nullptr;
    if (hasVertices) {
        glVertexPointer(3, GL_FLOAT, 0, BindArray(data.m_vertexBuffer, data.m_vertexArray));
    }
    SetClientState(GL_VERTEX_ARRAY, hasVertices);
    BindBuffer(GL_ARRAY_BUFFER_ARB, 0);
}

void MeshRenderer::DrawElements(const MeshData& data) {
    if (data.m_numIndices == 0) {
        glDrawArrays(data.m_mode, 0, static_cast<GLsizei>(data.m_numVertices));
        return;
    }
    // A duplicated index buffer may be shorter than the list of indices: then the array is drawn from, or as much as
    // the buffer holds when there is no array.
    const bool fromBuffer = data.m_indexBuffer != 0 && (data.IndexBufferIsComplete() || data.m_indexArray == nullptr);
    const unsigned int count =
        fromBuffer && !data.IndexBufferIsComplete() ? data.m_indexBufferCount : data.m_numIndices;
    if (!fromBuffer && data.m_indexArray == nullptr) {
        return;
    }
    BindBuffer(GL_ELEMENT_ARRAY_BUFFER_ARB, fromBuffer ? data.m_indexBuffer : 0);
    glDrawElements(data.m_mode, static_cast<GLsizei>(count), GL_UNSIGNED_INT, fromBuffer ? nullptr : data.m_indexArray);
    BindBuffer(GL_ELEMENT_ARRAY_BUFFER_ARB, 0);
}

void MeshRenderer::DrawInMode(const MeshData& data, const MeshAttribute& attribute, bool inverseNormals) {
    const auto draw = [&data] {
        if (data.GetNumVertices() != 0) {
            DrawElements(data);
        }
    };
    switch (SupportedMode(attribute.GetRenderMode())) {
    case MeshAttribute::RENDER_SURFACE:
        DrawWithPolygonMode(GL_FILL, draw);
        break;
    case MeshAttribute::RENDER_WIREFRAME:
        DrawWithPolygonMode(GL_LINE, draw);
        break;
    case MeshAttribute::RENDER_SURFACE_WIREFRAME:
        DrawSurfaceWireframe(draw);
        break;
    case MeshAttribute::RENDER_HIDDEN_LINE:
        DrawHiddenLine(draw);
        break;
    case MeshAttribute::RENDER_XRAY:
        DrawXRay(inverseNormals ? s_XRayShaderInverseNormals : s_XRayShader, inverseNormals, draw);
        break;
    case MeshAttribute::RENDER_POINTS:
        DrawPoints(attribute.GetLineWidth(), draw);
        break;
    default:
        break;
    }
}

// Colours and light would take longer than the selection itself.
void MeshRenderer::Select(const MeshData& data, unsigned int polygonMode) {
    if (polygonMode == 0 || data.GetNumVertices() == 0) {
        return;
    }
    SetUpColors(data, false);
    SetUpArrays(data, false);
    DrawWithPolygonMode(polygonMode, [&data] { DrawElements(data); });
    CleanUpState();
}

void MeshRenderer::Render(RenderFrame& /*frame*/, bool /*quality*/, const Mesh* mesh, bool inverseNormals) {
    assert(IsGlThread());
    const MeshData& data = mesh->GetData();
    const MeshAttribute& attribute = mesh->GetAttribute();
    if (attribute.BoundingBoxIsVisible()) {
        DrawBoundingBoxMarks(data, attribute);
    }
    if (IsSelecting()) {
        Select(data, PolygonModeToSelect(attribute.GetRenderMode()));
        return;
    }
    SetUpColors(data, attribute.GetRenderMode() != MeshAttribute::RENDER_XRAY);
    SetUpArrays(data, true);

    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 1);
    glLineWidth(attribute.GetLineWidth());
    glColor4fv(attribute.GetColor());
    SetMaterial(attribute, data.m_colorArray != nullptr || data.m_colorBuffer != 0);

    DrawInMode(data, attribute, inverseNormals);
    CleanUpState();
}

} // namespace KOVA::Quorvex
