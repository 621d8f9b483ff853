#pragma once

#include <chrono>
#include <vector>

#include <Quorvex/Quorvex.h>
#include <Quorvex/platform/NativeWindow.h>

// What benchmarks that draw have in common: the library on an off-screen window, made once for all of them, with a
// frame of the window's size that is lit from the viewer. Each sets the view and clears the frame when it is done.
struct Stage {
    static constexpr unsigned int WIDTH = 800;
    static constexpr unsigned int HEIGHT = 600;

    Stage();

    KOVA::Quorvex::HWND window;
    KOVA::Quorvex::View view;
    KOVA::Quorvex::RenderFrame frame;
};

// Ends the program when there is no OpenGL.
Stage& TheStage();

// A sphere with waves of about radius 1, columns x columns / 2 quads: three vertices with normals for each triangle.
// Uploaded.
KOVA::Quorvex::Mesh BuildWavySphere(unsigned int columns);

template <class Action> double Milliseconds(Action&& action) {
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

// q of 0.5 is the median.
double Quantile(std::vector<double> values, double q);
double Median(std::vector<double> values);
