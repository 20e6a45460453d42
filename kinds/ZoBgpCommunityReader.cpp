#include "kinds/ZoBgpCommunityReader.h"

#include <algorithm>

#include "community/ZoBgpCommunityTyped.h"
#include "kinds/ZoBgpKindCheck.h"
#include "kinds/internal/ZoBgpKindForms.h"
#include "kinds/internal/ZoBgpNearestWord.h"
#include "kinds/internal/ZoBgpTextForms.h"

namespace Routing::Bgp {
namespace {

using Attribute = BgpPathAttrType;
using Parsed = ParsedCommunity<AnyCommunity>;

/// A text with a piece of it spelt otherwise, and where errors in it lie in the original.
class Respelt {
 public:
  Respelt(std::string_view text, std::string_view piece, std::string_view spelling)
      : original_(text),
        begin_(std::size_t(piece.data() - text.data())),
        length_(piece.size()),
        newLength_(spelling.size()),
        text_(Mox::String(text.substr(0, begin_)) + Mox::String(spelling) +
              Mox::String(text.substr(begin_ + length_))) {}

  const Mox::String& text() const { return text_; }
  CommunityTextError original(CommunityTextError error) const {
    const std::size_t end = originalEnd(error.position + error.token.size());
    error.position = originalBegin(error.position);
    error.token = original_.substr(error.position, end - error.position);
    return error;
  }

 private:
  std::size_t originalBegin(std::size_t at) const {
    if (at < begin_) return at;
    return at < begin_ + newLength_ ? begin_ : at - newLength_ + length_;
  }
  std::size_t originalEnd(std::size_t at) const {
    if (at <= begin_) return at;
    return at < begin_ + newLength_ ? begin_ + length_ : at - newLength_ + length_;
  }

  const std::string_view original_;
  const std::size_t begin_, length_, newLength_;
  const Mox::String text_;
};

/// The text between two pieces of it, both included.
std::string_view from(std::string_view first, std::string_view last) {
  return {first.data(), std::size_t(last.data() + last.size() - first.data())};
}

class Reader {
 public:
  Reader(std::string_view text, const KindTable& table, std::optional<Attribute> attribute)
      : text_(text), table_(table), attribute_(attribute) {}

  Parsed read() {
    for (const auto& reading : {readShowText(text_, table_), readPolicyText(text_),
                                readOctetsText(text_), oldName(), number(), bareAdministrator()})
      if (reading) take(*reading);
    const bool recognised = first_.has_value();
    // The first part of a text of another form may still be an identifier.
    const CommunityTextParts parts(text_);
    if (!recognised || table_.find(parts[0])) takeCanonical(canonical(parts));
    if (other_)
      return textFault(text_, text_,
                       "one reading, but it may be `" + canonicalText(*first_->value, table_) +
                           "` or `" + canonicalText(*other_, table_) + '`');
    CommunityTextError& error = first_->error;
    if (!recognised && !*first_ && error.position == 0 && error.nearest.empty() &&
        !table_.find(parts[0]))
      error.nearest = nearest();
    return *first_;
  }

 private:
  /// Keeps a community before an error, the first before others.
  void take(Parsed parsed) {
    if (parsed && attribute_ && attributeOf(*parsed) != *attribute_)
      parsed = textFault(text_, text_, wanted());
    if (!first_ || (parsed && !*first_))
      first_ = std::move(parsed);
    else if (parsed && *parsed != **first_)
      other_ = parsed.value;
  }

  /// Some words of policies are identifiers too: the error that comes later in the text says more.
  void takeCanonical(Parsed parsed) {
    if (first_ && !*first_ && parsed.error.position > first_->error.position) first_.reset();
    take(std::move(parsed));
  }

  Mox::String wanted() const {
    switch (*attribute_) {
      case Attribute::community:
        return "a standard community";
      case Attribute::largeCommunity:
        return "a large community";
      default:
        return "an extended community of " +
               Mox::String(*attribute_ == Attribute::extCommunity ? "8" : "20") + " octets";
    }
  }

  /// The names that lists print and no registry has.
  TextReading oldName() const {
    for (const auto& row : Mox::enumTableOf<BgpCommunityValue>)
      if (isSameWord(text_, row.wellKnownName)) return {{row.value}};
    return {};
  }

