// The AS path of a path (RFC 4271, sections 4.3 and 5.1.2; RFC 5065; RFC 6793).
//
//   const AsPath asPath(*path);
//   std::cout << asPath.text();              // 64500 64501 {64502,64503}
//   if (const auto as = asPath.origin()) ...
//   asPath.visit([](U32 as) { ... });        // every AS number, from the peer to the origin
//   AsSegmentReader segments = asPath.segments();
//   while (const AsSegment* segment = segments.next()) use(segment->type, segment->numbers);
//
// 1. AS numbers have 2 or 4 octets as `Path::as4` says; the octets are never guessed from. Where
//    they have 2, AS4_PATH restores the others (RFC 6793, section 4.2.3).
// 2. A malformed AS_PATH (RFC 7606, section 7.2) has no segments. An AS4_PATH that is malformed is
//    passed by, and so are its confederation segments (RFC 6793, section 6).
// 3. Nothing is allocated, except by `text`. The attributes of the path must live as long as what
//    was made of them.
//
// Threads: a reader is used by one thread at a time; the rest by any.
#pragma once

#include <iterator>
#include <optional>
#include <string>

#include "mrt/Mrt.h"

namespace Routing::Mrt {

/// The AS numbers of a segment, in the order of the octets.
class AsNumbers {
 public:
  /// Reads one number after the other.
  class Iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = U32;
    using difference_type = std::ptrdiff_t;
    using pointer = const U32*;
    using reference = U32;

    Iterator() = default;
    /// In host order.
    U32 operator*() const {
      U32 number = 0;
      for (unsigned i = 0; i < width_; ++i) number = number << 8 | at_[i];
      return number;
    }
    /// To the next number.
    Iterator& operator++() {
      at_ += width_;
      return *this;
    }
    /// To the next number, and the place before.
    Iterator operator++(int) {
      const Iterator before = *this;
      ++*this;
      return before;
    }
    friend bool operator==(const Iterator&, const Iterator&) = default;

   private:
    friend class AsNumbers;
    Iterator(const U8* at, unsigned width) : at_(at), width_(width) {}

    const U8* at_ = nullptr;
    unsigned width_ = 0;
  };

  AsNumbers() = default;
  /// REQUIRES: `width` is 2 or 4, and the octets are a multiple of it.
  AsNumbers(Octets octets, unsigned width) : octets_(octets), width_(width) {}

  std::size_t size() const { return octets_.size() / width_; }
  bool empty() const { return octets_.empty(); }
  Iterator begin() const { return {octets_.data(), width_}; }
  Iterator end() const { return {octets_.data() + octets_.size(), width_}; }
  /// REQUIRES: `index` is below `size()`.
  U32 operator[](std::size_t index) const { return *Iterator(&octets_[index * width_], width_); }
  /// The first `count`, or all when there are fewer.
  AsNumbers first(std::size_t count) const {
    return {octets_.first(std::min(count, size()) * width_), width_};
  }

 private:
  Octets octets_;
  unsigned width_ = 4;
};

/// `set`, `sequence` (RFC 4271), `confedSequence` and `confedSet` (RFC 5065), by their numbers.
enum class AsSegmentType : U8 { set = 1, sequence = 2, confedSequence = 3, confedSet = 4 };

/// Whether the AS numbers are of members of the peer's own confederation.
constexpr bool inConfederation(AsSegmentType type) { return type >= AsSegmentType::confedSequence; }

/// One step of an AS path.
struct AsSegment {
  AsSegmentType type = {};
  AsNumbers numbers;  ///< one or more
};

/// The segments of an AS path, one after the other. Two sequences in a row are one route through
/// both: a restored path changes from AS_PATH to AS4_PATH between them.
class AsSegmentReader {
 public:
  /// The next segment, valid until the next call; null behind the last.
  const AsSegment* next();

 private:
  friend class AsPath;
  AsSegmentReader(Octets path, unsigned width, std::size_t leading, Octets as4Path)
      : in_(path), width_(width), left_(leading), as4Path_(as4Path) {}

  bool takeLeading();

  Cursor in_;
  unsigned width_;
  std::size_t left_;  // of AS_PATH, counted like `AsPath::length`
  Octets as4Path_;    // comes behind; empty once it is begun
  bool restored_ = false;
  AsSegment segment_;
};

class AsPath {
 public:
  /// Reads the attributes once. REQUIRES: their octets live as long as this.
  explicit AsPath(const Path& path);

  /// Whether a segment of AS_PATH has an unknown type, no AS numbers, or more than fit. True, too,
  /// when attributes are cut short before an AS_PATH is found: it may be the lost one.
  bool malformed() const { return malformed_; }
  /// No segments: a route of the peer's own AS, or one without AS_PATH, or a malformed one.
  bool empty() const { return path_.empty(); }
  /// As routes are compared by it: a set counts one, confederations none (RFC 4271, section
  /// 9.1.2.2; RFC 5065, section 5.3).
  std::size_t length() const { return length_; }
  /// Begins before the first.
  AsSegmentReader segments() const { return {path_, width_, leading_, as4Path_}; }

  /// Calls `visit(as)` for each AS number, those of sets and confederations too.
  template <class Visit>
  void visit(const Visit& visit) const {
    AsSegmentReader reader = segments();
    while (const AsSegment* const segment = reader.next())
      for (const U32 as : segment->numbers) visit(as);
  }
  /// The AS that announced the route first: the last of the last segment outside of confederations.
  /// Nothing when that is a set, and when there is none.
  std::optional<U32> origin() const;
  /// `64500 64501 {64502,64503}`; inside of confederations `(64512 64513)` and `[64514,64515]`.
  /// Empty without segments.
  std::string text() const;

 private:
  Octets path_;
  unsigned width_;
  std::size_t length_ = 0;
  std::size_t leading_ = 0;  // as much of AS_PATH stands in front of AS4_PATH
  Octets as4Path_;           // empty unless it restores the path
  bool malformed_ = false;
};

}  // namespace Routing::Mrt
