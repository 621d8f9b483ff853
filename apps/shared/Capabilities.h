#pragma once

#include <array>
#include <string>
#include <string_view>

#include "Programs.h"

namespace KOVA::Quorvex::apps {

// What the library finds on this system.
struct Capabilities {
    struct Bit {
        unsigned int bit; // see KOVA::Quorvex::Capability
        std::string_view name;
        bool available;
    };
    struct Extension {
        std::string_view name;
        bool available;
    };

    std::string vendor; // of the OpenGL driver
    std::string renderer;
    std::string version;
    int maxTextureSize; // pixels
    std::array<Bit, 4> bits;
    bool textLabels; // needs a font and a library that was built with a font renderer
    std::array<Extension, 7> extensions;
};

// After Quorvex::Init, with its context current.
Capabilities DescribeCapabilities();

} // namespace KOVA::Quorvex::apps