  /// A number alone says neither of which attribute it is.
  TextReading number() const {
    const auto number = decimalNumber(text_, 64);
    if (!number) return {};
    const Mox::String extended = valueOctets(ExtCommContent(*number));
    if (*number > 0xFFFFFFFF) return textFault(text_, text_, "`" + extended + "` for octets");
    return textFault(text_, text_,
                     "one reading, but it may be `" + std::to_string(*number >> 16) + ':' +
                         std::to_string(*number & 0xFFFF) + "` or `" + extended + '`');
  }
  /// An address, or an AS number with a dot, in front of a number: a target, or an origin.
  TextReading bareAdministrator() const {
    const bool looksSo =
        text_.find_first_not_of("0123456789abcdefABCDEF:.[]") == text_.npos &&
        (text_.find_first_of(".[") != text_.npos || std::ranges::count(text_, ':') > 2);
    if (!looksSo) return {};
    const auto target = readPolicyText("RT:" + Mox::String(text_));
    if (!target || !*target) return {};
    return textFault(text_, text_,
                     "one reading, but it may be `RT:" + Mox::String(text_) +
                         "` or `SoO:" + Mox::String(text_) + '`');
  }
  static Mox::String valueOctets(const ExtCommContent& content) {
    CommText text;
    text << "0x";
    for (const U8 octet : content.octets()) text.hex(octet);
    return text.str();
  }

  /// A canonical text, in which an AS number may have a dot and an address may stand bare.
  Parsed canonical(const CommunityTextParts& parts) const {
    if (const std::string_view piece = bareAddress(parts); piece.data())
      return respelt(piece, '[' + Mox::String(piece) + ']');
    if (const std::string_view piece = asNumber(parts); piece.find('.') != piece.npos)
      if (const auto as = readAsNumber(piece)) return respelt(piece, std::to_string(as->number));
    return parseCanonical(text_, table_, attribute_);
  }

  Parsed respelt(std::string_view piece, const Mox::String& spelling) const {
    const Respelt text(text_, piece, spelling);
    auto parsed = parseCanonical(text.text(), table_, attribute_);
    if (!parsed) parsed.error = text.original(std::move(parsed.error));
    return parsed;
  }

  /// The AS number of a large community or of a kind that begins with one.
  std::string_view asNumber(const CommunityTextParts& parts) const {
    if (parts.count() < 2) return {};
    const Kind* const kind = table_.find(parts[0]);
    if (kind && kind->isExtended())
      return !kind->fields.empty() && kind->fields[0].form == KindForm::as4 ? parts[1]
                                                                            : std::string_view();
    return parts.count() == 3 ? parts[0] : std::string_view();
  }

  /// The address of a kind that begins with one and has a fixed number of parts behind it, or of an
  /// unknown kind, if it stands without brackets.
  std::string_view bareAddress(const CommunityTextParts& parts) const {
    std::size_t before = 1, behind = 1;
    if (const Kind* const kind = table_.find(parts[0]); kind && kind->isExtended()) {
      if (kind->fields.empty() || kind->fields[0].form != KindForm::ipv6) return {};
      behind = 0;
      for (const KindField& field : kind->fields.subspan(1)) {
        const KindParts takes = partsOf(field);
        if (takes.least != takes.most) return {};
        behind += takes.least;
      }
    } else if (equalIgnoringCase(parts[0], unknownTransitive) ||
               equalIgnoringCase(parts[0], unknownNonTransitive)) {
      before = 2;  // the subtype
    } else {
      return {};
    }
    if (parts.count() < before + 3 + behind) return {};  // the shortest, `::`, is three parts
    const auto piece = from(parts[before], parts[parts.count() - 1 - behind]);
    return readIp6Address(piece) ? piece : std::string_view();
  }

  /// A word that this reads and canonical texts do not have.
  Mox::String nearest() const {
    const auto end = std::min(text_.find(':'), text_.size());
    NearestWord nearest(text_.substr(0, end));
    const auto offer = [&](Attribute attribute, auto... words) {
      if (!attribute_ || *attribute_ == attribute) (nearest.offer(words), ...);
    };
    for (const auto& row : Mox::enumTableOf<BgpCommunityValue>)
      offer(Attribute::community, row.wellKnownName);
    offer(Attribute::extCommunity, "Route-Target-AS", "Route-Target-AS4", "Route-Target-IP",
          "Route-Origin-AS", "Route-Origin-AS4", "Route-Origin-IP", "Link-Bandwidth-AS",
          "TunnelEncap", "Origin-Validation-State", "DefaultGateway");
    return Mox::String(nearest.word());
  }

