#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "Lists.h"
#include "Restored.h"
#include "tests/path/PathProperties.h"

namespace Routing::Bgp {
namespace {

using MoxStash::FileStore;
using MoxStash::StoreWriter;
using Objects = std::vector<MoxStash::DedupHandle::PtrConst>;

struct StoreTest : ListTest {
  StoreTest() : folder(testing::TempDir() + "/store-XXXXXX"), file(mkdtemp(folder.data())) {
    file += "/lists";
  }
  ~StoreTest() override { std::filesystem::remove_all(folder); }

  // The interned list of these values.
  template <class List>
  auto list(const char* values) const {
    return tables->of<List>().dedupWire(hexOctets(values)).list;
  }
  // The lists of so many paths, an empty list of every type, and values.
  Objects addSome(U32 paths, U32 most) {
    std::mt19937 random(4);
    Objects added;
    const auto add = [&](const auto& object) {
      if (std::find(added.begin(), added.end(), object) != added.end()) return;
      writer.add(object, added.size());
      added.push_back(object);
    };
    tables->forEachKind([&]<class List>(const CommunityListTables<List>& kind) {
      add(Mox::makeNew<List>()->dedup(kind.lists()));
    });
    for (U32 i = 0; i < paths; ++i) {
      PathCommunities path;
      tables->readAll(randomPath(random, most).octets, path);
      path.forEachList(add);
    }
    add(tables->of<ExtCommList>().values()->dedupContent(ExtCommContent(0x0002FDE800000064)));
    add(tables->of<ExtCommIp6List>().values()->dedupContent({0x40, 2, {}, 1}));
    return added;
  }
  // The interned objects of all roots.
  Objects restoreAll(const FileStore& store) {
    Objects all;
    for (const auto& root : store.roots()) {
      EXPECT_EQ(root.figure, all.size());
      tables->restore(root, store, [&](const auto& object) { all.push_back(object); });
    }
    return all;
  }
  std::string refusal(const std::string& octets) {
    return raised([&] {
      const FileStore store("NAME", octets);
      store.note("paths");
      for (const auto& root : store.roots())
        tables->restore(root, store, [](const auto& object) { allTexts(object); });
    });
  }
  std::size_t filesInFolder() const {
    return std::size_t(std::distance(std::filesystem::directory_iterator(folder), {}));
  }

