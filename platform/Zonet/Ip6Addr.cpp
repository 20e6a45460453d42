#include "Zonet/Ip6Addr.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cstring>

#include "Mox/Exception.h"
#include "Mox/Text.h"

namespace Zonet {

static_assert(Ip6Addr::longestText + 1 == INET6_ADDRSTRLEN);

char* Ip6Addr::toChars(char* at) const {
  inet_ntop(AF_INET6, octets_.data(), at, INET6_ADDRSTRLEN);
  return at + std::strlen(at);
}

Mox::String Ip6Addr::toStrep() const {
  char text[INET6_ADDRSTRLEN];
  return {text, toChars(text)};
}

std::ostream& operator<<(std::ostream& stream, const Ip6Addr& address) {
  return Mox::writeText(stream, address.toStrep());
}

void sequenceToValue(std::string_view text, Ip6Addr& address) {
  // The parser below ends at the first zero octet, so a text with one inside is refused here.
  char terminated[INET6_ADDRSTRLEN] = {};
  Ip6Addr::Octets octets;
  const bool fits = text.size() < sizeof terminated && text.find('\0') == text.npos;
  if (fits) std::copy(text.begin(), text.end(), terminated);
  if (!fits || inet_pton(AF_INET6, terminated, octets.data()) != 1)
    throw Mox::ParseException("not an IPv6 address: \"" + Mox::String(text) + "\"", 0);
  address = Ip6Addr(octets);
}

}  // namespace Zonet
