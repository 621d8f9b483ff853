#pragma once

namespace KOVA::Quorvex {

class Brick;
class VolumeData;

// A linked program with the places of its uniforms; -1 for those that it does not have.
struct VolumeProgram {
    // Between bricks of one volume only the second changes: it binds the brick's texture and says where it lies. The
    // program must be in use and texture unit 0 active.
    void UseTextureScale(const VolumeData& data) const;
    void UseBrick(const VolumeData& data, const Brick& brick) const;

    unsigned int handle = 0;
    int tex = -1;           // brick texture unit
    int tff = -1;           // transfer function's texture unit
    int textureScale = -1;  // v1: texture units per world unit
    int textureOrigin = -1; // v2: world point of texture coordinate 0
    int shininess = -1;
    int gradientStep = -1; // vVoxelSize
    int ambient = -1;
    int lightDirection = -1;
};

// The program that classifies samples by the transfer function, or the one that also lights them. Linked at first use
// and kept. Throws the text "failed" (const char*) when it cannot be built. Needs the shader capability.
const VolumeProgram& GetVolumeProgram(bool lit);

// Both make the next use build them again: the first deletes them, the second is for when their context is gone.
void ReleaseVolumePrograms();
void ForgetVolumePrograms();

} // namespace KOVA::Quorvex
