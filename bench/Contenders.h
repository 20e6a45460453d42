// The contenders: ways to turn the octets of an attribute into a shared list.
//
// A contender is a table, empty when made. `intern(octets, paths)` finds or makes the list of these
// octets and appends a handle to it; a handle that is destroyed lets go, and the last one takes the
// list out of the table. All but the raw floor decode, sort and drop repeats first.
#pragma once

#include <algorithm>
#include <boost/flyweight.hpp>
#include <boost/flyweight/hashed_factory.hpp>
#include <boost/flyweight/no_locking.hpp>
#include <boost/flyweight/simple_locking.hpp>
#include <boost/functional/hash.hpp>
#include <memory>
#include <new>
#include <unordered_set>
#include <utility>

#include "FlatSet.h"
#include "Zonet/NetworkOrder.h"
#include "community-list/ZoBgpCommunityList.h"

namespace bench {

/// The library, as it ships: thread-safe unless the environment has DISABLE_ZOBGP_MT.
class Ours {
 public:
  static constexpr const char* name = "ours";
  using Held = Routing::Bgp::CommList::PtrConst;

  void intern(Octets octets, std::vector<Held>& paths) {
    paths.push_back(Routing::Bgp::CommList::dedupWire(table_, octets).list);
  }

 private:
  Routing::Bgp::CommListDedupTable::Ptr table_ = Routing::Bgp::commListDedupTableFactory();
};

/// Decodes to room for the values, and leaves them ascending and without repeats.
inline std::size_t decodeAscending(Octets octets, U32* values) {
  const std::size_t count = octets.size() / sizeof(U32);
  for (std::size_t i = 0; i < count; ++i)
    values[i] = Zonet::loadNetworkOrder<U32>(octets.data() + i * sizeof(U32));
  if (std::adjacent_find(values, values + count, std::greater_equal<U32>()) == values + count)
    return count;
  std::sort(values, values + count);
  return std::size_t(std::unique(values, values + count) - values);
}

using Vector = std::vector<U32>;

inline Vector decodeVector(Octets octets) {
  Vector values(octets.size() / sizeof(U32));
  values.resize(decodeAscending(octets, values.data()));
  return values;
}

/// The payload that a flyweight is made of: a single value, or the values of an attribute,
/// ascending and without repeats.
template <class Payload>
struct PayloadOf;
template <class Payload>
Payload payloadOf(Octets octets) {
  return PayloadOf<Payload>::make(octets);
}
template <>
struct PayloadOf<Vector> {
  static Vector make(Octets octets) { return decodeVector(octets); }
};
template <class Value>
struct PayloadOf<std::vector<Value>> {
  static std::vector<Value> make(Octets octets) {
    std::vector<Value> values(octets.size() / sizeof(Value));
    for (std::size_t i = 0; i < values.size(); ++i)
      values[i] = payloadOf<Value>(octets.subspan(i * sizeof(Value), sizeof(Value)));
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
    return values;
  }
};

/// Boost.Flyweight over a payload, its counts atomic in both variants. The table behind it belongs
/// to the process; it is made anew, in its place, for every contender, so that all begin empty.
template <class Locking, class Payload = Vector>
class Flyweight {
 public:
  static constexpr const char* name =
      std::is_same_v<Locking, boost::flyweights::no_locking> ? "flyweight" : "flyweight, one lock";
  struct Holder : boost::flyweights::holder_marker {
    template <class Table>
    struct apply {
      using type = apply;
      static Table& get() {
        static Table table;
        renew = [] {
          get().~Table();
          new (&get()) Table;
        };
        return table;
      }
    };
    static inline void (*renew)() = nullptr;
  };
  using Held = boost::flyweight<Payload, boost::flyweights::hashed_factory<>, Locking, Holder>;

  Flyweight() {
    if (!Holder::renew) Held::init();
    Holder::renew();
  }
  void intern(Octets octets, std::vector<Held>& paths) {
    paths.emplace_back(payloadOf<Payload>(octets));
  }
};

/// The obvious way: a set of shared pointers, from which the last handle but the set's own erases.
class SharedPointers {
 public:
  static constexpr const char* name = "unordered_set of shared_ptr";
  using List = std::shared_ptr<const Vector>;

  struct Hash {
    std::size_t operator()(const List& list) const {
      return boost::hash_range(list->begin(), list->end());
    }
  };
  struct Equal {
    bool operator()(const List& a, const List& b) const { return *a == *b; }
  };
  using Set = std::unordered_set<List, Hash, Equal>;

  class Held {
   public:
    Held(List list, Set& set) : list_(std::move(list)), set_(&set) {}
    Held(Held&&) = default;
    Held& operator=(Held&&) = default;
    ~Held() {
      if (list_ && list_.use_count() == 2) set_->erase(list_);
    }

   private:
    List list_;
    Set* set_;
  };

  void intern(Octets octets, std::vector<Held>& paths) {
    paths.emplace_back(*set_.insert(std::make_shared<const Vector>(decodeVector(octets))).first,
                       set_);
  }

 private:
  Set set_;
};

/// The floor, over the octets as they come (equal lists in different order are different), or over
/// the ascending values.
template <bool ascending>
class Floor {
 public:
  static constexpr const char* name = ascending ? "floor, sorted" : "floor, raw octets";

  class Held {
   public:
    Held(FlatSet::Record* record, FlatSet& set) : record_(record), set_(&set) {}
    Held(Held&& other) noexcept
        : record_(std::exchange(other.record_, nullptr)), set_(other.set_) {}
    Held& operator=(Held&& other) noexcept {
      std::swap(record_, other.record_);
      return *this;
    }
    ~Held() {
      if (record_) set_->release(record_);
    }

   private:
    FlatSet::Record* record_;
    FlatSet* set_;
  };

  void intern(Octets octets, std::vector<Held>& paths) {
    if constexpr (ascending) {
      U32 values[0xFFFF / sizeof(U32)];
      const std::size_t count = decodeAscending(octets, values);
      paths.emplace_back(set_.intern(values, count * sizeof(U32)), set_);
    } else {
      paths.emplace_back(set_.intern(octets.data(), octets.size()), set_);
    }
  }

 private:
  FlatSet set_;
};

using FlyweightUnlocked = Flyweight<boost::flyweights::no_locking>;
using FlyweightLocked = Flyweight<boost::flyweights::simple_locking>;
using FloorRaw = Floor<false>;
using FloorSorted = Floor<true>;

}  // namespace bench
