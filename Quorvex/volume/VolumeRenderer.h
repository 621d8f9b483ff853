#pragma once

#include <Quorvex/core/Colors.h>
#include <Quorvex/core/Export.h>
#include <Quorvex/core/Vectors.h>

namespace KOVA::Quorvex {

class Brick;
class RenderFrame;
class Volume;
class VolumeAttribute;
class VolumeData;

// Draws volumes by slicing their bricks. Needs the library's context current.
class QUORVEX_API VolumeRenderer {
public:
    // Probes the driver and makes what all volumes share; false when it cannot draw volumes.
    static bool Init();
    static void Release();

    // Render modes that keep the smallest or the largest intensity.
    static bool SupportsIntensityMinMax() { return s_bSupportsIntensityMinMax; }
    static const char* GetGLExtensionString();

    // False when a quality pass was interrupted.
    static bool Render(RenderFrame& frame, bool quality, const Volume* volume);

    static void CleanUp();
    static void DrawBoundingBox(const Vector3f& lo, const Vector3f& hi);

    static bool m_bInit;
    static unsigned int m_handleProgram; // the program that is loaded, 0 for none
    static unsigned int m_handleVertexProgram;
    static int m_loadedProgram; // its render mode, -1 for none
    static unsigned int m_transferTexture;
    static bool s_bSupportsIntensityMinMax;

private:
    static void SetTransferFunction(const ColorRGBA* table, float exponent);
    static void loadProgram(int mode);
    static void setMode(int mode, Vector3f lightDirection, float gradientStep, float shininess, ColorRGBA& ambient);
    static void RenderUserSlices(RenderFrame& frame, VolumeData& data, VolumeAttribute& attribute, unsigned char lo,
                                 unsigned char hi);
    static bool RenderBackToFront(RenderFrame& frame, VolumeData& data, VolumeAttribute& attribute, float sliceDistance,
                                  unsigned char lo, unsigned char hi, bool quality);
    static Vector3f findSlicePosNear(const RenderFrame& frame, Brick& brick, float distance);
    static Vector3f findSlicePosFar(const RenderFrame& frame, Brick& brick, float distance);
};

} // namespace KOVA::Quorvex
