#include "zobgp.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <system_error>

#include "attr/ZoBgpVersion.h"
#include "kinds/ZoBgpCommunityReader.h"
#include "path/ZoBgpCommunityTables.h"
#ifdef ZOBGP_WITH_MRT
#include "mrt/AsPath.h"
#include "mrt/Input.h"
#include "mrt/NextHop.h"
#include "mrt/Nlri.h"
#endif

using namespace Routing::Bgp;
using Mox::U32;
using Mox::U8;

/// Its readers hold the tables, too: whoever collects garbage ends them in any order.
struct zobgp_tables {
  const std::shared_ptr<const CommunityTables> tables = std::make_shared<const CommunityTables>();
};

namespace {

// Room that is there already: a message about missing memory needs none.
thread_local char lastMessage[512] = "";

/// One line; where there is no room, the end of `text` is left out, which may be a file's name.
zobgp_status failed(zobgp_status status, std::string_view text, std::string_view rest = {}) {
  rest = rest.substr(0, sizeof lastMessage - 1);
  text = text.substr(0, sizeof lastMessage - 1 - rest.size());
  char* end = std::copy(text.begin(), text.end(), lastMessage);
  end = std::copy(rest.begin(), rest.end(), end);
  *end = 0;
  std::replace_if(
      lastMessage, end, [](unsigned char c) { return c < ' ' || c == 127; }, '?');
  return status;
}

/// No exception leaves the library.
template <class Step>
zobgp_status guarded(const Step& step) noexcept {
  try {
    return step();
  } catch (const std::bad_alloc&) {
    return failed(ZOBGP_MEMORY, "out of memory");
  } catch (const std::exception& error) {
    return failed(ZOBGP_FILE, error.what());
  }
}

bool isType(zobgp_type type) {
  return type == ZOBGP_STANDARD || type == ZOBGP_EXTENDED || type == ZOBGP_IPV6_EXTENDED ||
         type == ZOBGP_LARGE;
}
zobgp_status badType() { return failed(ZOBGP_ARGUMENT, "type: none of the four"); }
zobgp_status nullArgument(const char* name) { return failed(ZOBGP_ARGUMENT, name, ": null"); }

// A list's handle is the address of the interned object.
const Orv::DedupHandle* objectOf(const zobgp_list* list) {
  return reinterpret_cast<const Orv::DedupHandle*>(list);
}
/// Gives the pointer's reference to the caller.
const zobgp_list* handed(Mox::Ptr<const Orv::DedupHandle> list) {
  return reinterpret_cast<const zobgp_list*>(list.release());
}

/// Calls `use` with the list as what it is.
void visitList(const zobgp_list* list, auto use) {
  const Orv::DedupHandle* const object = objectOf(list);
  PathCommunities().forEachType([&]<class List>(const Mox::Ptr<const List>&) {
    if (&object->fwkType() == &List::type) use(static_cast<const List&>(*object));
  });
}
/// Calls `use` with each community.
void visitCommunities(const zobgp_list* list, auto use) {
  visitList(list, [&](const auto& its) {
    its.forEachValue([&](const auto& value) {
      if constexpr (std::is_same_v<decltype(value), const U32&>)
        use(AnyCommunity(BgpCommunityValue(value)));
      else
        use(AnyCommunity(value));
    });
  });
}

const zobgp_list*& listOf(zobgp_lists& lists, BgpPathAttrType type) {
  switch (zobgp_type(type)) {
    case ZOBGP_STANDARD:
      return lists.standard;
    case ZOBGP_EXTENDED:
      return lists.extended;
    case ZOBGP_IPV6_EXTENDED:
      return lists.ipv6_extended;
    case ZOBGP_LARGE:
      break;
  }
  return lists.large;
}
/// The lists of a path, each held once more.
zobgp_lists handed(const PathCommunities& path) {
  zobgp_lists lists{};
  path.forEachList([&]<class List>(const Mox::Ptr<const List>& list) {
    listOf(lists, List::pathAttribute) = handed(Mox::Ptr<const Orv::DedupHandle>(list));
  });
  return lists;
}

/// Octets for the caller's room. A text has a NUL more.
template <class Unit>
zobgp_status give(std::basic_string_view<Unit> from, bool isText, void* room, std::size_t size,
                  std::size_t* length) {
  if (!room && size) return nullArgument("room");
  if (length) *length = from.size();
  if (from.size() + isText > size)
    return failed(ZOBGP_ROOM, std::to_string(from.size() + isText) + " octets are needed");
  if (!from.empty()) std::memcpy(room, from.data(), from.size());
  if (isText) static_cast<char*>(room)[from.size()] = 0;
  return ZOBGP_OK;
}
zobgp_status giveText(std::string_view text, char* room, std::size_t size, std::size_t* length) {
  return give(text, true, room, size, length);
}
zobgp_status giveOctets(const std::string& octets, U8* room, std::size_t size,
                        std::size_t* length) {
  return give(std::string_view(octets), false, room, size, length);
}

bool isForWithdrawal(const PathFault& fault) {
  return fault.approach() == PathFaultApproach::treatAsWithdraw;
}

/// The texts of some of the faults, in the order of the octets.
std::string textOf(const PathFaults& faults, bool (*isMeant)(const PathFault&)) {
  std::string text;
  for (const PathFault& fault : faults)
    if (isMeant(fault)) text += (text.empty() ? "" : "; ") + fault.toStrep();
  return text;
}

void append(std::string& octets, const AnyCommunity& community) {
  const CommunityOctets its(community);  // they live in it
  for (const U8 octet : its.all()) octets += char(octet);
}
std::span<const U8> asOctets(const std::string& text) {
  return {reinterpret_cast<const U8*>(text.data()), text.size()};
}

zobgp_status readInto(const zobgp_tables& tables, zobgp_type type, std::span<const U8> value,
                      const zobgp_list** list) {
  PathCommunities path;
  if (const auto fault = tables.tables->read(BgpPathAttrType(type), value, path))
    return failed(ZOBGP_MALFORMED, fault->toStrep());
  zobgp_lists lists = handed(path);
  *list = listOf(lists, BgpPathAttrType(type));
  return ZOBGP_OK;
}

}  // namespace

