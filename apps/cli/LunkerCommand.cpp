#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <Quorvex/analysis/Lunkers.h>
#include <Quorvex/mesh/MeshWriter.h>

#include "Commands.h"
#include "Failure.h"
#include "PictureFile.h"
#include "ProgressBar.h"
#include "VolumeFile.h"

namespace KOVA::Quorvex::cli {

namespace {

struct Options {
    std::string file;
    std::string output;
    bool json = false;
};

struct Found {
    std::vector<LunkerGroup> groups;
    std::uint64_t voxels = 0; // of all groups
    std::uint64_t triangles = 0;
    std::uint64_t volume = 0; // voxels of the file
};

Found Triangulate(const Options& options) {
    ProgressBar bar;
    bar.Show(0.0, options.file);
    const Volume volume = ReadVolume(options.file);
    const VolumeData& data = volume.GetData();
    Found found;
    const Mesh mesh = Lunkers::Triangulate(data, found.groups,
                                           [&bar](double done) { bar.Show(0.3 + 0.4 * done, "looking for lunkers"); });
    bar.Show(0.7, options.output);
    if (!MeshWriter::WriteSTLBinary(options.output.c_str(), mesh)) {
        throw Failure(fmt::format("cannot write '{}' to its end", options.output));
    }
    for (const LunkerGroup& group : found.groups) {
        found.voxels += group.voxels;
        found.triangles += group.triangles;
    }
    found.volume = std::uint64_t{data.getDimX()} * data.getDimY() * data.getDimZ();
    return found;
}

nlohmann::ordered_json ToJson(const LunkerGroup& group) {
    return {{"voxels", group.voxels},
            {"box",
             {{"min", {group.low.x, group.low.y, group.low.z}}, {"max", {group.high.x, group.high.y, group.high.z}}}},
            {"center",
             {static_cast<double>(group.center.x), static_cast<double>(group.center.y),
              static_cast<double>(group.center.z)}},
            {"first_triangle", group.firstTriangle},
            {"triangles", group.triangles}};
}

void PrintJson(const Options& options, const Found& found) {
    nlohmann::ordered_json json{{"file", options.file},
                                {"output", options.output},
                                {"groups", found.groups.size()},
                                {"voxels", found.voxels},
                                {"triangles", found.triangles}};
    json["lunkers"] = nlohmann::ordered_json::array();
    for (const LunkerGroup& group : found.groups) {
        json["lunkers"].push_back(ToJson(group));
    }
    // A file name may be no UTF-8.
    fmt::print("{}\n", json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace));
}

void PrintText(const Options& options, const Found& found) {
    fmt::print("{}\n", options.file);
    fmt::print("  {:<22}{:>14}\n", "groups", found.groups.size());
    fmt::print("  {:<22}{:>14} {:>14.4f} %\n", "voxels", found.voxels,
               static_cast<double>(found.voxels) * 100.0 / static_cast<double>(found.volume));
    fmt::print("  {:<22}{:>14}\n", "triangles", found.triangles);
    const auto largest =
        std::max_element(found.groups.begin(), found.groups.end(),
                         [](const LunkerGroup& a, const LunkerGroup& b) { return a.voxels < b.voxels; });
    if (largest != found.groups.end()) {
        fmt::print("  {:<22}{:>14} voxels around {:.1f}, {:.1f}, {:.1f}\n", "largest", largest->voxels,
                   largest->center.x, largest->center.y, largest->center.z);
    }
}

} // namespace

void AddLunkerCommand(CLI::App& program) {
    const auto options = std::make_shared<Options>();
    CLI::App* command = program.add_subcommand("lunker", "Make surfaces of the voids that are marked in a volume");
    command->add_option("FILE", options->file, "A REK volume in which voids are marked by voxels of 255")
        ->required()
        ->type_name("");
    command->add_option("-o,--output", options->output, "The surfaces, binary STL")->required()->type_name("OUT");
    command->add_flag("--json", options->json, "Print one object, with each group's voxels, box, centre and triangles");
    command->footer("Voxels that touch, be it at a corner, are one group. Coordinates are those of the voxels, whose\n"
                    "centres have whole numbers; the groups follow each other in the file in the order of the list.\n"
                    "Examples:\n"
                    "  quorvex lunker marked.rek -o voids.stl\n"
                    "  quorvex lunker marked.rek -o voids.stl --json > voids.json");
    command->callback([options] {
        CheckWritable(options->output);
        const Found found = Triangulate(*options);
        options->json ? PrintJson(*options, found) : PrintText(*options, found);
    });
}

} // namespace KOVA::Quorvex::cli
