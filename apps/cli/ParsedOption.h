#pragma once

#include <functional>
#include <string>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace KOVA::Quorvex::cli {

// Adds an option whose text goes through a function that throws std::invalid_argument for what it does not take. form
// is shown in the help.
CLI::Option* AddParsed(CLI::App& command, const std::string& name, const std::string& form, const std::string& help,
                       const std::function<void(const std::string&)>& parse);

// The same for one that may be given several times, with one text each.
CLI::Option* AddParsedMany(CLI::App& command, const std::string& name, const std::string& form, const std::string& help,
                           const std::function<void(const std::string&)>& parse);

} // namespace KOVA::Quorvex::cli
