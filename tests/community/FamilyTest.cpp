// What both families of extended communities do alike.
#include <gtest/gtest.h>

#include "community/ZoBgpCommunity.h"
#include "ip6/ExtCommIp6.h"

namespace Routing::Bgp {
namespace {

template <class Comm>
class Family : public testing::Test {};
using Families = testing::Types<ExtComm, ExtCommIp6>;
TYPED_TEST_SUITE(Family, Families);

// True, false and so on in the order of the flags' bits.
Mox::String formatText(const Mox::String& comm, const std::array<const char*, 6>& flags) {
  return "Value('Routing::Bgp::" + comm + "::StrepFormat', ** {'strepFormatDefault': " + flags[0] +
         ", 'strepFormatQualifier': " + flags[1] + ", 'strepFormatClassification': " + flags[2] +
         ", 'strepFormatUI': " + flags[3] + ", 'strepFormatAsdot': " + flags[4] +
         ", 'strepFormatLinkBwWeighted': " + flags[5] + "})";
}

TYPED_TEST(Family, FormatsAreTextBothWays) {
  using Format = typename TypeParam::StrepFormat;
  const Mox::String comm = std::is_same_v<TypeParam, ExtComm> ? "ExtComm" : "ExtCommIp6";
  for (U32 value = 0; value <= 0x3f; ++value) {
    std::array<const char*, 6> flags;
    for (U32 bit = 0; bit < 6; ++bit) flags[bit] = value >> bit & 1 ? "True" : "False";
    const Mox::String text = formatText(comm, flags);
    EXPECT_EQ(valueToStrep(Format(value)), text);
    Format read(~value & 0x3f);
    sequenceToValue(text, read);
    EXPECT_EQ(read.value(), value);
  }
  Format format(5);
  for (const U32 value : {0x40u, 0xFFFFFFFFu}) {
    try {
      format.valueIs(value);
      ADD_FAILURE() << value;
    } catch (const Mox::RangeException& error) {
      EXPECT_STREQ(error.what(), "StrepFormat::value > 0x3f not allowed");
    }
  }
  EXPECT_EQ(format, Format(5));
}

// A text is refused from any place where it departs, and the place is said.
TYPED_TEST(Family, FormatsRefuseOtherText) {
  using Format = typename TypeParam::StrepFormat;
  const Mox::String good = valueToStrep(Format(0x2a));
  for (std::size_t place = 0; place <= good.size(); ++place) {
    Mox::String changed = good, cut = good.substr(0, place), longer = good;
    if (place < good.size()) changed[place] ^= 1;
    longer.insert(place, 1, '\0');
    for (const Mox::String& text : {changed, cut, longer}) {
      Format format(7);
      if (text == good) continue;
      try {
        sequenceToValue(text, format);
        ADD_FAILURE() << text;
      } catch (const Mox::ParseException& error) {
        EXPECT_EQ(error.offset(), place) << text;
      }
      EXPECT_EQ(format, Format(7));
    }
  }
}

// A store of one record, at reference 8.
template <class Record>
struct Store : MoxStash::StoreManager {
  explicit Store(const Record& stored) : stored(stored) {}
  const void* translate(MoxStash::StoreReference reference, U64 size, U32) const override {
    return reference == 8 && size == sizeof stored ? &stored : nullptr;
  }
  void restored() const override { ++restoredObjects; }

  Record stored;
  mutable int restoredObjects = 0;
};

template <class Comm, class Record>
void checkDestash(const Record& record) {
  Store store(record);
  const typename Comm::PtrConst comm = Comm::destash(8, store);
  EXPECT_EQ(&comm->fwkType(), &Comm::type);
  EXPECT_EQ(comm->classification(), record.classification);
  EXPECT_EQ(comm->getContent(), record.content());
  EXPECT_EQ(comm->dedupState(), Orv::dedupHandleStateNeverDeduped());
  EXPECT_TRUE(comm->hasNotificationActive());
  EXPECT_EQ(store.restoredObjects, 1);

  EXPECT_THROW(Comm::destash(16, store), MoxStash::StoreException);
  store.stored.classification = 10;
  EXPECT_THROW(Comm::destash(8, store), MoxStash::StoreException);
  EXPECT_EQ(store.restoredObjects, 1);
}

TEST(Destash, GivesThePlainClassAndTellsTheManagerOnce) {
  checkDestash<ExtComm>(StoredExtComm{1, 0, 0x0002FDE800000064});
  checkDestash<ExtCommIp6>(StoredExtCommIp6{9, 0x40, 0xff, Zonet::Ip6Addr({0x20, 1}), 0x0102});
}

}  // namespace
}  // namespace Routing::Bgp
