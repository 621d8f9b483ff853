#pragma once

#include <vector>

#include <Quorvex/volume/HalfSpaces.h>

namespace KOVA::Quorvex {

class VolumeAttribute;

// The user clip planes of a volume that are in use: those that are not all zero.
class ClipPlanes {
public:
    explicit ClipPlanes(const VolumeAttribute& attribute);

    // Under the modelview that is loaded.
    void Enable() const;
    void Disable() const;

    void AddTo(HalfSpaces& halfSpaces) const;

private:
    struct Plane {
        unsigned int index;
        Vector4d equation;
    };
    std::vector<Plane> m_planes;
};

} // namespace KOVA::Quorvex
