#pragma once

#include <cfloat>
#include <cstdio>
#include <memory>
#include <string>

#include "StlTestFiles.h"

// The ASCII reader as it would be with the C library's formatted input: slow, and bound to the C locale, but obvious.

namespace stltest {

inline Outcome ReferenceAscii(const std::string& path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "r"), std::fclose);
    char line[512];
    if (file == nullptr || std::fgets(line, sizeof(line), file.get()) == nullptr) {
        return {};
    }
    const long start = std::ftell(file.get());
    std::size_t facets = 0;
    const auto token = std::make_unique<char[]>(1 << 16);
    while (std::fscanf(file.get(), "\n%65535s", token.get()) == 1) {
        facets += std::strncmp(token.get(), "facet", 5) == 0 ? 1U : 0U;
    }
    std::fseek(file.get(), start, SEEK_SET);

    Vector3f lower(FLT_MAX, FLT_MAX, FLT_MAX);
    Vector3f upper(-FLT_MAX, -FLT_MAX, -FLT_MAX);
    std::vector<Vector3f> normals;
    std::vector<Vector3f> vertices;
    for (std::size_t i = 0; i < facets; ++i) {
        float n[12];
        if (std::fscanf(file.get(),
                        " facet normal %f %f %f outer loop vertex %f %f %f vertex %f %f %f vertex %f %f %f"
                        " endloop endfacet",
                        n, n + 1, n + 2, n + 3, n + 4, n + 5, n + 6, n + 7, n + 8, n + 9, n + 10, n + 11) < 12) {
            return {};
        }
        for (int corner = 1; corner <= 3; ++corner) {
            normals.emplace_back(n);
            vertices.emplace_back(n + corner * 3);
            for (int axis = 0; axis < 3; ++axis) {
                const float value = n[corner * 3 + axis];
                if (value < lower[axis]) {
                    lower[axis] = value;
                }
                if (value > upper[axis]) {
                    upper[axis] = value;
                }
            }
        }
    }
    Outcome outcome;
    outcome.read = true;
    AppendVector(outcome.bits, lower);
    AppendVector(outcome.bits, upper);
    for (const auto* const list : {&normals, &vertices}) {
        for (const Vector3f& v : *list) {
            AppendVector(outcome.bits, v);
        }
    }
    return outcome;
}

} // namespace stltest
