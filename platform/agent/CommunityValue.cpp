#include "agent/CommunityValue.h"

template <>
const Mox::AllocationTracker& Mox::storageTracker<Acl::CommunityValue>() {
  static constinit const Mox::AllocationTracker tracker("Acl::CommunityValue (vector storage)");
  return tracker;
}

Mox::String Acl::valueToStrep(const CommunityValue& value) {
  return std::to_string(value.globalAdmin()) + ':' + std::to_string(value.localData1()) + ':' +
         std::to_string(value.localData2());
}
