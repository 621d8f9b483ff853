#include "PlainSlices.h"

#include <algorithm>
#include <cmath>

#include <Quorvex/core/EntryPoints.h>
#include <Quorvex/core/Shader.h>
#include <Quorvex/volume/VolumePrograms.h>

namespace KOVA::Quorvex::test {

namespace {

using Plane = Vector4d; // x*X + y*Y + z*Z + w = 0

double At(const Plane& p, const Vector3f& v) {
    return p.x * v.x + p.y * v.y + p.z * v.z + p.w;
}

Vector3f Corner(const Brick& brick, int i) {
    const Vector3f corners[] = {brick.GetBB0(), brick.GetBB1()};
    return {corners[i & 1].x, corners[(i >> 1) & 1].y, corners[i >> 2].z};
}

// Where the plane crosses edges of the box, in order around the middle.
std::vector<Vector3f> Cut(const Plane& plane, const Brick& brick) {
    std::vector<Vector3f> points;
    Vector3f middle(0, 0, 0);
    for (int i = 0; i < 8; ++i) {
        for (const int axis : {1, 2, 4}) {
            const Vector3f a = Corner(brick, i);
            const Vector3f b = Corner(brick, i | axis);
            const double t = At(plane, a) / (At(plane, a) - At(plane, b));
            if ((i & axis) == 0 && t > 0.0 && t < 1.0) {
                points.push_back(a + (b - a) * static_cast<float>(t));
                middle += points.back();
            }
        }
    }
    if (points.size() < 3) {
        return {};
    }
    middle /= static_cast<float>(points.size());
    const Vector3f n(static_cast<float>(plane.x), static_cast<float>(plane.y), static_cast<float>(plane.z));
    const Vector3f u = Normalize(points[0] - middle);
    const Vector3f v = CrossProduct(Normalize(n), u);
    std::sort(points.begin(), points.end(), [&](const Vector3f& a, const Vector3f& b) {
        return std::atan2(DotProduct(a - middle, v), DotProduct(a - middle, u)) <
               std::atan2(DotProduct(b - middle, v), DotProduct(b - middle, u));
    });
    return points;
}

void DrawPolygon(const std::vector<Vector3f>& points) {
    glBegin(GL_POLYGON);
    for (const Vector3f& p : points) {
        glVertex3f(p.x, p.y, p.z);
    }
    glEnd();
}

void LoadTable(const ColorRGBA* table, float exponent) {
    std::vector<ColorRGBA> corrected(table, table + 256);
    for (ColorRGBA& color : corrected) {
        color.a = 1.0F - std::pow(1.0F - color.a, exponent);
    }
    SelectTextureUnit(1);
    glBindTexture(GL_TEXTURE_1D, VolumeRenderer::m_transferTexture);
    glTexImage1D(GL_TEXTURE_1D, 0, GL_RGBA16F_ARB, 256, 0, GL_RGBA, GL_FLOAT, corrected.data());
    SelectTextureUnit(0);
}

std::vector<Brick> BackToFront(VolumeData& data, const View& view) {
    const double* m = view.GetModelviewMatrix();
    const auto distance = [&](const Brick& brick) {
        const Vector3f c = (brick.GetBB0() + brick.GetBB1()) * 0.5F;
        const double x = m[0] * c.x + m[4] * c.y + m[8] * c.z + m[12];
        const double y = m[1] * c.x + m[5] * c.y + m[9] * c.z + m[13];
        const double z = m[2] * c.x + m[6] * c.y + m[10] * c.z + m[14];
        return view.IsProjectionOrthogonal() ? (view.IsLeftHand() ? z : -z) : x * x + y * y + z * z;
    };
    std::vector<Brick> bricks;
    for (int i = 0; i < data.getNumBricks(); ++i) {
        bricks.push_back(data.GetBrick(static_cast<unsigned int>(i)));
    }
    std::sort(bricks.begin(), bricks.end(), [&](const Brick& a, const Brick& b) { return distance(a) > distance(b); });
    return bricks;
}

void SetClipPlanes(const VolumeAttribute& attribute, bool enabled) {
    for (unsigned int i = 0; i < 6; ++i) {
        const Vector4d plane = attribute.GetUserClipPlane(i);
        if (enabled && plane != Vector4d(0, 0, 0, 0)) {
            glEnable(GL_CLIP_PLANE0 + i);
            glClipPlane(GL_CLIP_PLANE0 + i, plane);
        } else {
            glDisable(GL_CLIP_PLANE0 + i);
        }
    }
}

void UseProgramFor(const VolumeProgram& program, const VolumeData& data, const VolumeAttribute& attribute,
                   const Vector3f& light) {
    UseProgram(program.handle);
    EntryPoints::glUniform1iARB(program.tex, 0);
    EntryPoints::glUniform1iARB(program.tff, 1);
    const float step = attribute.GetSmoothFactor() / 32.0F;
    const ColorRGBA ambient = attribute.GetMaterialAmbientColor();
    EntryPoints::glUniform1fARB(program.shininess, attribute.GetMaterialShininess());
    EntryPoints::glUniform3fARB(program.gradientStep, step, step, step);
    EntryPoints::glUniform4fARB(program.ambient, ambient.r, ambient.g, ambient.b, ambient.a);
    EntryPoints::glUniform3fARB(program.lightDirection, -light.x, -light.y, -light.z);
    program.UseTextureScale(data);
}

void DrawSlices(const std::vector<Brick>& bricks, const VolumeData& data, const VolumeAttribute& attribute,
                const View& view, const VolumeProgram& program) {
    int low = 0;
    int high = 255;
    while (low < 255 && attribute.GetTransferFunction(static_cast<unsigned int>(low)).a == 0.0F) {
        ++low;
    }
    while (high > 0 && attribute.GetTransferFunction(static_cast<unsigned int>(high)).a == 0.0F) {
        --high;
    }
    const double* m = view.GetModelviewMatrix();
    const auto d = static_cast<double>(data.getVoxelSize() / attribute.GetSampleFactor());
    const double sign = view.IsLeftHand() ? -1.0 : 1.0;
    for (const Brick& brick : bricks) {
        if (brick.GetMaxIntensity() < low || high < brick.GetMinIntensity()) {
            continue;
        }
        double farthest = -1e9;
        for (int i = 0; i < 8; ++i) {
            farthest = std::max(farthest, -sign * At({m[2], m[6], m[10], m[14]}, Corner(brick, i)));
        }
        program.UseBrick(data, brick);
        auto k = static_cast<long long>(-sign * farthest / d);
        for (int missed = 0; missed < 2; k += view.IsLeftHand() ? -1 : 1) {
            const auto points = Cut({m[2], m[6], m[10], m[14] - static_cast<double>(k) * d}, brick);
            missed += points.empty() ? 1 : 0;
            DrawPolygon(points);
        }
    }
}

} // namespace

std::vector<unsigned char> DrawPlainSlices(VolumeData& data, const VolumeAttribute& attribute, const View& view,
                                           const Vector3f& light, unsigned int width, unsigned int height) {
    FrameBuffer target;
    EXPECT_TRUE(target.InitBuffer(width, height, true));
    target.BeginCapture();
    glViewport(0, 0, static_cast<GLsizei>(width), static_cast<GLsizei>(height));
    glEnable(GL_DEPTH_TEST);
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    double projection[16];
    std::copy_n(view.GetProjectionMatrix(), 16, projection);
    projection[5] *= static_cast<double>(width) / height;
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(projection);
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixd(view.GetModelviewMatrix());

    const std::vector<Brick> bricks = BackToFront(data, view);
    glEnable(GL_ALPHA_TEST);
    glAlphaFunc(GL_GREATER, 0);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    EntryPoints::glBlendEquationEXT(GL_FUNC_ADD_EXT);
    UseProgramFor(GetVolumeProgram(false), data, attribute, light);
    for (const Brick& brick : bricks) {
        for (unsigned int i = 0; i < 6; ++i) {
            const Plane plane = attribute.GetUserSlice(i);
            if (plane != Plane(0, 0, 0, 0)) {
                LoadTable(attribute.GetUserSliceTransferFunctionTable(i), 1.0F);
                GetVolumeProgram(false).UseBrick(data, brick);
                DrawPolygon(Cut(plane, brick));
            }
        }
    }
    SetClipPlanes(attribute, true);
    LoadTable(attribute.GetTransferFunctionTable(), 1.0F / attribute.GetSampleFactor());
    const VolumeProgram& program = GetVolumeProgram(attribute.GetRenderMode() == VolumeAttribute::Shaded);
    UseProgramFor(program, data, attribute, light);
    if (attribute.GetRenderMode() >= VolumeAttribute::MinimumIntensity) {
        const bool least = attribute.GetRenderMode() == VolumeAttribute::MinimumIntensity;
        EntryPoints::glBlendEquationEXT(least ? GL_MIN_EXT : GL_MAX_EXT);
    }
    glDepthMask(GL_FALSE);
    DrawSlices(bricks, data, attribute, view, program);
    VolumeRenderer::CleanUp();

    std::vector<unsigned char> bottomUp(std::size_t{width} * height * 3);
    glFinish();
    target.Begin();
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGB, GL_UNSIGNED_BYTE, bottomUp.data());
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    target.End();
    target.EndCapture();
    std::vector<unsigned char> pixels;
    for (std::size_t row = height; row-- > 0;) {
        const auto begin = bottomUp.begin() + static_cast<std::ptrdiff_t>(row * width * 3);
        pixels.insert(pixels.end(), begin, begin + static_cast<std::ptrdiff_t>(width) * 3);
    }
    return pixels;
}

} // namespace KOVA::Quorvex::test