#define ZOBGP_TEXT_OF(number) #number
#define ZOBGP_VERSION_TEXT(major, minor, patch) \
  ZOBGP_TEXT_OF(major) "." ZOBGP_TEXT_OF(minor) "." ZOBGP_TEXT_OF(patch)

const char* zobgp_version(void) {
  return ZOBGP_VERSION_TEXT(ZOBGP_VERSION_MAJOR, ZOBGP_VERSION_MINOR, ZOBGP_VERSION_PATCH);
}

const char* zobgp_message(void) { return lastMessage; }

zobgp_status zobgp_tables_new(zobgp_tables** tables) {
  if (!tables) return nullArgument("tables");
  return guarded([&] {
    *tables = new zobgp_tables;
    return ZOBGP_OK;
  });
}

void zobgp_tables_free(zobgp_tables* tables) { delete tables; }

zobgp_status zobgp_read(const zobgp_tables* tables, zobgp_type type, const uint8_t* value,
                        size_t size, const zobgp_list** list) {
  if (!tables) return nullArgument("tables");
  if (!value && size) return nullArgument("value");
  if (!list) return nullArgument("list");
  if (!isType(type)) return badType();
  return guarded([&] { return readInto(*tables, type, {value, size}, list); });
}

zobgp_status zobgp_read_all(const zobgp_tables* tables, const uint8_t* attributes, size_t size,
                            zobgp_lists* lists) {
  if (!tables) return nullArgument("tables");
  if (!attributes && size) return nullArgument("attributes");
  if (!lists) return nullArgument("lists");
  return guarded([&] {
    PathCommunities path;
    const PathFaults faults = tables->tables->readAll({attributes, size}, path);
    const std::string reasons = textOf(faults, isForWithdrawal);
    const zobgp_status status = reasons.empty() ? ZOBGP_OK : failed(ZOBGP_MALFORMED, reasons);
    *lists = handed(path);
    return status;
  });
}

