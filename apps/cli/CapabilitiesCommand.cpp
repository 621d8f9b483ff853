#include <array>
#include <memory>
#include <string>
#include <string_view>

#include <CLI/CLI.hpp>
#include <GL/gl.h>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <Quorvex/core/Facade.h>
#include <Quorvex/overlay/Text.h>

#include "Commands.h"
#include "OffscreenSession.h"

namespace KOVA::Quorvex::cli {

namespace {

struct Named {
    unsigned int bit;
    std::string_view name;
};

constexpr std::array<Named, 4> c_capabilities{
    {{1, "frame-buffer objects"}, {2, "OpenGL initialised"}, {4, "volume rendering"}, {8, "shaders"}}};

// What the library asks the driver for.
constexpr std::array<const char*, 7> c_extensions{
    "GL_EXT_framebuffer_object", "GL_ARB_vertex_buffer_object", "GL_EXT_texture3D",           "GL_ARB_shader_objects",
    "GL_ARB_vertex_shader",      "GL_ARB_fragment_shader",      "GL_ARB_shading_language_100"};

std::string DriverString(GLenum name) {
    const auto* text = reinterpret_cast<const char*>(glGetString(name));
    return text != nullptr ? text : "";
}

int Limit(GLenum name) {
    GLint value = 0;
    glGetIntegerv(name, &value);
    return value;
}

// Needs a font and a library that was built with a font renderer.
bool DrawsLabels() {
    Text label("0");
    return label.HasTexture();
}

nlohmann::ordered_json Describe() {
    const OffscreenSession session;
    nlohmann::ordered_json capabilities = nlohmann::ordered_json::array();
    for (const Named& capability : c_capabilities) {
        capabilities.push_back({{"bit", capability.bit},
                                {"name", capability.name},
                                {"available", Quorvex::CheckQXExtension(capability.bit)}});
    }
    nlohmann::ordered_json extensions = nlohmann::ordered_json::object();
    for (const char* extension : c_extensions) {
        extensions[extension] = Quorvex::CheckGLExtension(extension);
    }
    return {{"version", QUORVEX_VERSION},
            {"opengl",
             {{"vendor", DriverString(GL_VENDOR)},
              {"renderer", DriverString(GL_RENDERER)},
              {"version", DriverString(GL_VERSION)},
              {"max_texture_size", Limit(GL_MAX_TEXTURE_SIZE)}}},
            {"capability_bits", Quorvex::s_uiQXExtensions},
            {"capabilities", capabilities},
            {"text_labels", DrawsLabels()},
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
