#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "Commands.h"
#include "MeshSummary.h"
#include "ModelFile.h"
#include "ProgressBar.h"
#include "system/System.h"

namespace KOVA::Quorvex::cli {

namespace {

struct FileReport {
    std::string path;
    bool binary;
    std::uintmax_t bytes;
    MeshSummary mesh;
};

FileReport Examine(const std::string& path) {
    const Mesh mesh = ReadModel(path);
    std::error_code failed;
    const std::uintmax_t bytes = std::filesystem::file_size(PathOf(path), failed);
    return {path, IsBinaryModel(path), failed ? 0 : bytes, Summarize(mesh.GetData())};
}

using Triple = std::array<float, 3>;

// The number with as few digits as tell the float apart from its neighbours: 0.1, not 0.10000000149011612.
nlohmann::json Number(float value) {
    if (!std::isfinite(value)) {
        return nullptr;
    }
    return nlohmann::json::parse(fmt::format("{}", value));
}

nlohmann::json Numbers(const Triple& values) {
    return {Number(values[0]), Number(values[1]), Number(values[2])};
}

nlohmann::ordered_json ToJson(const FileReport& report) {
    const MeshSummary& mesh = report.mesh;
    return {{"file", report.path},
            {"format", report.binary ? "binary" : "ascii"},
            {"file_size", report.bytes},
            {"triangles", mesh.triangles},
            {"vertices", mesh.vertices},
            {"box", {{"min", Numbers(mesh.low)}, {"max", Numbers(mesh.high)}}},
            {"size", Numbers(mesh.size)},
            {"center", Numbers(mesh.center)},
            {"radius", Number(mesh.radius)},
            {"degenerate_triangles", mesh.degenerateTriangles},
            {"inverted_normals", mesh.invertedNormals}};
}

std::string Text(float value) {
    return std::isfinite(value) ? fmt::format("{}", value) : "-";
}

std::string Row(const Triple& values) {
    return fmt::format("{:>14} {:>14} {:>14}", Text(values[0]), Text(values[1]), Text(values[2]));
}

void Print(const FileReport& report) {
    const MeshSummary& mesh = report.mesh;
    fmt::print("{}\n", report.path);
    fmt::print("  {:<22}{:>14}\n", "format", report.binary ? "binary STL" : "ASCII STL");
    fmt::print("  {:<22}{:>14} bytes\n", "file size", report.bytes);
    fmt::print("  {:<22}{:>14}\n", "triangles", mesh.triangles);
    fmt::print("  {:<22}{:>14}\n", "vertices", mesh.vertices);
    fmt::print("  {:<22}{}\n", "box minimum", Row(mesh.low));
    fmt::print("  {:<22}{}\n", "box maximum", Row(mesh.high));
    fmt::print("  {:<22}{}\n", "size", Row(mesh.size));
    fmt::print("  {:<22}{}\n", "centre", Row(mesh.center));
    fmt::print("  {:<22}{:>14}\n", "radius", Text(mesh.radius));
    fmt::print("  {:<22}{:>14}\n", "degenerate triangles", mesh.degenerateTriangles);
    fmt::print("  {:<22}{:>14}\n", "inverted normals", mesh.invertedNormals);
}

// All files are read before anything is printed: a failure leaves no half list behind.
void Info(const std::vector<std::string>& files, bool json) {
    std::vector<FileReport> reports;
    {
        ProgressBar progress;
        for (const std::string& file : files) {
            progress.Show(static_cast<double>(reports.size()) / static_cast<double>(files.size()), file);
            reports.push_back(Examine(file));
        }
    }
    if (json) {
        nlohmann::ordered_json list = nlohmann::ordered_json::array();
        for (const FileReport& report : reports) {
            list.push_back(ToJson(report));
        }
        // A file name may be no UTF-8.
        fmt::print("{}\n", list.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace));
        return;
    }
    for (const FileReport& report : reports) {
        Print(report);
    }
}

} // namespace

void AddInfoCommand(CLI::App& program) {
    struct Options {
        std::vector<std::string> files;
        bool json = false;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* command = program.add_subcommand("info", "Tell what is in STL files");
    command->add_option("FILE", options->files, "STL files, ASCII or binary")->required()->type_name("");
    command->add_flag("--json", options->json, "Print an array with one object a file");
    command->footer("Vertices are three a triangle, as stored. A degenerate triangle has no area; an inverted normal\n"
                    "looks against the side that the order of the corners makes the outside.\n"
                    "Examples:\n"
                    "  quorvex info part.stl\n"
                    "  quorvex info --json *.stl");
    command->callback([options] { Info(options->files, options->json); });
}

} // namespace KOVA::Quorvex::cli
