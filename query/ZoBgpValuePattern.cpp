#include "query/ZoBgpValuePattern.h"

#include <algorithm>
#include <bit>

#include "kinds/ZoBgpKindCheck.h"

namespace Routing::Bgp {
namespace {

using Attribute = BgpPathAttrType;
using Shape = ValuePattern::Shape;
using Parts = std::vector<std::string_view>;

// No community has as many parts. What is longer is refused before all its readings are tried.
constexpr std::size_t mostParts = 80;

constexpr std::size_t mostRanges = 4096;  // of a set

CommunityTextError faultOf(std::string_view text, std::string_view piece, Mox::String expected) {
  return {std::size_t(piece.data() - text.data()), Mox::String(piece), std::move(expected)};
}

/// Where the value of a community begins that is as long.
std::size_t valueOffset(const Kind& kind) { return kind.isExtended() ? 2 : 0; }

/// The text between colons that stand neither in brackets nor in braces. REQUIRES: not more colons
/// than memory; none are left out.
Parts split(std::string_view text) {
  Parts parts;
  std::size_t begin = 0;
  char end = 0;  // of what is open
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    if (end)
      end = c == end ? '\0' : end;
    else if (c == '[' || c == '{')
      end = c == '[' ? ']' : '}';
    else if (c == ':')
      parts.push_back(text.substr(begin, at - begin)), begin = at + 1;
  }
  parts.push_back(text.substr(begin));
  return parts;
}

std::string_view trimmed(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  return text;
}

/// Whether numbers of the form are ordered as its texts are, so that a range means something.
bool isOrdered(KindForm form) {
  switch (form) {
    case KindForm::integer:
    case KindForm::as2:
    case KindForm::as4:
    case KindForm::ipv4:
    case KindForm::enumeration:
    case KindForm::float32:
      return true;
    default:
      return false;
  }
}

/// The bits of a float as a number that is ordered as the rates are.
U64 orderedRate(U32 bits) { return bits & 0x80000000 ? U32(~bits) : bits | 0x80000000; }

U64 numberOf(const KindFieldValue& value) {
  return value.field().form == KindForm::float32 ? orderedRate(U32(value.number()))
                                                 : value.number();
}

/// A mark that no community's text has.
bool looksLikePattern(std::string_view text) {
  return text.find_first_of("*{/") != text.npos || text.find("..") != text.npos;
}

/// Reads a text as a pattern of one row: every way in which its parts can be fields.
class RowReader {
 public:
  /// REQUIRES: parts are pieces of text, behind the identifier if the row has one.
  RowReader(const Kind& kind, std::string_view text, std::span<const std::string_view> parts)
      : kind_(kind), text_(text), parts_(parts) {}

  /// Adds the shapes; says why there are none.
  std::optional<CommunityTextError> addTo(std::vector<Shape>& shapes) {
    Shape shape{kind_.attribute};
    if (kind_.isExtended()) {
      shape.octets[0] = *kind_.type;
      shape.octets[1] = *kind_.subtype;
      shape.mask[0] = shape.mask[1] = 0xFF;
    }
    const std::size_t before = shapes.size();
    assign(shape, 0, 0, shapes);
    if (shapes.size() > before) return {};
    return fault_;
  }

 private:
  using Ranges = std::vector<std::pair<U64, U64>>;

  void assign(const Shape& shape, std::size_t field, std::size_t part, std::vector<Shape>& shapes) {
    if (field == kind_.fields.size()) {
      if (part == parts_.size())
        shapes.push_back(shape);
      else
        fail(parts_[part], "the end: the form is `" + canonicalForm(kind_) + '`');
      return;
    }
    const KindField& row = kind_.fields[field];
    if (row.form == KindForm::reserved)
      return assign(with(shape, row, {}), field + 1, part, shapes);
    if (row.optional) assign(with(shape, row, {}), field + 1, part, shapes);
    if (part == parts_.size()) {
      fail(text_.substr(text_.size()), "more parts: the form is `" + canonicalForm(kind_) + '`');
      return;
    }
    if (parts_[part] == "*") return assign(withAny(shape, row), field + 1, part + 1, shapes);
    if (isPrefix(parts_[part], row) && row.form == KindForm::ipv6) {
      if (const auto address = readIp6Prefix(parts_[part], row, shape))
        assign(*address, field + 1, part + 1, shapes);
      return;
    }
    if (isOfSeveral(parts_[part], row)) {
      if (auto ranges = readSet(parts_[part], row))
        assign(withNumbers(shape, row, std::move(*ranges)), field + 1, part + 1, shapes);
      return;
    }
    for (std::size_t end = part; end < parts_.size(); ++end) {
      const std::string_view piece(
          parts_[part].data(),
          std::size_t(parts_[end].data() + parts_[end].size() - parts_[part].data()));
      std::array<U8, 20> value{};
      if (readLiteral(piece, row, value))
        assign(with(shape, row, value), field + 1, end + 1, shapes);
    }
  }

