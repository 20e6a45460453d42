// The page that `report` writes: figures of all files together, for people.
#pragma once

#include <string>
#include <vector>

#include "Summary.h"

namespace bgpcomm {

struct ReportFigures {
  std::vector<FileFigures> files;  ///< without figures of their lists; unopened ones too
  FileFigures total;
  std::vector<ListDetails> details;  ///< of each of the types of `total`
  std::vector<PeerUse> peers;
  U64 top = 0;  ///< so many route-target sets; 0: all
};

/// One page of HTML that needs nothing besides: no network, no file.
std::string reportPage(const ReportFigures& figures);

/// The page's frame; `{{name}}` stands where figures belong. Style and script are in it.
extern const std::string_view reportTemplate;

}  // namespace bgpcomm
