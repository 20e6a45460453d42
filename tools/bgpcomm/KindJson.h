// Kinds and fields as JSON: the rows of a table, both ways, and the fields of a community.
#pragma once

#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "kinds/ZoBgpKindTable.h"

namespace bgpcomm {

using Json = nlohmann::ordered_json;

/// How rows spell a form: `integer`, `enum`.
std::string_view formText(Routing::Bgp::KindForm form);
/// How a layout is known: `standard`, `layout unknown`.
std::string_view evidenceText(Routing::Bgp::KindEvidence evidence);

/// A row as `bgpcomm kinds --json` prints it.
Json jsonOf(const Routing::Bgp::Kind& kind);

/// Rows that were read, and what they refer to.
struct KindFile {
  std::vector<Routing::Bgp::Kind> kinds;
};
/// Reads an array of rows in the same form. Throws DataError, which names file, row, key and
/// reason. Whether rows fit each other is for KindTable::with to say.
std::shared_ptr<const KindFile> readKinds(const std::string& file);
/// The same of a text; `file` is for messages.
std::shared_ptr<const KindFile> readKindsText(std::string_view text, const std::string& file);

/// The fields by name: numbers, texts, and arrays of the names of flags. Empty for a kind without a
/// row. Reserved fields are left out; a number of more than 53 bits stands beside a text of it,
/// under its name and `Text`.
Json fieldsJson(const Routing::Bgp::AnyCommunity& community);

}  // namespace bgpcomm