  /// Keeps the error that comes last in the text.
  bool fail(std::string_view piece, Mox::String expected) {
    auto fault = faultOf(text_, piece, std::move(expected));
    if (!fault_ || fault.position > fault_->position) fault_ = std::move(fault);
    return false;
  }

  // The shape and one field more.

  Shape with(Shape shape, const KindField& field, const std::array<U8, 20>& value) const {
    const std::size_t before = valueOffset(kind_);
    for (U32 bit = field.bit; bit < field.end(); ++bit) {
      const U8 one = U8(0x80 >> bit % 8);
      shape.mask[before + bit / 8] |= one;
      shape.octets[before + bit / 8] |= value[bit / 8] & one;
    }
    return shape;
  }
  static Shape withAny(const Shape& shape, const KindField& field) {
    // A rate that is no number makes its community malformed.
    return field.form == KindForm::float32
               ? withNumbers(shape, field, {{orderedRate(0xFF800000), orderedRate(0x7F800000)}})
               : shape;
  }
  static Shape withNumbers(Shape shape, const KindField& field, Ranges ranges) {
    shape.numbers.push_back(
        {field.bit, U8(field.bits), field.form == KindForm::float32, std::move(ranges)});
    return shape;
  }

  // Reading.

  static bool isPrefix(std::string_view text, const KindField& field) {
    return (field.form == KindForm::ipv4 || field.form == KindForm::ipv6) &&
           text.find('/') != text.npos && !text.starts_with('{');
  }
  static bool isOfSeveral(std::string_view text, const KindField& field) {
    return text.starts_with('{') || text.find("..") != text.npos || isPrefix(text, field);
  }

  bool readLiteral(std::string_view text, const KindField& field, std::array<U8, 20>& value) {
    Mox::String plain(text);
    // An AS number may have a dot.
    if (const auto dot = text.find('.');
        dot != text.npos && (field.form == KindForm::as2 || field.form == KindForm::as4)) {
      const auto high = decimalNumber(text.substr(0, dot), 16);
      const auto low = decimalNumber(text.substr(dot + 1), 16);
      if (!high || !low) return fail(text, "an AS number");
      plain = std::to_string(*high << 16 | *low);
    }
    const auto fault =
        readKindField(plain, field, std::span(value).first(kind_.octets() - valueOffset(kind_)));
    return !fault || fail(text, fault->expected);
  }

  std::optional<U64> readNumber(std::string_view text, const KindField& field) {
    std::array<U8, 20> value{};
    if (!readLiteral(text, field, value)) return {};
    std::array<U8, 20> octets{};
    std::copy_n(value.begin(), octets.size() - valueOffset(kind_),
                octets.begin() + std::ptrdiff_t(valueOffset(kind_)));
    const auto community = communityOf(kind_.attribute, std::span(octets).first(kind_.octets()));
    return numberOf(KindFieldValue(CommunityOctets(community), field));
  }

  /// `{1,5,9..12}`, or one of its elements; nothing, and the fault is kept, for anything else.
  std::optional<Ranges> readSet(std::string_view text, const KindField& field) {
    if (field.bits > 64)
      return fail(text, "no set or range of such fields: `or` joins patterns"), std::nullopt;
    Ranges ranges;
    if (!text.starts_with('{')) {
      if (!readElement(text, field, ranges)) return {};
      return ranges;
    }
    if (!text.ends_with('}')) return fail(text, "a set that ends with `}`"), std::nullopt;
    std::string_view rest = text.substr(1, text.size() - 2);
    while (true) {
      const auto comma = rest.find(',');
      if (!readElement(trimmed(rest.substr(0, comma)), field, ranges)) return {};
      if (ranges.size() > mostRanges)
        return fail(rest, "at most " + std::to_string(mostRanges) + " elements"), std::nullopt;
      if (comma == rest.npos) return ranges;
      rest.remove_prefix(comma + 1);
    }
  }

