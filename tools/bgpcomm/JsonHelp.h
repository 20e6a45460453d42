// The keys of JSON explained, from the schemas in docs/, which are part of the program.
#pragma once

#include <CLI/CLI.hpp>
#include <span>
#include <string>

namespace bgpcomm {

/// A schema in docs/: of the command of this name.
struct JsonSchema {
  std::string_view command, text;
};
/// Made from docs/ by the build.
std::span<const JsonSchema> jsonSchemas();

/// Lets the help of each command that has JSON name its keys, when it is asked for.
void nameJsonKeys(CLI::App& program);

/// The keys of a command's JSON, each with what it says; empty when it has none.
std::string jsonKeys(const std::string& command);

}  // namespace bgpcomm