zobgp_status zobgp_parse(const zobgp_tables* tables, zobgp_type type, const char* text,
                         const zobgp_list** list) {
  if (!tables) return nullArgument("tables");
  if (!text) return nullArgument("text");
  if (!list) return nullArgument("list");
  if (!isType(type)) return badType();
  return guarded([&] {
    const auto read = readAnyCommunities(text, KindTable::builtIn(), BgpPathAttrType(type));
    if (!read) return failed(ZOBGP_TEXT, read.error.text());
    std::string octets;
    for (const AnyCommunity& one : *read) append(octets, one);
    if (octets.empty()) {
      *list = nullptr;
      return ZOBGP_OK;
    }
    return readInto(*tables, type, asOctets(octets), list);
  });
}

void zobgp_list_hold(const zobgp_list* list) {
  if (list) objectOf(list)->referencesInc();
}
void zobgp_list_release(const zobgp_list* list) {
  if (list) objectOf(list)->referencesDec();
}
void zobgp_lists_release(zobgp_lists* lists) {
  if (!lists) return;
  for (const zobgp_list* list :
       {lists->standard, lists->extended, lists->ipv6_extended, lists->large})
    zobgp_list_release(list);
  *lists = {};
}

zobgp_type zobgp_list_type(const zobgp_list* list) {
  zobgp_type type = ZOBGP_STANDARD;
  visitList(list, [&](const auto& its) { type = zobgp_type(its.pathAttribute); });
  return type;
}

size_t zobgp_list_size(const zobgp_list* list) {
  std::size_t size = 0;
  visitCommunities(list, [&](const AnyCommunity&) { ++size; });
  return size;
}

zobgp_status zobgp_list_octets(const zobgp_list* list, uint8_t* octets, size_t room,
                               size_t* length) {
  if (!list) return nullArgument("list");
  return guarded([&] {
    std::string all;
    visitCommunities(list, [&](const AnyCommunity& one) { append(all, one); });
    return giveOctets(all, octets, room, length);
  });
}

zobgp_status zobgp_list_text(const zobgp_list* list, char* text, size_t room, size_t* length) {
  if (!list) return nullArgument("list");
  return guarded([&] {
    std::string all;
    visitCommunities(list, [&](const AnyCommunity& one) {
      if (!all.empty()) all += ' ';
      all += canonicalText(one);
    });
    return giveText(all, text, room, length);
  });
}

zobgp_status zobgp_text(zobgp_type type, const uint8_t* octets, size_t size, char* text,
                        size_t room, size_t* length) {
  if (!octets) return nullArgument("octets");
  if (!isType(type)) return badType();
  const std::size_t wanted = type == ZOBGP_STANDARD   ? 4
                             : type == ZOBGP_EXTENDED ? 8
                             : type == ZOBGP_LARGE    ? 12
                                                      : 20;
  return guarded([&] {
    if (size != wanted)
      return failed(ZOBGP_ARGUMENT,
                    "size: a community of this type has " + std::to_string(wanted) + " octets");
    return giveText(canonicalText(communityOf(BgpPathAttrType(type), {octets, size})), text, room,
                    length);
  });
}

zobgp_status zobgp_value(const char* text, zobgp_type* type, uint8_t* octets, size_t* length) {
  if (!text) return nullArgument("text");
  if (!octets) return nullArgument("octets");
  return guarded([&] {
    const auto read = readCommunity(text);
    if (!read) return failed(ZOBGP_TEXT, read.error.text());
    std::string all;
    append(all, *read);
    if (type) *type = zobgp_type(attributeOf(*read));
    return giveOctets(all, octets, 20, length);
  });
}

#ifdef ZOBGP_WITH_MRT

using namespace Routing::Mrt;

struct zobgp_reader {
  zobgp_reader(const zobgp_tables& its, const char* name)
      : tables(its.tables), file(name), input(file), paths(input, PathReader::Updates::all) {}
  ~zobgp_reader() { zobgp_lists_release(&path.lists); }
  zobgp_reader(const zobgp_reader&) = delete;
  zobgp_reader& operator=(const zobgp_reader&) = delete;

