#include "JsonHelp.h"

#include <algorithm>
#include <functional>
#include <nlohmann/json.hpp>

#include "Wrapped.h"

namespace bgpcomm {
namespace {

using Json = nlohmann::ordered_json;

/// Null when there is none. A schema may be of two commands; its title names both.
Json schemaOf(const std::string& command) {
  const auto schemas = jsonSchemas();
  const auto named = std::ranges::find(schemas, command, &JsonSchema::command);
  if (named != schemas.end()) return Json::parse(named->text);
  for (const JsonSchema& one : schemas) {
    Json schema = Json::parse(one.text);
    if (schema["title"].get<std::string>().find("bgpcomm " + command + " --json") !=
        std::string::npos)
      return schema;
  }
  return {};
}

/// Walks through the keys of a schema.
class Keys {
 public:
  using Use = std::function<void(const std::string& key, const Json& its, std::size_t level)>;

  Keys(const Json& schema, const Use& use) : schema_(schema), use_(use) {}

  void walk() { walk(schema_, 0); }
  /// The first member of that name that a part of the schema has, or a part that it refers to.
  const Json* member(const Json& part, const char* name) const {
    if (part.contains(name)) return &part.at(name);
    return part.contains("$ref") ? member(referred(part), name) : nullptr;
  }

 private:
  const Json& referred(const Json& part) const {
    return schema_.at(Json::json_pointer(part.at("$ref").get<std::string>().substr(1)));
  }
  void walk(const Json& part, std::size_t level) {
    if (const Json* const items = member(part, "items")) return walk(*items, level);
    const Json* const properties = member(part, "properties");
    // Keys that several others have are told once.
    if (!properties || std::ranges::find(walked_, properties) != walked_.end()) return;
    walked_.push_back(properties);
    for (const auto& [key, its] : properties->items()) {
      use_(key, its, level);
      walk(its, level + 1);
    }
  }

  const Json& schema_;
  const Use& use_;
  std::vector<const Json*> walked_;
};

/// `gone, come, changed`
std::string wordsOf(const Json& values) {
  std::string text;
  for (const Json& value : values)
    text.append(text.empty() ? "" : ", ")
        .append(value.is_string() ? value.get<std::string>() : value.dump());
  return text;
}

}  // namespace

std::optional<JsonKeys> explainedKeys(const std::string& command) {
  const Json schema = schemaOf(command);
  if (schema.is_null()) return {};
  JsonKeys all{schema["title"].get<std::string>(), schema["description"].get<std::string>(), {}};
  const Keys::Use add = [&](const std::string& key, const Json& its, std::size_t level) {
    const Keys keys(schema, add);
    std::string says;
    if (const Json* const described = keys.member(its, "description"))
      says = described->get<std::string>();
    if (const Json* const values = keys.member(its, "enum"))
      says += (says.empty() ? "" : " One of ") + wordsOf(*values) + '.';
    all.keys.push_back({level, key, std::move(says)});
  };
  Keys(schema, add).walk();
  return all;
}

std::string jsonKeys(const std::string& command) {
  const auto all = explainedKeys(command);
  if (!all) return "";
  std::string text = broken("", all->title, 0) + '\n' + broken("", all->description, 0) + '\n';
  for (const auto& [level, key, says] : all->keys) {
    constexpr std::size_t margin = 30;
    std::string first = std::string(2 + 2 * level, ' ') + key + "  ";
    first.resize(std::max(first.size(), margin), ' ');
    text += broken(first, says, margin);
  }
  return text;
}

void nameJsonKeys(CLI::App& program) {
  for (CLI::App* const command : program.get_subcommands({})) {
    if (!command->get_option_no_throw("--json") || command->get_name() == "help") continue;
    const std::string text = command->get_footer();
    const std::size_t example = text.rfind("Example:");
    command->footer(text.substr(example));
    command->footer([name = command->get_name(), before = text.substr(0, example)] {
      std::string keys = "bgpcomm help --json " + name + " explains the keys of JSON:";
      const Json schema = schemaOf(name);
      std::vector<std::string> known;
      const Keys::Use add = [&](const std::string& key, const Json&, std::size_t) {
        if (std::ranges::find(known, key) != known.end()) return;
        keys += (known.empty() ? " " : ", ") + key;
        known.push_back(key);
      };
      if (!schema.is_null()) Keys(schema, add).walk();
      std::string paragraph = before;
      for (const std::string& line : wrapped(keys + ".", 80)) paragraph += line + '\n';
      return paragraph;
    });
  }
}

}  // namespace bgpcomm
