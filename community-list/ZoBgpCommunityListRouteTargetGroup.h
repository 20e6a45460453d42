// The route targets of a path: a group like those of other classifications, which has a notifier
// while it is interned. Others hear through it of the sets of route targets that are in use; see
// ZoBgpCommunityListRouteTargets.h.
//
// Threads: as all groups. The notifier may be read from any thread.
#pragma once

#include <atomic>

#include "community-list/ZoBgpCommunityListExtended.h"

namespace Routing::Bgp {

class RtExtCommListLifeTimeNotifiee;
class RtExtCommListLifeTimeNotifier;

class RtExtCommClassificationList final
    : public TailEntity<RtExtCommClassificationList, ExtCommClassificationList> {
 public:
  static const Mox::Type type;

  /// Private and empty. REQUIRES: the classification is that of route targets.
  explicit RtExtCommClassificationList(ExtCommClassification classification)
      : TailEntity(classification) {}
  ~RtExtCommClassificationList() override;
  /// A new, empty group.
  static Ptr RtExtCommClassificationListIs(ExtCommClassification classification) {
    return Mox::makeNew<RtExtCommClassificationList>(classification);
  }

  /// The notifier, or null: there is one from the return of the call that interned the group until
  /// the group's last release. From any thread that holds the group, or that is told of its end.
  Mox::Ptr<RtExtCommListLifeTimeNotifier> getLifeTimeNotifier() const;
  /// The group holds the notifier and the notifier the group; taking it away breaks the circle.
  void lifeTimeNotifierIs(const Mox::Ptr<RtExtCommListLifeTimeNotifier>& notifier);

 private:
  friend class RtExtCommListLifeTimeNotifiee;

  std::atomic<RtExtCommListLifeTimeNotifier*> lifeTimeNotifier_{nullptr};  // owned
};

}  // namespace Routing::Bgp
