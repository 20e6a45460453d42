// The attributes that the benchmarks read: made up after a stated distribution, or those of a file.
//
// All are values of COMMUNITIES attributes (RFC 1997) as a peer sends them. They lie one behind the
// other like in a stream of messages, so reading them costs everybody the same and little.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "Mox/Types.h"

namespace bench {
using namespace Mox::Words;

using Octets = std::span<const U8>;

/// Attributes, one behind the other.
class Stream {
 public:
  void add(Octets attribute);
  void addValues(std::span<const U32> values);
  std::size_t size() const { return ends_.size(); }
  Octets operator[](std::size_t i) const {
    const std::size_t begin = i ? ends_[i - 1] : 0;
    return {octets_.data() + begin, ends_[i] - begin};
  }
  double averageValues() const { return double(octets_.size()) / sizeof(U32) / double(size()); }

 private:
  std::vector<U8> octets_;
  std::vector<std::size_t> ends_;
};

struct Workload {
  std::string name;
  std::string distribution;  ///< for the reader of the results
  Stream distinct;           ///< one attribute of each list, in random order
  Stream drawn;              ///< attributes as paths bring them, all of lists in `distinct`
};

/// Lists of 1 to 40 values, 11 on average, both drawn from Zipf-like populations: the value and the
/// list of rank r have a share in proportion to 1/r. A fifth of the attributes are out of order.
class MadeUpLists {
 public:
  explicit MadeUpLists(U32 lists);
  Stream distinct() const;
  /// Attributes of every `parts`-th list, beginning with number `part`.
  Stream draw(U32 attributes, U32 seed, U32 part = 0, U32 parts = 1) const;
  Workload workload() const;

 private:
  std::vector<std::vector<U32>> lists_;  // by popularity, each ascending
};

/// The COMMUNITIES attributes of an MRT file, in the order of the file, the first 100,000 at most.
/// Throws std::runtime_error when there are none.
Workload fileWorkload(const std::string& file);

/// Attribute number `i` of an endless row of different lists of 11 ascending values.
void numberedAttribute(U64 i, std::vector<U32>& values);

}  // namespace bench
