// Extended communities of an AS number and a local administrator (RFC 4360, RFC 5668).
//
//   auto comm = ExtCommAsNumber::ExtCommAsNumberIs(
//       extCommClassificationUnSpecified, ExtCommContent(0x0202000100640001), true);
//   comm->asNumber()                     // 65636
//   comm->formatAsNumber(true, false)    // "65636L"
//   comm->toStrepForPolicy(ExtComm::StrepFormat(strepFormatAsdot))   // "1.100:1"
//
//   octets            0     1      2  3  4  5  6  7
//   two-octet AS     type subtype [ AS ][  local   ]
//   four-octet AS    type subtype [    AS    ][local]
#pragma once

#include "community/ZoBgpCommunityValue.h"

namespace Routing::Bgp {

class ExtCommAsNumber : public Mox::Entity<ExtCommAsNumber, ExtCommSubtyped> {
 public:
  static const Mox::Type type;

  /// `fourByteAs` chooses the layout.
  ExtCommAsNumber(ExtCommClassification classification, const ExtCommContent& content,
                  bool fourByteAs)
      : Entity(classification, content), fourByteAs_(fourByteAs) {}
  /// A new, private object.
  static Ptr ExtCommAsNumberIs(ExtCommClassification classification, const ExtCommContent& content,
                               bool fourByteAs) {
    return Mox::makeNew<ExtCommAsNumber>(classification, content, fourByteAs);
  }

  /// Which of the two layouts it is.
  bool fourByteAs() const { return fourByteAs_; }
  /// In host order.
  U32 asNumber() const { return fourByteAs_ ? bits(16, 32) : bits(32, 16); }
  /// The local administrator of the four-octet layout.
  U16 localAdmin2Octets() const { return U16(bits(0, 16)); }
  /// The local administrator of the two-octet layout.
  U32 localAdmin4Octets() const { return bits(0, 32); }
  /// The local administrator of this object's layout.
  U32 localAdmin() const { return fourByteAs_ ? localAdmin2Octets() : localAdmin4Octets(); }

  void formatDerivedType(std::ostream& stream) const override;
  /// AS number and local administrator, after type and subtype when `format.inFull()`.
  Mox::String toStrepForPolicy(StrepFormat format) const override;

  /// The AS number (RFC 5396). With `qualifier`, one of four octets that is not in asdot notation
  /// ends in `L`, however small.
  virtual Mox::String formatAsNumber(bool qualifier, bool asdot) const;

 protected:
  /// Appends what `formatAsNumber` returns.
  void appendAsNumber(CommText& text, bool qualifier, bool asdot) const;

 private:
  const bool fourByteAs_;
};

}  // namespace Routing::Bgp