  bool readElement(std::string_view text, const KindField& field, Ranges& ranges) {
    if (isPrefix(text, field)) return readIp4Prefix(text, field, ranges);
    const auto dots = text.find("..");
    const auto first = readNumber(text.substr(0, dots), field);
    if (!first) return false;
    if (dots == text.npos) return ranges.emplace_back(*first, *first), true;
    if (!isOrdered(field.form))
      return fail(text, "no range: `" + Mox::String(field.name) + "` is not ordered");
    const auto last = readNumber(text.substr(dots + 2), field);
    if (!last) return false;
    if (*first > *last) return fail(text, "a range whose end is not below its begin");
    return ranges.emplace_back(*first, *last), true;
  }

  bool readIp4Prefix(std::string_view text, const KindField& field, Ranges& ranges) {
    const auto slash = text.find('/');
    const auto address = readNumber(text.substr(0, slash), field);
    if (!address) return false;
    const auto length = decimalNumber(text.substr(slash + 1), 8);
    if (!length || *length > 32) return fail(text.substr(slash + 1), "a prefix length up to 32");
    const U64 behind = U64{0xFFFFFFFF} >> *length;
    if (*address & behind) return fail(text, "a prefix without bits behind its length");
    return ranges.emplace_back(*address, *address | behind), true;
  }

  /// The shape, and the bits of the prefix.
  std::optional<Shape> readIp6Prefix(std::string_view text, const KindField& field,
                                     const Shape& shape) {
    const auto slash = text.find('/');
    std::array<U8, 20> value{};
    if (!readLiteral(text.substr(0, slash), field, value)) return {};
    const auto length = decimalNumber(text.substr(slash + 1), 8);
    if (!length || *length > 128)
      return fail(text.substr(slash + 1), "a prefix length up to 128"), std::nullopt;
    KindField prefix = field, behind = field;
    prefix.bits = U16(*length);
    behind.bit = U16(prefix.end());
    behind.bits = U16(128 - *length);
    const Shape rest = with(Shape{kind_.attribute}, behind, value);
    if (rest.octets != Shape{kind_.attribute}.octets)
      return fail(text, "a prefix without bits behind its length"), std::nullopt;
    return with(shape, prefix, value);
  }

  const Kind& kind_;
  const std::string_view text_;
  const std::span<const std::string_view> parts_;
  std::optional<CommunityTextError> fault_;
};

Shape exactly(const AnyCommunity& community) {
  Shape shape{attributeOf(community)};
  const CommunityOctets octets(community);
  std::ranges::copy(octets.all(), shape.octets.begin());
  std::fill_n(shape.mask.begin(), octets.all().size(), U8(0xFF));
  return shape;
}

/// A pattern in the making.
class Reader {
 public:
  Reader(std::string_view text, const KindTable& table) : text_(text), table_(table) {}

  /// The shapes, or the error.
  ParsedCommunity<std::vector<Shape>> read() {
    if (const Kind* const kind = table_.find(text_); kind && kind->isExtended())
      return {std::vector{ofKind(*kind)}};
    const auto community = readCommunity(text_, table_);
    if (community) return {std::vector{exactly(*community)}};
    if (!looksLikePattern(text_)) return {{}, community.error};
    const Parts parts = split(text_);
    if (parts.size() > mostParts) return {{}, faultOf(text_, text_, "a pattern of few parts")};
    for (const Kind* kind : rowsOf(parts)) readRow(*kind, parts);
    if (!shapes_.empty()) return {std::move(shapes_)};
    if (fault_) return {{}, std::move(*fault_)};
    return {{}, noRow(parts)};
  }

 private:
  static Shape ofKind(const Kind& kind) {
    Shape shape{kind.attribute};
    shape.octets[0] = *kind.type;
    shape.octets[1] = *kind.subtype;
    shape.mask[0] = shape.mask[1] = 0xFF;
    return shape;
  }

