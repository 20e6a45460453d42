#include "PathFilter.h"

#include <arpa/inet.h>

#include <algorithm>
#include <ctime>

#include "Commands.h"
#include "Descriptions.h"
#include "TextStyle.h"
#include "community/ZoBgpCommunityTextParts.h"
#include "mrt/AsPath.h"

namespace bgpcomm {

using namespace Routing::Bgp;

namespace {

/// Looks at the octets: also at those of a list that is refused.
bool carries(const CommunityValues& values, const ValuePattern& wanted) {
  for (std::size_t type = 0; type < listTypeCount; ++type) {
    const auto attribute = BgpPathAttrType(listTypes[type].attribute);
    if (values[type].empty() || !wanted.mayMatch(attribute)) continue;
    const std::size_t size = listTypes[type].valueSize;
    for (Octets left = values[type]; !left.empty(); left = left.subspan(size))
      if (wanted.matches(communityOf(attribute, left.first(size)))) return true;
  }
  return false;
}

/// Reads each text of an option; a UsageError gets the option's name.
template <class Result>
void readAll(std::vector<Result>& results, const char* option,
             const std::vector<std::string>& texts, auto read) {
  for (const std::string& text : texts) try {
      results.push_back(read(text));
    } catch (const UsageError& error) {
      throw UsageError(std::string(option) + ' ' + text + ": " + error.what());
    }
}

struct Address {
  U16 afi;
  std::array<U8, 16> octets{};
  U8 bits() const { return afi == afiIpv4 ? 32 : 128; }
};
std::optional<Address> readAddress(const std::string& text) {
  Address address{afiIpv4};
  if (inet_pton(AF_INET, text.c_str(), address.octets.data()) == 1) return address;
  address.afi = afiIpv6;
  if (inet_pton(AF_INET6, text.c_str(), address.octets.data()) == 1) return address;
  return {};
}

/// Whether the first bits of two addresses are equal.
bool startAlike(const std::array<U8, 16>& a, const std::array<U8, 16>& b, unsigned bits) {
  const unsigned whole = bits / 8;
  if (!std::equal(a.begin(), a.begin() + whole, b.begin())) return false;
  return bits % 8 == 0 || ((a[whole] ^ b[whole]) & (0xFF00 >> bits % 8) & 0xFF) == 0;
}

std::optional<U32> readAs(std::string_view text) {
  if (text.size() > 2 && (text[0] | 0x20) == 'a' && (text[1] | 0x20) == 's') text.remove_prefix(2);
  if (const auto dot = text.find('.'); dot != text.npos) {
    const auto high = decimalNumber(text.substr(0, dot), 16);
    const auto low = decimalNumber(text.substr(dot + 1), 16);
    if (!high || !low) return {};
    return U32(*high << 16 | *low);
  }
  const auto number = decimalNumber(text, 32);
  if (!number) return {};
  return U32(*number);
}

U32 readOrigin(const std::string& text) {
  const auto as = readAs(text);
  if (!as) throw UsageError("expected an AS number");
  return *as;
}

/// Seconds since 1970: as such, or `2026-07-30`, `2026-07-30T14:00`, `2026-07-30T14:00:05Z`, in
/// UTC.
U32 readTime(const std::string& text) {
  // As many digits as a year or a date has are more likely one.
  const bool isDate = text.size() == 4 || text.size() == 8;
  if (const auto seconds = decimalNumber(text, 32); seconds && !isDate) return U32(*seconds);
  // The longest form, of which text has the first part.
  constexpr std::string_view form = "0000-00-00T00:00:00Z";
  bool fits = text.size() == 10 || text.size() == 16 || text.size() == 19 || text.size() == 20;
  for (std::size_t i = 0; fits && i < text.size(); ++i)
    fits = form[i] == '0' ? text[i] >= '0' && text[i] <= '9'
                          : text[i] == form[i] || (form[i] == 'T' && text[i] == ' ');
  const std::string all = text + std::string(form.substr(std::min(text.size(), form.size())));
  const auto number = [&](std::size_t at, std::size_t size) {
    return fits ? std::stoi(all.substr(at, size)) : 0;
  };
  std::tm time{};
  time.tm_year = number(0, 4) - 1900;
  time.tm_mon = number(5, 2) - 1;
  time.tm_mday = number(8, 2);
  time.tm_hour = number(11, 2);
  time.tm_min = number(14, 2);
  time.tm_sec = number(17, 2);
  const std::tm asked = time;
  const std::time_t seconds = ::timegm(&time);
  // A day that a month does not have becomes another date.
  fits = fits && asked.tm_mon == time.tm_mon && asked.tm_mday == time.tm_mday &&
         asked.tm_hour == time.tm_hour && asked.tm_min == time.tm_min &&
         asked.tm_sec == time.tm_sec && seconds >= 0 && seconds <= 0xFFFFFFFF;
  if (!fits) throw UsageError("expected a time, as 2026-07-30T14:00:00Z, or seconds since 1970");
  return U32(seconds);
}

}  // namespace

CommunityPattern readQuestion(const std::string& text) {
  const auto& kinds = textStyle().kinds;
  auto pattern =
      CommunityPattern::parse(text, kinds ? *kinds : KindTable::builtIn(), descriptions());
  if (!pattern) throw UsageError(pattern.error.text());
  return std::move(*pattern.value);
}

PathFilter::PathFilter(const PathFilterOptions& options)
    : moreSpecific_(options.moreSpecific), lessSpecific_(options.lessSpecific) {
  readAll(wanted_, "--community", options.communities, wantedCommunity);
  readAll(wanted_, "--rt", options.routeTargets, wantedRouteTarget);
  readAll(wanted_, "--large", options.large, wantedLarge);
  readAll(wanted_, "--ext", options.extended, wantedExtended);
  readAll(prefixes_, options.prefixOption, options.prefixes, [](const std::string& text) {
    const auto slash = text.find('/');
    const auto address = readAddress(text.substr(0, slash));
    if (!address) throw UsageError("expected a prefix, as 192.0.2.0/24 or 2001:db8::/32");
    WantedPrefix wanted{address->afi, {}};
    wanted.prefix.address = address->octets;
    wanted.prefix.length = address->bits();
    if (slash == text.npos) return wanted;
    const auto length = decimalNumber(std::string_view(text).substr(slash + 1), 8);
    if (!length || *length > address->bits())
      throw UsageError("expected a prefix length up to " + std::to_string(address->bits()));
    wanted.prefix.length = U8(*length);
    for (unsigned bit = wanted.prefix.length; bit < 128; ++bit)
      if (address->octets[bit / 8] & 0x80 >> bit % 8)
        throw UsageError("bits are set behind the prefix length");
    return wanted;
  });
  if ((moreSpecific_ || lessSpecific_) && prefixes_.empty())
    throw UsageError("--more-specific and --less-specific belong to --prefix");
  readAll(peers_, "--peer", options.peers, [](const std::string& text) -> WantedPeer {
    if (const auto address = readAddress(text))
      return {{}, std::string(asText(Octets(address->octets).first(address->bits() / 8)))};
    const auto as = readAs(text);
    if (!as) throw UsageError("expected an address or an AS number");
    return {as, {}};
  });
  readAll(origins_, "--origin-as", options.origins, readOrigin);
  const auto readTimes = [](const char* option, const std::string& text) -> std::optional<U32> {
    if (text.empty()) return {};
    std::vector<U32> time;
    readAll(time, option, {text}, readTime);
    return time[0];
  };
  since_ = readTimes("--since", options.since);
  until_ = readTimes("--until", options.until);
  if (!options.where.empty()) try {
      where_.emplace(readQuestion(options.where));
    } catch (const UsageError& error) {
      throw UsageError(std::string("--where: ") + error.what());
    }
}

bool PathFilter::passes(const Path& path, const CommunityValues& values, bool withdrawn) {
  if (!isInTime(path) || !isOfPeer(path.peer)) return false;
  if (!std::ranges::all_of(wanted_, [&](const ValuePattern& one) { return carries(values, one); }))
    return false;
  if (!isOfOrigin(path) || !holds(values)) return false;
  return prefixes_.empty() || wantsOneOf(PrefixReader::announced(path)) ||
         (withdrawn && wantsOneOf(PrefixReader::withdrawn(path)));
}

bool PathFilter::wantsOneOf(PrefixReader prefixes) const {
  while (const Prefix* const prefix = prefixes.next())
    if (wants(*prefix)) return true;
  return false;
}

bool PathFilter::wants(const Prefix& prefix) const {
  if (prefixes_.empty()) return true;
  const auto ip = ipPrefix(prefix);
  return ip && std::ranges::any_of(prefixes_, [&](const WantedPrefix& wanted) {
           if (wanted.afi != prefix.addressFamily.afi) return false;
           const bool fits = ip->length == wanted.prefix.length ||
                             (ip->length > wanted.prefix.length ? moreSpecific_ : lessSpecific_);
           return fits && startAlike(ip->address, wanted.prefix.address,
                                     std::min(ip->length, wanted.prefix.length));
         });
}

bool PathFilter::isInTime(const Path& path) const {
  return (!since_ || path.seconds >= *since_) && (!until_ || path.seconds < *until_);
}

bool PathFilter::isOfPeer(const Peer& peer) const {
  return peers_.empty() || std::ranges::any_of(peers_, [&](const WantedPeer& wanted) {
           return wanted.asNumber ? *wanted.asNumber == peer.asNumber
                                  : wanted.address == asText(peer.address);
         });
}

bool PathFilter::isOfOrigin(const Path& path) const {
  if (origins_.empty()) return true;
  const auto origin = AsPath(path).origin();
  return origin && std::ranges::find(origins_, *origin) != origins_.end();
}

/// Interns the lists that the question asks for.
bool PathFilter::holds(const CommunityValues& values) {
  if (!where_) return true;
  PathCommunities communities;
  for (std::size_t type = 0; type < listTypeCount; ++type) {
    const auto attribute = BgpPathAttrType(listTypes[type].attribute);
    if (!values[type].empty() && where_->pattern().asks(attribute))
      tables_.read(attribute, values[type], communities);
  }
  // A stream brings new lists without end. Nobody else holds lists of these tables.
  constexpr std::size_t mostLists = 1 << 18;
  if (where_->lists() > mostLists) where_->forgetUnused();
  return where_->matches(communities);
}

void addFilterOptions(CLI::App& command, PathFilterOptions& options, bool withPrefix) {
  const auto add = [&command](const char* name, std::vector<std::string>& values, const char* form,
                              const char* help) {
    command.add_option(name, values, help)->allow_extra_args(false)->option_text(form);
  };
  const auto addOne = [&command](const char* name, std::string& value, const char* form,
                                 const char* help) {
    command.add_option(name, value, help)->option_text(form);
  };
  addOne("--where", options.where, "QUESTION",
         "Only paths of which it holds: values and\n"
         "patterns (65000:*, 65000:100..199, mac-mobility)\n"
         "joined by and, or, not; see docs/questions.md");
  add("--community", options.communities, "VALUE",
      "Only paths with this one, in any text that is\n"
      "printed (65000:100, no-export, RT:65000:100);\n"
      "filters given again, or together, must all hold");
  add("--rt", options.routeTargets, "VALUE",
      "Only with this route target (65000:100,\n192.0.2.1:100, route-target-as4:65000:100)");
  add("--large", options.large, "VALUE", "Only with this large community (65000:1:2)");
  add("--ext", options.extended, "VALUE",
      "Only with this extended community, also in hex\n"
      "(16 digits, or 40 of an IPv6-address-specific one)");
  if (withPrefix)
    add("--prefix", options.prefixes, "PREFIX",
        "Only this prefix, or one of several (10.0.0.0/8,\n2001:db8::/32; an address alone is a "
        "host's)");
  command.add_flag("--more-specific", options.moreSpecific, "Also prefixes inside");
  command.add_flag("--less-specific", options.lessSpecific, "Also prefixes around");
  add("--peer", options.peers, "PEER", "Only of this peer, by address or AS number");
  add("--origin-as", options.origins, "AS", "Only paths that this AS originates");
  addOne("--since", options.since, "TIME",
         "Only from then on (2026-07-30T14:00:00Z, in UTC;\nseconds since 1970)");
  addOne("--until", options.until, "TIME", "Only before then");
}

}  // namespace bgpcomm
