#include "Stage.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include <Quorvex/core/OpenGL.h>

using namespace KOVA::Quorvex;

Stage::Stage() : window(CreateOffscreenWindow(WIDTH, HEIGHT)) {
    if (!KOVA::Quorvex::Quorvex::Init(window) || !frame.Init(window, &view)) {
        std::fprintf(stderr, "no OpenGL\n");
        std::exit(1);
    }
    frame.SetLight({0, 0, 1});
}

Stage& TheStage() {
    static auto* const s_stage = new Stage();
    return *s_stage;
}

Mesh BuildWavySphere(unsigned int columns) {
    const unsigned int rows = columns / 2;
    auto* const data = new MeshData(columns * rows * 6, GL_TRIANGLES);
    data->CreateVertexArray(nullptr);
    data->CreateNormalArray(nullptr);
    const auto point = [columns, rows](unsigned int i, unsigned int j) {
        const float theta = 6.2831853F * static_cast<float>(i) / static_cast<float>(columns);
        const float phi = 3.1415927F * (static_cast<float>(j) / static_cast<float>(rows) - 0.5F);
        const float r = 1.0F + 0.03F * std::sin(20.0F * theta) * std::cos(15.0F * phi);
        return Vector3f(r * std::sin(theta) * std::cos(phi), r * std::sin(phi), r * std::cos(theta) * std::cos(phi));
    };
    unsigned int vertex = 0;
    for (unsigned int j = 0; j < rows; ++j) {
        for (unsigned int i = 0; i < columns; ++i) {
            const Vector3f corners[] = {point(i, j), point(i + 1, j), point(i + 1, j + 1), point(i, j + 1)};
            for (const int k : {0, 1, 2, 0, 2, 3}) {
                data->SetVertex(vertex, corners[k]);
                data->SetNormal(vertex, Normalize(corners[k]));
                ++vertex;
            }
        }
    }
    data->UpdateMetrics();
    data->Update(STORAGE_VBO);
    return Mesh(*data);
}

double Quantile(std::vector<double> values, double q) {
    std::sort(values.begin(), values.end());
    return values[std::min(values.size() - 1, static_cast<std::size_t>(q * static_cast<double>(values.size())))];
}

double Median(std::vector<double> values) {
    return Quantile(std::move(values), 0.5);
}