  /// The rows that the text may mean.
  std::vector<const Kind*> rowsOf(const Parts& parts) const {
    std::vector<const Kind*> rows;
    if (const Kind* const kind = table_.find(parts[0]); kind && kind->isExtended()) {
      rows.push_back(kind);
    } else if (const std::string_view stem = stemOf(parts[0]); !stem.empty() && parts.size() > 1) {
      for (const std::string_view end : endsOf(parts[1]))
        if (const Kind* const row = table_.find(Mox::String(stem) + Mox::String(end)))
          rows.push_back(row);
    } else if (isNumeric(parts[0]) && (parts.size() == 2 || parts.size() == 3)) {
      for (const Kind* const row : table_.rows())
        if (row->identifier.empty() &&
            row->attribute ==
                (parts.size() == 2 ? Attribute::community : Attribute::largeCommunity))
          rows.push_back(row);
    }
    return rows;
  }
  static std::string_view stemOf(std::string_view word) {
    if (equalIgnoringCase(word, "RT")) return "route-target";
    return equalIgnoringCase(word, "SoO") ? "route-origin" : "";
  }
  /// The ends of identifiers whose first field may be this.
  static std::vector<std::string_view> endsOf(std::string_view administrator) {
    if (administrator == "*") return {"-as2", "-as4", "-ipv4", "-ipv6"};
    if (administrator.find('[') != administrator.npos) return {"-ipv6"};
    const std::string_view first =
        administrator.substr(0, std::min(administrator.find(".."), administrator.find(',')));
    if (std::ranges::count(first, '.') == 3) return {"-ipv4"};
    return {"-as2", "-as4"};
  }
  static bool isNumeric(std::string_view part) {
    return !part.empty() && (part[0] == '*' || part[0] == '{' || kindCheck::isDigit(part[0]));
  }

  void readRow(const Kind& kind, const Parts& parts) {
    const std::size_t words = kind.identifier.empty() ? 0 : 1;
    RowReader reader(kind, text_, std::span(parts).subspan(words));
    auto fault = reader.addTo(shapes_);
    if (fault && (!fault_ || fault->position > fault_->position)) fault_ = std::move(fault);
  }

  CommunityTextError noRow(const Parts& parts) const {
    if (isNumeric(parts[0]))
      return faultOf(
          text_, text_,
          "two parts of a standard community, or three of a large one, or an identifier");
    auto fault = faultOf(text_, parts[0], "the identifier of a kind of community");
    fault.nearest = readCommunity(parts[0], table_).error.nearest;
    return fault;
  }

  const std::string_view text_;
  const KindTable& table_;
  std::vector<Shape> shapes_;
  std::optional<CommunityTextError> fault_;
};

bool matchesNumbers(const KindFieldValue& value, const Shape::Numbers& numbers) {
  const U64 number = numbers.rates ? orderedRate(U32(value.number())) : value.number();
  return std::ranges::any_of(numbers.ranges, [number](const auto& range) {
    return number >= range.first && number <= range.second;
  });
}

bool matchesShape(const CommunityOctets& octets, const Shape& shape) {
  const auto all = octets.all();
  for (std::size_t i = 0; i < all.size(); ++i)
    if ((all[i] & shape.mask[i]) != shape.octets[i]) return false;
  return std::ranges::all_of(shape.numbers, [&](const Shape::Numbers& numbers) {
    const KindField field{.name = {}, .bit = numbers.bit, .bits = numbers.bits};
    return matchesNumbers(KindFieldValue(octets, field), numbers);
  });
}

}  // namespace

ParsedCommunity<ValuePattern> ValuePattern::parse(std::string_view text, const KindTable& table) {
  ValuePattern pattern;
  if (equalIgnoringCase(text, "unknown")) {
    pattern.unknownTo_.push_back(table);
    return {std::move(pattern)};
  }
  auto shapes = Reader(text, table).read();
  if (!shapes) return {{}, std::move(shapes.error)};
  pattern.shapes_ = std::move(*shapes.value);
  return {std::move(pattern)};
}

ValuePattern ValuePattern::of(const AnyCommunity& community) {
  ValuePattern pattern;
  pattern.shapes_.push_back(exactly(community));
  return pattern;
}

bool ValuePattern::matches(const AnyCommunity& community) const {
  const Attribute attribute = attributeOf(community);
  const CommunityOctets octets(community);
  return std::ranges::any_of(shapes_,
                             [&](const Shape& shape) {
                               return shape.attribute == attribute && matchesShape(octets, shape);
                             }) ||
         std::ranges::any_of(unknownTo_,
                             [&](const KindTable& table) { return !table.find(community); });
}

bool ValuePattern::mayMatch(BgpPathAttrType attribute) const {
  const bool extended =
      attribute == Attribute::extCommunity || attribute == Attribute::extCommunityIp6;
  return (extended && !unknownTo_.empty()) ||
         std::ranges::find(shapes_, attribute, &Shape::attribute) != shapes_.end();
}

void ValuePattern::add(const ValuePattern& other) {
  shapes_.insert(shapes_.end(), other.shapes_.begin(), other.shapes_.end());
  unknownTo_.insert(unknownTo_.end(), other.unknownTo_.begin(), other.unknownTo_.end());
}

}  // namespace Routing::Bgp
