#include <memory>
#include <string>
#include <string_view>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <Quorvex/core/Facade.h>

#include "Capabilities.h"
#include "Commands.h"
#include "OffscreenSession.h"

namespace KOVA::Quorvex::cli {

namespace {

nlohmann::ordered_json Describe() {
    const OffscreenSession session;
    const Capabilities found = DescribeCapabilities();
    nlohmann::ordered_json capabilities = nlohmann::ordered_json::array();
    for (const Capabilities::Bit& capability : found.bits) {
        capabilities.push_back(
            {{"bit", capability.bit}, {"name", capability.name}, {"available", capability.available}});
    }
    nlohmann::ordered_json extensions = nlohmann::ordered_json::object();
    for (const Capabilities::Extension& extension : found.extensions) {
        extensions[std::string(extension.name)] = extension.available;
    }
    return {{"version", QUORVEX_VERSION},
            {"opengl",
             {{"vendor", found.vendor},
              {"renderer", found.renderer},
              {"version", found.version},
              {"max_texture_size", found.maxTextureSize}}},
            {"capability_bits", Quorvex::s_uiQXExtensions},
            {"capabilities", capabilities},
            {"text_labels", found.textLabels},
            {"extensions", extensions}};
}

std::string_view YesNo(const nlohmann::ordered_json& value) {
    return value.get<bool>() ? "yes" : "no";
}

void Print(const nlohmann::ordered_json& all) {
    const auto row = [](std::string_view name, std::string_view value) { fmt::print("{:<30}{}\n", name, value); };
    const nlohmann::ordered_json& gl = all["opengl"];
    row("Quorvex", all["version"].get<std::string>());
    row("OpenGL vendor", gl["vendor"].get<std::string>());
    row("OpenGL renderer", gl["renderer"].get<std::string>());
    row("OpenGL version", gl["version"].get<std::string>());
    row("largest texture", fmt::format("{} pixels", gl["max_texture_size"].get<int>()));
    for (const nlohmann::ordered_json& capability : all["capabilities"]) {
        row(fmt::format("{} (bit {})", capability["name"].get<std::string>(), capability["bit"].get<unsigned int>()),
            YesNo(capability["available"]));
    }
    row("text labels", YesNo(all["text_labels"]));
    for (const auto& [extension, available] : all["extensions"].items()) {
        row(extension, YesNo(available));
    }
}

} // namespace

void AddCapabilitiesCommand(CLI::App& program) {
    CLI::App* command = program.add_subcommand("capabilities", "Tell what the library finds on this system");
    const auto json = std::make_shared<bool>(false);
    command->add_flag("--json", *json, "Print one object");
    command->footer("Examples:\n"
                    "  quorvex capabilities\n"
                    "  quorvex capabilities --json");
    command->callback([json] {
        const nlohmann::ordered_json all = Describe();
        if (*json) {
            fmt::print("{}\n", all.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace));
        } else {
            Print(all);
        }
    });
}

} // namespace KOVA::Quorvex::cli
