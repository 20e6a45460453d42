// The keys of JSON explained, from the schemas in docs/, which are part of the program.
#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace bgpcomm {

/// A schema in docs/: of the command of this name.
struct JsonSchema {
  std::string_view command, text;
};
/// Made from docs/ by the build.
std::span<const JsonSchema> jsonSchemas();

/// Lets the help of each command that has JSON name its keys, when it is asked for.
void nameJsonKeys(CLI::App& program);

/// The keys of a command's JSON, each with what it says. Keys inside of others follow these, one
/// level deeper.
struct JsonKeys {
  struct Key {
    std::size_t level;
    std::string name, says;
  };
  std::string title, description;
  std::vector<Key> keys;
};
/// Nothing when the command has no JSON.
std::optional<JsonKeys> explainedKeys(const std::string& command);
/// The same as lines for people; empty when it has none.
std::string jsonKeys(const std::string& command);

}  // namespace bgpcomm
