// The route targets in use. An agent tells its peers of them, to be sent only the routes of VPNs
// that somebody here imports (RFC 4684), and imports routes by them.
#pragma once

#include <map>
#include <mutex>

#include "community-list/ZoBgpCommunityList.h"

namespace example {

using namespace Mox::Words;
using namespace Routing::Bgp;

/// Hears of every set of route targets that comes into use or goes out of it, on the thread that
/// interns the first list with it or lets go of the last: on several at a time, so it locks.
class RouteTargetsInUse final : public NotifyingRtExtCommListCollection::NotifieeConst {
 public:
  struct Figures {
    U64 come = 0, gone = 0;  ///< sets
    U64 routeTargets = 0;    ///< in use now, each counted once
  };

  explicit RouteTargetsInUse(NotifyingRtExtCommListCollection::Ptr sets) : sets_(std::move(sets)) {
    notifierIs(sets_);
  }
  ~RouteTargetsInUse() override { notifierIs(nullptr); }  // before the members that it uses

  void onRtExtCommList(const RtExtCommListLifeTimeNotifier::PtrConst& set) override {
    const bool come = sets_->rtExtCommListHas(set);
    const std::lock_guard guard(mutex_);
    ++(come ? figures_.come : figures_.gone);
    // A set that goes has no users left. A raw pointer gives it none.
    for (const ExtComm::PtrConst& target : set->rtExtCommListRawPtr()->commVector())
      count(target->getContent(), come);
  }

  Figures figures() const {
    const std::lock_guard guard(mutex_);
    Figures figures = figures_;
    figures.routeTargets = uses_.size();
    return figures;
  }

 private:
  /// The coming of a set is heard before its going, so no count falls below 0.
  void count(const ExtCommContent& target, bool come) {
    U64& sets = uses_[target];
    sets += come ? 1 : -1;
    if (sets == 0) uses_.erase(target);
  }

  const NotifyingRtExtCommListCollection::Ptr sets_;
  mutable std::mutex mutex_;  // guards all below
  Figures figures_;
  std::map<ExtCommContent, U64> uses_;  // sets that a route target is in
};

}  // namespace example
