#pragma once

#include <vector>

#include <Quorvex/core/Colors.h>
#include <Quorvex/core/Export.h>
#include <Quorvex/core/Vectors.h>

namespace KOVA::Quorvex {

class RenderFrame;
class VisibleIntensities;
class Volume;
class VolumeAttribute;
class VolumeData;

// Draws volumes by slicing: planes across the line of sight cut every brick, and the polygons are drawn back to front
// through a program that looks samples up in the transfer function. Needs the library's context current, on the thread
// of Quorvex::Init.
class QUORVEX_API VolumeRenderer {
public:
    // Looks up what is needed and makes the transfer function's texture; false when the driver lacks something. Sets
    // the volume capability in Quorvex::InitGL.
    static bool Init();
    static void Release();
    static const char* GetGLExtensionString();

    // Whether minimum and maximum intensity can be drawn.
    static bool SupportsIntensityMinMax() { return s_bSupportsIntensityMinMax; }

    // Draws one volume in front of what is there, in world coordinates: transform and translation of its attribute take
    // no part. quality is false in a fast pass, which takes far fewer slices. A quality pass reports its progress to
    // the frame and never has more than a few milliseconds of work outstanding when it does. False when it was told to
    // stop. Throws the text "failed" (const char*) when the driver cannot build a program. The state that it changes is
    // put back in any case (see CleanUp).
    static bool Render(RenderFrame& frame, bool quality, const Volume* volume);

    // Puts back what drawing a volume changes: alpha test, blending, textures and clip planes off, no program, depth
    // writes on. Also from inside a pass that is to be stopped.
    static void CleanUp();

    // The twelve edges of a box, in the current colour.
    static void DrawBoundingBox(const Vector3f& lo, const Vector3f& hi);

    static bool m_bInit;
    static unsigned int m_handleProgram;       // in use since the last setMode; 0 for none
    static unsigned int m_handleVertexProgram; // always 0: programs hold both
    static int m_loadedProgram;                // the mode that m_handleProgram is for; -1 for none
    static unsigned int m_transferTexture;     // one-dimensional
    static bool s_bSupportsIntensityMinMax;

private:
    static void SetTransferFunction(unsigned int texture, const ColorRGBA* table, float exponent);
    static void loadProgram(unsigned int mode);
    static void setMode(unsigned int mode, const Vector3f& lightDirection, float gradientStep, float shininess,
                        const ColorRGBA& ambient);
    static void DrawBoxes(const VolumeData& data, const VolumeAttribute& attribute, const VisibleIntensities& visible);

    // order: the bricks back to front, as places in the data's list.
    static void RenderUserSlices(const VolumeData& data, const VolumeAttribute& attribute,
                                 const std::vector<unsigned int>& order);
    static bool RenderBackToFront(RenderFrame& frame, const VolumeData& data, const VolumeAttribute& attribute,
                                  const std::vector<unsigned int>& order, double sliceDistance, bool quality);

    static unsigned int s_sliceTextures[6]; // transfer functions of the user slices
};

} // namespace KOVA::Quorvex
