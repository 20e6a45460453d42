#include "Commands.h"
#include "Meant.h"
#include "Mox/Type.h"
#include "Terminal.h"

namespace bgpcomm {
namespace {

/// Finds a type by its qualified name, or by the end of it when only one type ends so.
const Mox::Type& findType(const std::string& name) {
  if (const Mox::Type* const type = Mox::Type::find(name)) return *type;
  const Mox::Type* found = nullptr;
  for (const Mox::Type* const type : Mox::Type::all()) {
    if (!type->name().ends_with("::" + name)) continue;
    if (found) throw UsageError(name + ": several types have this name, write it in full");
    found = type;
  }
  if (found) return *found;
  std::vector<std::string> known;
  for (const Mox::Type* const type : Mox::Type::all())
    for (const std::string& its : {type->name(), type->name().substr(type->name().rfind(':') + 1)})
      known.push_back(its);
  throw UsageError(name + ": no such type, bgpcomm describe lists them" + meantAmong(known, name));
}

std::string_view formText(Mox::Attribute::Form form) {
  switch (form) {
    case Mox::Attribute::Form::value:
      return "value";
    case Mox::Attribute::Form::collection:
      return "collection";
    case Mox::Attribute::Form::operation:
      return "operation";
  }
  return "";
}

void describe(const Mox::Type& type) {
  print(type.name() + '\n');
  for (const Mox::Type* base = type.base(); base; base = base->base())
    print("  base " + base->name() + '\n');
  for (const Mox::Type* owner = &type; owner; owner = owner->base())
    for (const Mox::Attribute& attribute : owner->attributes())
      print("  " + std::string(formText(attribute.form)) + ' ' + attribute.name +
            (owner == &type ? "" : "  (" + owner->name() + ')') + '\n');
  for (const Mox::Enumerator& enumerator : type.enumerators())
    print("  " + std::to_string(enumerator.value) + ' ' + enumerator.name +
          (enumerator.member ? "" : "  (no valid value)") + '\n');
}

int runDescribe(const std::string& name) {
  if (name.empty())
    for (const Mox::Type* const type : Mox::Type::all()) print(type->name() + '\n');
  else
    describe(findType(name));
  return 0;
}

}  // namespace

void addDescribe(CLI::App& app, int& exitCode) {
  const auto [command, name] =
      addCommand(app,
                 {"describe", "List the library's types, or what one of them has",
                  "Example: bgpcomm describe Routing::Bgp::CommList"},
                 exitCode, runDescribe);
  command.add_option("TYPE", name, "Its name, qualified or not")->type_name("");
}

}  // namespace bgpcomm