  const std::string_view text_;
  const KindTable& table_;
  const std::optional<Attribute> attribute_;
  std::optional<Parsed> first_;
  std::optional<AnyCommunity> other_;  // read from the same text
};

using Communities = std::vector<AnyCommunity>;

/// Whether the text begins as a form with blanks does: a show text, a rate with its unit, octets.
bool hasBlanksItself(std::string_view text) {
  const auto begins = [text](std::string_view word) {
    return equalIgnoringCase(text.substr(0, word.size()), word);
  };
  return text.find(',') == text.npos &&
         (begins("<") || begins("lbw ") || begins("Link-Bandwidth-AS:") ||
          text.substr(0, text.find(' ')).find(":0x") != text.npos);
}

/// The texts of a list, one after the other.
class ListText {
 public:
  explicit ListText(std::string_view text) : text_(text), rest_(text) {}

  /// Communities of all of the text, or the first error.
  ParsedCommunity<Communities> read(const auto& readOne) {
    Communities communities;
    skipBlanks();
    while (!rest_.empty()) {
      const std::string_view item = takeItem();
      if (!item.data()) return fault(rest_, "a double quote at the end");
      auto parsed = readOne(item);
      if (!parsed) {
        parsed.error.position += std::size_t(item.data() - text_.data());
        return {{}, std::move(parsed.error)};
      }
      communities.push_back(*parsed);
      if (!rest_.empty() && !isBetween(rest_.front()))
        return fault(rest_.substr(0, 1), "a blank or a comma behind the quotes");
      skipBlanks();
      if (!rest_.starts_with(',')) continue;
      rest_.remove_prefix(1);
      skipBlanks();
      if (rest_.empty()) return fault(rest_, "a community behind the comma");
    }
    return {std::move(communities)};
  }

 private:
  static bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
  static bool isBetween(char c) { return isBlank(c) || c == ','; }

  void skipBlanks() {
    while (!rest_.empty() && isBlank(rest_.front())) rest_.remove_prefix(1);
  }
  /// Up to what stands between items, or the text in quotes; null when these do not end.
  std::string_view takeItem() {
    const bool quoted = rest_.front() == '"';
    const std::string_view from = rest_.substr(quoted);
    const auto end =
        quoted ? from.find('"') : std::size_t(std::ranges::find_if(from, isBetween) - from.begin());
    if (end == from.npos) return {};
    rest_ = from.substr(end + quoted);
    return from.substr(0, end);
  }
  ParsedCommunity<Communities> fault(std::string_view piece, Mox::String expected) const {
    return {{}, textFault(text_, piece, std::move(expected)).error};
  }

  const std::string_view text_;
  std::string_view rest_;
};

}  // namespace

ParsedCommunity<AnyCommunity> readCommunity(std::string_view text, const KindTable& table,
                                            std::optional<BgpPathAttrType> attribute) {
  return Reader(text, table, attribute).read();
}

void CommunityVectors::add(const AnyCommunity& community) {
  if (const auto* value = std::get_if<BgpCommunityValue>(&community))
    standard.push_back(*value);
  else if (const auto* content = std::get_if<ExtCommContent>(&community))
    extended.push_back(*content);
  else if (const auto* ip6 = std::get_if<ExtCommIp6Content>(&community))
    ip6Extended.push_back(*ip6);
  else
    large.push_back(std::get<Acl::CommunityValue>(community));
}

ParsedCommunity<std::vector<AnyCommunity>> readAnyCommunities(
    std::string_view text, const KindTable& table, std::optional<BgpPathAttrType> attribute) {
  const auto readOne = [&](std::string_view item) { return readCommunity(item, table, attribute); };
  auto communities = ListText(text).read(readOne);
  if (communities) return communities;
  const auto alone = readOne(text);
  if (alone) return {Communities{*alone}};
  if (hasBlanksItself(text)) communities.error = alone.error;
  return communities;
}

ParsedCommunity<CommunityVectors> readCommunities(std::string_view text, const KindTable& table,
                                                  std::optional<BgpPathAttrType> attribute) {
  const auto communities = readAnyCommunities(text, table, attribute);
  if (!communities) return {{}, communities.error};
  CommunityVectors sorted;
  for (const AnyCommunity& community : *communities) sorted.add(community);
  return {std::move(sorted)};
}

}  // namespace Routing::Bgp
