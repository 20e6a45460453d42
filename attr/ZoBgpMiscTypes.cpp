#include "attr/ZoBgpMiscTypes.h"

#include "Mox/Assert.h"
#include "Mox/Exception.h"

namespace Routing::Bgp {
namespace {

constexpr const char* outOfBounds = "value < min or > max not allowed";

/// One way to cut the word: `count` fields of `bits` bits, the first at bit 0.
struct View {
  U32 count;
  U32 bits;

  U32 mask() const { return (1u << bits) - 1; }
  U32 shift(U8 index, const char* operation) const {
    if (index >= count) throw Mox::RangeException(operation);
    return index * bits;
  }
  U32 read(U32 word, U8 index, const char* operation) const {
    return word >> shift(index, operation) & mask();
  }
  void write(U32& word, U8 index, U32 field, const char* operation) const {
    const U32 at = shift(index, operation);
    word = (word & ~(mask() << at)) | field << at;
  }
};

constexpr View flags{16, 1};
constexpr View octets{4, 8};
constexpr View halves{2, 16};

}  // namespace

const Mox::Type BgpMaybeU63::type{
    "Routing::Bgp::BgpMaybeU63",
    nullptr,
    {Mox::attribute<&BgpMaybeU63::toStrep>("toStrep"),
     Mox::attribute<&BgpMaybeU63::isUnspecified>("isUnspecified"),
     Mox::attribute<&BgpMaybeU63::min>("min"), Mox::attribute<&BgpMaybeU63::max>("max"),
     Mox::attribute<&BgpMaybeU63::bestpathCompareValue>("bestpathCompareValue"),
     Mox::attribute<&BgpMaybeU63::bestpathCompareUnspecifiedValue>(
         "bestpathCompareUnspecifiedValue"),
     Mox::operation("checkValue")}};

const Mox::Type BgpExtCommPktSubtype::type{
    "Routing::Bgp::BgpExtCommPktSubtype", &BgpMaybeU63::type, {Mox::operation("valueIs")}};

const Mox::Type BgpDenseU32Attr::type{
    "Routing::Bgp::BgpDenseU32Attr",
    nullptr,
    {Mox::attribute<&BgpDenseU32Attr::value>("value"), Mox::operation("valueBool"),
     Mox::operation("valueU8"), Mox::operation("valueU16")}};

BgpMaybeU63::operator U64() const {
  MOX_ASSERT(!isUnspecified(), "Caller must check isUnspecified() before getting value()");
  return value_.word();
}

void BgpMaybeU63::checkValue() {
  if (isUnspecified()) return;
  const U64 number = value_.word();
  if (number >= min() && number <= max()) return;
  value_ = Orv::MaybeU63();
  throw Mox::RangeException(outOfBounds);
}

void BgpMaybeU63::numberIs(U64 number) {
  value_ = Orv::MaybeU63();
  // Stored, the top bit would read as "unspecified" and pass the check.
  if (number & nullBit) throw Mox::RangeException(outOfBounds);
  value_ = Orv::MaybeU63(number);
  checkValue();
}

bool BgpDenseU32Attr::valueBool(U8 index) const {
  return flags.read(value_, index, "BgpDenseU32Attr::valueBool");
}
void BgpDenseU32Attr::valueBoolIs(U8 index, bool value) {
  flags.write(value_, index, value, "BgpDenseU32Attr::valueBoolIs");
}
void BgpDenseU32Attr::valueBoolDel(U8) {
  throw Mox::NotDeletableException("BgpDenseU32Attr::valueBoolDel");
}

U8 BgpDenseU32Attr::valueU8(U8 index) const {
  return U8(octets.read(value_, index, "BgpDenseU32Attr::valueU8"));
}
void BgpDenseU32Attr::valueU8Is(U8 index, U8 value) {
  octets.write(value_, index, value, "BgpDenseU32Attr::valueU8Is");
}
void BgpDenseU32Attr::valueU8Del(U8) {
  throw Mox::NotDeletableException("BgpDenseU32Attr::valueU8Del");
}

U16 BgpDenseU32Attr::valueU16(U8 index) const {
  return U16(halves.read(value_, index, "BgpDenseU32Attr::valueU16"));
}
void BgpDenseU32Attr::valueU16Is(U8 index, U16 value) {
  halves.write(value_, index, value, "BgpDenseU32Attr::valueU16Is");
}
void BgpDenseU32Attr::valueU16Del(U8) {
  throw Mox::NotDeletableException("BgpDenseU32Attr::valueU16Del");
}

}  // namespace Routing::Bgp
