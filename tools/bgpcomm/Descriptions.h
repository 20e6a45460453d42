// Descriptions of communities by their operators: read once, from the files and folders that
// `--describe` names and from the user's own folder.
#pragma once

#include <memory>
#include <string>

#include "ReaderNames.h"
#include "query/ZoBgpCommunityDescriptions.h"

namespace bgpcomm {

/// The descriptions that are given; null when no file is. The first call reads them: DataError when
/// one cannot be read, an error line for each file with lines that are no entries.
const std::shared_ptr<const Routing::Bgp::CommunityDescriptions>& descriptions();

/// Whether texts have descriptions beside the values, by `--explain`.
bool& explains();

/// A text that ends with a value, and the value's description in parentheses if it says more.
std::string explained(std::string text, std::string_view value, const std::string& description);

/// The description of a community, made visible; empty when it has none or none are given. Looked
/// up once for each value. Valid as long as the process.
const std::string& descriptionOf(const Routing::Bgp::AnyCommunity& community);

}  // namespace bgpcomm
