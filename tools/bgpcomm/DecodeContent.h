// Single extended communities, eight or twenty octets each, as text.
#pragma once

#include <string>

#include "ReaderNames.h"
#include "parse/BgpParseExtCommContainer.h"

namespace bgpcomm {

/// The flags of a StrepFormat from the value of `--format`: `classification,ui`, or `none`. Throws
/// UsageError for an unknown name.
U32 readFormat(const std::string& text);

class ContentPrinter {
 public:
  ContentPrinter(U32 format, bool json) : format_(format), json_(json) {}

  static bool isSize(std::size_t octets) { return octets == 8 || octets == 20; }
  /// REQUIRES: isSize(content.size()).
  void print(Octets content) const;

 private:
  template <class Value>
  void printValue(Octets content, const Value& value) const;

  U32 format_;
  bool json_;
  Routing::Bgp::BgpParseExtendedCommunityRule::Ptr parser_ =
      Routing::Bgp::bgpParseExtCommContainerSmFactory()->extCommParser();
};

}  // namespace bgpcomm