  StoreWriter writer;
  std::string folder, file;
};

TEST_F(StoreTest, EmptyTablesRestoreWhatWasSaved) {
  addSome(50, 20);
  writer.write(file);
  writer = {};
  EXPECT_EQ(members(), 0u);
  EXPECT_EQ(restoreAll(FileStore(file)), addSome(50, 20));
}

TEST_F(StoreTest, WritesInternedObjectsOnceAndSumsTheirFigures) {
  const auto both = list<ExtCommList>("0002fde800000064 030b000000000003");
  writer.add(both, 2);
  // The header; two communities, two references, the list; the root.
  EXPECT_EQ(writer.octets().size(), 64u + 2 * 16 + 2 * 8 + 32 + 24);
  writer.add(list<ExtCommList>("030b000000000003"));
  EXPECT_EQ(writer.octets().size(), 168u + 8 + 32 + 24) << "the community is there already";
  writer.add(both, 3);
  EXPECT_EQ(raised([&] { writer.add(both, ~U64{4}); }), "figures exceed 64 bits");
  EXPECT_EQ(writer.octets().size(), 232u);
  EXPECT_EQ(FileStore("NAME", writer.octets()).roots()[0].figure, 5u);
}

TEST_F(StoreTest, FileIsAsItsLayoutSays) {
  if constexpr (std::endian::native != std::endian::little)
    GTEST_SKIP() << "octets of a little-endian machine";
  EXPECT_EQ(writer.add(list<CommList>("fde80064 00010002"), 3), 72u);
  writer.noteIs("paths", "to be replaced");
  writer.noteIs("paths", "12");
  const std::string octets = writer.octets();
  EXPECT_EQ(
      Octets(octets.begin(), octets.end()),
      hexOctets(
          // clang-format off
      "895a53540d0a1a0a 0403020101000800"  // magic; byte order, version, octets of a reference
      "b000000000000000 e55f11c68bb7af27"  // length, checksum
      "6800000000000000 0100000000000000 9000000000000000 0100000000000000"  // roots, notes
      "020001006400e8fd"                   // 64: the elements
      "4000000000000000 4800000000000000"  // 72: the list: begin, end,
      "4800000000000000 0100000000000000"  //     capacity, sorted
      "4800000000000000 0300000000000000 0800008000000000"  // 104: the root: reference, figure, kind: a list
      "7061746873000000 3132000000000000"  // 128: a note's name, 136: its octets
      "8000000000000000 0500000000000000 8800000000000000 0200000000000000"));  // 144: where both stand
  // clang-format on
  const FileStore store("NAME", octets);
  EXPECT_EQ(store.note("paths"), "12");
  EXPECT_EQ(store.note("path"), std::nullopt);
}

TEST_F(StoreTest, NamesWhatIsWrong) {
  const auto stored = [](const auto&... lists) {
    StoreWriter fresh;
    return (fresh.add(lists, 1), ..., fresh.octets());
  };
  // Its layout is above.
  const std::string flat = stored(list<CommList>("fde80064 00010002"));
  // 64: the value, 80: its reference.
  const std::string extended = stored(list<ExtCommList>("0002fde800000064"));
  const auto both = ExtCommList::ExtCommListIs();
  for (const char* const one : {"4004fde84d000000", "4004fde84e000000"})
    both->append(list<ExtCommList>(one));
  const std::string bandwidths = stored(both);  // nothing is changed
  // 72 and 112: lists, 144: roots.
  const Octets one{0, 0, 0, 1};
  const std::string two = stored(CommList::fromWire(one).list, CommList::fromWire(one).list);
  const char* const outside = "stored reference is out of bounds";
  const std::tuple<const std::string&, U64, U32, U64, const char*> cases[] = {
      // clang-format off
      {flat, 0, 1, 0x88, "is not a store"}, {flat, 8, 4, 0x04030201, "is of the other byte order"},
      {flat, 8, 4, 0x03040102, "has no byte order that is known"}, {flat, 12, 2, 2, "is of version 2, not 1"},
      {flat, 14, 2, 4, "has references of 4 octets, not 8"}, {flat, 32, 8, 100, outside},
      {flat, 40, 8, 2, outside}, {flat, 56, 8, ~U64{0}, outside}, {flat, 72, 8, 68, outside},
      {flat, 72, 8, 80, "stored list has impossible bounds"},
      {flat, 80, 8, 70, "stored list has impossible bounds"}, {flat, 80, 8, 64 + 4 * 0x1FFFFFFFULL, outside},
      {flat, 80, 8, U64{1} << 63, "stored list is too long"},
      {flat, 64, 4, 0xFDE80064, "stored list is not in the order that it claims"},
      {flat, 104, 8, ~U64{0} - 7, outside},
      {extended, 64, 4, 10, "stored community has no such classification: 10"}, {extended, 80, 8, 68, outside},
      {bandwidths, 4, 1, 0x0D, "stored list has two different link bandwidths"},
      {two, 168, 8, 72, "two roots share their elements"}, {two, 152, 8, ~U64{0}, "the figures exceed 64 bits"},
  };
  // clang-format on
  for (const auto& [octets, at, width, number, reason] : cases) {
    std::string bad = octets;
    std::memcpy(&bad[at], &number, width);
    EXPECT_EQ(refusal(sealed(bad)), std::string("NAME: ") + reason) << at << ' ' << number;
  }
  // Sums and products that wrap.
  const FileStore store("NAME", flat);
  EXPECT_EQ(store.translate(8, ~U64{0} - 7, 1), nullptr);
  EXPECT_EQ(raised([&] { store.records<U64>(8, (U64{1} << 61) + 1); }),
            std::string("NAME: ") + outside);
}

TEST_F(StoreTest, NoDamageGoesUnseenOrEndsTheProcess) {
  addSome(3, 3);
  writer.noteIs("paths", "12");
  const std::string good = writer.octets();
  ASSERT_EQ(refusal(good), "nothing");
  for (std::size_t length = 0; length < good.size(); ++length) {
    const std::string cut = good.substr(0, length), octets = std::to_string(length);
    ASSERT_EQ(refusal(cut), length < 64 ? "NAME: is too short for a store"
                                        : "NAME: has " + octets + " octets, not the " +
                                              std::to_string(good.size()) + " that were written");
    ASSERT_EQ(refusal(sealed(cut)).find("NAME: "), 0u) << "the directory at the end is cut";
  }
  ASSERT_EQ(refusal(good + '\0').find("NAME: "), 0u);
  U32 refused = 0, restored = 0;
  const auto checkSealed = [&](const std::string& bad) {
    const std::string reason = refusal(sealed(bad));
    ++(reason == "nothing" ? restored : refused);
    ASSERT_TRUE(reason == "nothing" || reason.find("NAME: ") == 0) << reason;
  };
  for (std::size_t bit = 0; bit < 8 * good.size(); ++bit) {
    std::string bad = good;
    bad[bit / 8] = char(bad[bit / 8] ^ 1 << bit % 8);
    ASSERT_EQ(refusal(bad).find("NAME: "), 0u) << bit;
    checkSealed(bad);
  }
  for (std::size_t at = 8; at < good.size(); at += 8)
    for (const U64 word : {U64{0}, U64{1}, U64{64}, U64{good.size()}, U64{good.size() - 8},
                           U64{1} << 31, U64{1} << 61, ~U64{0}, ~U64{0} - 7}) {
      std::string bad = good;
      std::memcpy(&bad[at], &word, sizeof word);
      checkSealed(bad);
    }
  EXPECT_GT(refused, 1000u);
  EXPECT_GT(restored, 1000u) << "another community is a community";
}

TEST_F(StoreTest, FilesThatCannotBeReadAreNamed) {
  mkfifo((folder + "/pipe").c_str(), 0600);
  std::ofstream(folder + "/text") << std::string(100, 'x');
  const auto reason = [&](const char* name) { return raised([&] { FileStore{folder + name}; }); };
  EXPECT_EQ(reason("/none"), folder + "/none: cannot be opened: No such file or directory");
  EXPECT_EQ(reason("/."), folder + "/.: is not a regular file");
  EXPECT_EQ(reason("/pipe"), folder + "/pipe: is not a regular file");
  EXPECT_EQ(reason("/text"), folder + "/text: is not a store");
}

TEST_F(StoreTest, WritingReplacesTheFileOrLeavesIt) {
  EXPECT_EQ(raised([] { StoreWriter().add(CommList::Ptr()); }), "null cannot be stored");
  writer.noteIs("size", std::string(3 << 20, 'x'));
  EXPECT_EQ(raised([&] { writer.write(folder + "/none/lists"); }),
            folder + "/none/lists: cannot be written: No such file or directory");
  EXPECT_EQ(raised([&] { writer.write(folder); }), folder + ": is not a regular file");
  StoreWriter().write(file);
  chmod(file.c_str(), 0640);
  const auto old = std::filesystem::file_size(file);
  static int asked;  // before each mebibyte, and before the file is put into its place
  for (bool (*const stop)() : {+[] { return true; }, +[] { return ++asked == 5; }}) {
    EXPECT_EQ(raised([&] { writer.write(file, stop); }), file + ": is not written: stopped");
    EXPECT_EQ(row(std::filesystem::file_size(file), filesInFolder()), row(old, 1));
  }
  writer.write(file, [] { return false; });
  EXPECT_EQ(unsigned(std::filesystem::status(file).permissions()), 0640u) << "as before";
  EXPECT_EQ(FileStore(file).note("size")->size(), std::size_t(3 << 20));
  EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(StoreTest, OnlyStoresAndEmptyFilesAreReplaced) {
  std::string store = StoreWriter().octets();
  for (const std::string& kept :
       {std::string("x"), store.substr(0, 7), store.substr(1), '\x88' + store.substr(1)}) {
    std::ofstream(file, std::ios::binary) << kept;
    const std::string reason = file + ": is not a store, and is not replaced";
    EXPECT_EQ(raised([&] { StoreWriter::checkReplaceable(file); }), reason);
    EXPECT_EQ(raised([&] { StoreWriter().write(file); }), reason);
    EXPECT_EQ(std::filesystem::file_size(file), kept.size());
  }
  store.pop_back();  // damaged, but no user's own file
  for (const std::string& replaced : {std::string(), store, store.substr(0, 8)}) {
    std::ofstream(file, std::ios::binary) << replaced;
    StoreWriter().write(file);
    EXPECT_EQ(FileStore(file).roots().size(), 0u);
  }
  EXPECT_EQ(filesInFolder(), 1u);
}

}  // namespace
}  // namespace Routing::Bgp
