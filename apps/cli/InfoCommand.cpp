#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <Quorvex/volume/VolumeReader.h>

#include "Commands.h"
#include "MeshSummary.h"
#include "ModelFile.h"
#include "ProgressBar.h"
#include "VolumeFile.h"
#include "VolumeSummary.h"
#include "system/System.h"

namespace KOVA::Quorvex::cli {

namespace {

struct FileReport {
    std::string path;
    std::uintmax_t bytes;
    bool binary = false; // of meshes
    MeshSummary mesh;
    RekHeader header; // of volumes
    std::optional<VolumeSummary> volume;
    std::size_t bricks = 0; // the pieces that a volume is drawn in
};

FileReport Examine(const std::string& path) {
    FileReport report{path, 0, false, {}, {}, {}, 0};
    if (IsVolumeFile(path)) {
        const Volume volume = ReadVolume(path);
        report.header = VolumeReader::ReadREKHeader(path.c_str());
        report.volume = Summarize(volume.GetData());
        report.bricks = volume.GetData().CountBricksOfUpdate();
    } else {
        report.mesh = Summarize(ReadModel(path).GetData());
        report.binary = IsBinaryModel(path);
    }
    std::error_code failed;
    const std::uintmax_t bytes = std::filesystem::file_size(PathOf(path), failed);
    report.bytes = failed ? 0 : bytes;
    return report;
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

nlohmann::ordered_json MeshToJson(const FileReport& report) {
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

const char* NameOfSamples(const RekHeader& header) {
    return header.bits == REK_UINT8 ? "8-bit" : header.bits == REK_UINT16 ? "16-bit" : "float";
}

nlohmann::ordered_json VolumeToJson(const FileReport& report) {
    const RekHeader& header = report.header;
    const VolumeSummary& volume = *report.volume;
    nlohmann::ordered_json json{{"file", report.path},
                                {"format", "rek"},
                                {"file_size", report.bytes},
                                {"samples", NameOfSamples(header)},
                                {"dimensions", {header.width, header.height, header.depth}},
                                {"voxels", volume.voxels},
                                {"bricks", report.bricks},
                                {"min", volume.low},
                                {"max", volume.high},
                                {"mean", volume.mean}};
    if (header.bits == REK_FLOAT) {
        json["range"] = {Number(header.recVolMin), Number(header.recVolMax)};
    }
    if (volume.parts) {
        json["air"] = volume.parts->air;
        json["material"] = volume.parts->material;
        json["threshold"] = volume.parts->threshold;
        json["material_share"] = volume.parts->materialShare;
    }
    json["histogram"] = volume.histogram;
    return json;
}

nlohmann::ordered_json ToJson(const FileReport& report) {
    return report.volume ? VolumeToJson(report) : MeshToJson(report);
}

std::string Text(float value) {
    return std::isfinite(value) ? fmt::format("{}", value) : "-";
}

std::string Row(const Triple& values) {
    return fmt::format("{:>14} {:>14} {:>14}", Text(values[0]), Text(values[1]), Text(values[2]));
}

void PrintMesh(const FileReport& report) {
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

void PrintVolume(const FileReport& report) {
    const RekHeader& header = report.header;
    const VolumeSummary& volume = *report.volume;
    fmt::print("{}\n", report.path);
    fmt::print("  {:<22}{:>14}\n", "format", "REK volume");
    fmt::print("  {:<22}{:>14} bytes\n", "file size", report.bytes);
    fmt::print("  {:<22}{:>14}\n", "samples", NameOfSamples(header));
    if (header.bits == REK_FLOAT) {
        fmt::print("  {:<22}{:>14} {:>14}\n", "sample of 0 and of 255", Text(header.recVolMin), Text(header.recVolMax));
    }
    fmt::print("  {:<22}{:>14} {:>14} {:>14}\n", "dimensions", header.width, header.height, header.depth);
    fmt::print("  {:<22}{:>14}\n", "voxels", volume.voxels);
    fmt::print("  {:<22}{:>14}\n", "bricks", report.bricks);
    fmt::print("  {:<22}{:>14} {:>14}\n", "smallest, largest", volume.low, volume.high);
    fmt::print("  {:<22}{:>14.2f}\n", "mean", volume.mean);
    if (volume.parts) {
        fmt::print("  {:<22}{:>14}\n", "air, most often", volume.parts->air);
        fmt::print("  {:<22}{:>14}\n", "material, most often", volume.parts->material);
        fmt::print("  {:<22}{:>14}\n", "material is above", volume.parts->threshold);
        fmt::print("  {:<22}{:>14.2f} %\n", "material", volume.parts->materialShare * 100.0);
    }
}

void Print(const FileReport& report) {
    report.volume ? PrintVolume(report) : PrintMesh(report);
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
    CLI::App* command = program.add_subcommand("info", "Tell what is in STL and REK files");
    command->add_option("FILE", options->files, "STL files, ASCII or binary; REK volumes (.rek)")
        ->required()
        ->type_name("");
    command->add_flag("--json", options->json, "Print an array with one object a file");
    command->footer("Vertices are three a triangle, as stored. A degenerate triangle has no area; an inverted normal\n"
                    "looks against the side that the order of the corners makes the outside.\n"
                    "Of volumes, voxels are told as they are drawn, 0 to 255; the threshold parts air from material\n"
                    "where the two differ most.\n"
                    "Examples:\n"
                    "  quorvex info part.stl scan.rek\n"
                    "  quorvex info --json *.stl");
    command->callback([options] { Info(options->files, options->json); });
}

} // namespace KOVA::Quorvex::cli
