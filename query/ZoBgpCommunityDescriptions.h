// Descriptions that operators publish of their communities, as the looking glass of NLNOG keeps
// them: a text file for each AS, a line for each entry.
//
//   # AS64500
//   64500:100,Customer
//   64500:200-299,Learned in region $0
//   64500:30x,Prepend x times
//   64500:6:nnn,Do not announce to AS$0
//
//   CommunityDescriptions descriptions;
//   for (const auto& fault : descriptions.add(text)) warn(fault.line, fault.text);
//   descriptions.find(BgpCommunityValue(64500 << 16 | 250))   // "Learned in region 250"
//
// 1. An entry has two numbers, of a standard community, or three, of a large one. Each is a decimal
//    number, a range, digits of which some are `x` (any digit), or `nnn` (any number).
// 2. `$0` stands for the first of these that is no plain number: the number that a range or `nnn`
//    meets, the digits that a run of `x` meets; `$1` for the second, up to `$9`.
// 3. A plain entry goes before the others, one whose first number is plain before the rest; of
//    equals the one that was added first.
// 4. Well-known communities are described by their registry, whatever a file says.
//
// Threads: many may ask while nobody adds. std::bad_alloc in `add` leaves what was there before,
// and perhaps some of the new entries.
#pragma once

#include <deque>
#include <unordered_map>
#include <vector>

#include "kinds/ZoBgpKindTable.h"

namespace Routing::Bgp {

class CommunityDescriptions {
 public:
  CommunityDescriptions() = default;
  CommunityDescriptions(const CommunityDescriptions&) = delete;  // views look into its texts
  CommunityDescriptions& operator=(const CommunityDescriptions&) = delete;

  /// A line that was passed over, counted from 1.
  struct LineFault {
    std::size_t line;
    Mox::String text;
  };
  /// Adds the entries of a file. Lines that are none are passed over and reported; empty ones and
  /// those that `#` begins are neither. The text is copied.
  std::vector<LineFault> add(std::string_view text);

  /// The description, `$0` replaced; nothing when there is none. Cost: a look-up, and without a
  /// plain entry the logarithm of the others and a comparison with each that lies around the
  /// numbers.
  std::optional<Mox::String> find(const AnyCommunity& community) const;
  /// Whether there is one.
  bool has(const AnyCommunity& community) const;
  /// Entries that were added. An entry that repeats an earlier one counts too.
  std::size_t size() const { return size_; }

 private:
  using Numbers = std::array<U32, 3>;  // the third is zero of standard ones
  struct HashNumbers {
    std::size_t operator()(const Numbers& numbers) const;
  };
  /// One number of an entry, or which it may be.
  struct Part {
    enum class Form : U8 { number, range, digits };
    Form form = Form::number;
    U32 first = 0;  // the least that it may be
    U32 last = 0;
    std::string_view digits = {};  // with `x`, as many as the number has

    bool matches(U32 number) const;
  };
  /// An entry with a part that is no plain number.
  struct Entry {
    std::array<Part, 3> parts;
    std::string_view text;
    std::size_t order = 0;  // in which it was added

    bool matches(const Numbers& numbers) const;
  };
  /// Entries, sorted by their least numbers; above them a tree of boxes, each around two of the
  /// level below. A box that is not around a community, or has only later entries than one that was
  /// found, is passed by.
  class Entries {
   public:
    void add(const Entry& entry);
    /// Lets what was added be found.
    void sort();
    /// The entry that was added first of those that match; null when none does.
    const Entry* find(const Numbers& numbers) const;

   private:
    struct Box {
      Numbers first, last;
      std::size_t order;  // of the earliest

      static Box around(const Entry& entry);
      void add(const Box& other);
      bool holds(const Numbers& numbers) const;
    };
    Box boxAt(std::size_t node) const;
    void find(std::size_t node, const Numbers& numbers, const Entry*& found) const;

    std::vector<Entry> entries_;  // the nodes from `sorted_` on
    std::size_t sorted_ = 0;      // how many are
    std::vector<Box> boxes_;  // the nodes below; those of node n are 2n and 2n + 1, the root is 1
  };
  struct OfAttribute {
    std::unordered_map<Numbers, std::string_view, HashNumbers> plain;
    std::unordered_map<U32, Entries> byFirst;
    Entries others;
  };
  struct Found {
    std::string_view text;         // null when nothing was found
    const Entry* entry = nullptr;  // unless it is plain
  };
  class Line;

  Found find(const OfAttribute& entries, const Numbers& numbers) const;
  Found findAny(const AnyCommunity& community, Numbers& numbers) const;

  std::deque<Mox::String> files_;  // where the views above look
  OfAttribute standard_, large_;
  std::vector<Entries*> grown_;  // not sorted since
  std::size_t size_ = 0;
};

}  // namespace Routing::Bgp