  const std::shared_ptr<const CommunityTables> tables;
  const std::string file;
  Input input;
  PathReader paths;
  zobgp_path path{};
  std::string peer, prefixes, withdrawn, asPath, nextHop, malformed, wrongFlags;
};

namespace {

bool hasWrongFlags(const PathFault& fault) { return fault.reason == PathFaultReason::wrongFlags; }
bool isMalformed(const PathFault& fault) { return isForWithdrawal(fault) && !hasWrongFlags(fault); }

std::string textOf(PrefixReader prefixes) {
  std::string text;
  while (const Prefix* const prefix = prefixes.next()) {
    std::string one;
    appendPrefix(one, *prefix);
    text += (text.empty() ? "" : ", ") + one;
  }
  return text;
}

zobgp_status endOf(const zobgp_reader& reader) {
  const auto fails = [&](const std::string& reason) {
    return failed(ZOBGP_FILE, reader.file, ": " + reason);
  };
  if (const auto& failure = reader.input.failure()) return fails(failure->text);
  if (const auto& truncation = reader.paths.truncation()) return fails(truncation->text());
  return ZOBGP_END;
}

}  // namespace

zobgp_status zobgp_reader_open(const zobgp_tables* tables, const char* file,
                               zobgp_reader** reader) {
  if (!tables) return nullArgument("tables");
  if (!file) return nullArgument("file");
  if (!reader) return nullArgument("reader");
  return guarded([&] {
    try {
      *reader = new zobgp_reader(*tables, file);
    } catch (const std::system_error& error) {
      return failed(ZOBGP_FILE, file, ": " + error.code().message());
    }
    return ZOBGP_OK;
  });
}

void zobgp_reader_close(zobgp_reader* reader) { delete reader; }

zobgp_status zobgp_reader_next(zobgp_reader* reader, const zobgp_path** path) {
  if (!reader) return nullArgument("reader");
  if (!path) return nullArgument("path");
  return guarded([&] {
    const Path* next = reader->paths.next();
    while (next && next->stateChange) next = reader->paths.next();
    if (!next) return endOf(*reader);
    PathCommunities communities;
    const PathFaults faults = reader->tables->readAll(next->attributes, communities);
    reader->peer = addressText(next->peer.address);
    reader->prefixes = textOf(PrefixReader::announced(*next));
    reader->withdrawn = textOf(PrefixReader::withdrawn(*next));
    reader->asPath = AsPath(*next).text();
    reader->nextHop = addressText(nextHop(*next));
    reader->malformed = textOf(faults, isMalformed);
    reader->wrongFlags = textOf(faults, hasWrongFlags);
    zobgp_path& its = reader->path;
    zobgp_lists_release(&its.lists);
    const auto origin = AsPath(*next).origin();
    its = {.size = sizeof its,
           .seconds = next->seconds,
           .microseconds = next->microseconds.value_or(0),
           .peer_as = next->peer.asNumber,
           .peer = reader->peer.c_str(),
           .prefixes = reader->prefixes.c_str(),
           .withdrawn = reader->withdrawn.c_str(),
           .as_path = reader->asPath.c_str(),
           .next_hop = reader->nextHop.c_str(),
           .origin_as = origin ? int64_t(*origin) : -1,
           .record = reader->paths.position().record,
           .lists = handed(communities),
           .malformed = reader->malformed.c_str(),
           .wrong_flags = reader->wrongFlags.c_str()};
    *path = &its;
    return ZOBGP_OK;
  });
}

#else

zobgp_status zobgp_reader_open(const zobgp_tables*, const char*, zobgp_reader**) {
  return failed(ZOBGP_FILE, "this library was built without the reader of files");
}
void zobgp_reader_close(zobgp_reader*) {}
zobgp_status zobgp_reader_next(zobgp_reader*, const zobgp_path**) {
  return failed(ZOBGP_FILE, "this library was built without the reader of files");
}

#endif
