// Single communities, 4, 8, 12 or 20 octets each, as text: the kind with its fields, and what the
// library makes of extended ones. Without the table of kinds, extended ones alone.
#pragma once

#include <string>

#include "ListTypes.h"
#include "parse/BgpParseExtCommContainer.h"

namespace bgpcomm {

/// The flags of a StrepFormat from the value of `--format`: `classification,ui`, or `none`. Throws
/// UsageError for an unknown name.
U32 readFormat(const std::string& text);

class ContentPrinter {
 public:
  ContentPrinter(U32 format, bool json) : format_(format), json_(json) {}

  static bool isSize(std::size_t octets);
  /// REQUIRES: isSize(content.size()).
  void print(Octets content) const;

 private:
  U32 format_;
  bool json_;
  Routing::Bgp::BgpParseExtendedCommunityRule::Ptr parser_ = sharedParser()->extCommParser();
};

}  // namespace bgpcomm
