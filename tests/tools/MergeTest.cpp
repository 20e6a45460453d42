// Stores of parts say together what one run over all files says.

#include "MoxStash/FileStore.h"
#include "MoxStash/StoreWriter.h"
#include "RunTool.h"
#include "community-list/ZoBgpCommunityListStandard.h"

namespace {

class Merged : public ToolTest {
 protected:
  std::string file(const std::string& name, const Bytes& content = "") const {
    return folder_.file(name, content);
  }
  /// Runs a command that has nothing to complain about.
  static void good(const std::string& command) {
    const ToolRun run = runTool("bgpcomm " + command);
    EXPECT_TRUE(run.exitCode == 0 && run.err.empty()) << command << '\n' << run.err;
  }
  /// The output of a command without times, and without the memory that varies with a seed.
  static std::string figures(const std::string& command) {
    return runTool("bgpcomm " + command + " 2>&- | sed '/seconds\\|[^n]shared\\|saved/d'").out;
  }

  const Folder folder_{};
};

/// Stores that are still to be joined, each with its files in their order; a blank before each.
struct Part {
  std::string store, files;
};

TEST_F(Merged, AnySplitInAnyOrderSaysWhatOneRunSays) {
  const Bytes two = path("c00808 fde80064ffffff01 c01010 0002fde800000064 030b000000000007");
  const Bytes all = path(
      "c00804 fde80064 c0200c 0000fde80000000100000002 c01914 0002 20010db8"
      "000000000000000000000001 0064 c01008 0002fde800000064");
  std::vector<std::string> files = {
      "samples/rib.bird.mrt.gz",
      file("two", two + two),
      file("all", all + two + path("c00808 ffffff01fde80064")),
      file("malformed", path("c00803fde800") + all + path("c0200100") + path("c00805")),
      file("passed", path("400804 fde80064") + mrtRecord(11, 1, "x") + all +
                         mrtRecord(16, 5, session() + octets("0005 0006"))),
      file("cut", all + two + octets("6553f100 0010")),
      file("bare", path("40010100")),
      "/dev/null"};
  const char* const named = std::getenv("BGPCOMM_DATA");
  const std::filesystem::path data = named ? named : "../shared/data";
  if (exists(data / "odd"))
    for (const auto& odd : std::filesystem::directory_iterator(data / "odd"))
      files.push_back(odd.path());
  for (U32 seed = 1; seed <= 6; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    std::ranges::shuffle(files, random);
    const bool whole = seed % 2;  // or: some stores have a total alone
    const auto option = [&] { return whole || random() % 2 ? "" : " --total"; };
    std::vector<Part> parts;
    for (const std::string& one : files) {
      if (parts.empty() || random() % 3 == 0)
        parts.push_back({' ' + file("part" + std::to_string(parts.size())), ""});
      parts.back().files += ' ' + one;
    }
    std::string first;
    for (const Part& part : parts) {
      first += part.store;
      runTool("bgpcomm save" + part.files + " --to" + part.store + option());
    }
    const auto take = [&parts](std::size_t count) {
      Part taken;
      for (; count > 0; --count, parts.pop_back()) {
        taken.store += parts.back().store;
        taken.files += parts.back().files;
      }
      return taken;
    };
    for (U32 step = 0; parts.size() > 2; ++step) {
      std::ranges::shuffle(parts, random);
      const std::string store = ' ' + file("merged" + std::to_string(step));
      const Part some = take(1 + random() % (parts.size() - 1));
      good("merge" + some.store + " --to" + store + option());
      parts.push_back({store, some.files});
    }
    const auto [stores, order] = take(parts.size());
    for (const char* const form : {"", " --json", " --total", " --total --json --top 0"}) {
      if (!whole && !std::strstr(form, "total")) continue;
      const std::string one = figures("summary" + order + form);
      EXPECT_EQ(figures("restore" + stores + form), one) << form;
      EXPECT_GT(one.size(), 1000u);
    }
    // Seconds too, which are those of the parts, to the last digit.
    good("merge" + stores + " --total --to " + file("total"));
    const auto again = [&](const std::string& options) {
      return runTool("bgpcomm restore --total --json" + options + " | grep -v '\"shared'").out;
    };
    EXPECT_EQ(again(first), again(' ' + file("total")));
  }
}

TEST_F(Merged, ListsThatSeveralHoldAreOneAlsoInOlderStores) {
  using Routing::Bgp::CommList;
  // Equal lists of two files stood in such a store once each.
  MoxStash::StoreWriter writer;
  auto note = nlohmann::json::parse(R"([{"file": [97], "records": 3, "paths": 3, "firstFault": "",
    "seconds": 0.1, "faults": {"attrLength": 0, "attrOverrun": 0, "linkBandwidth": 0,
    "badRecord": 0, "truncatedRecord": 0, "compression": 0}, "kinds": {}}])");
  for (const char* const key : {"standard", "extended", "ipv6Extended", "large"})
    note[0]["kinds"][key] = {{"communities", 0}, {"lists", nlohmann::json::array()}};
  note.push_back(note[0]);
  for (auto& entry : note) {
    const auto list = CommList::CommListIs();
    list->commIs(0xFDE80064);
    entry["kinds"]["standard"]["lists"] = {{writer.add(CommList::PtrConst(list), 2), 2}};
  }
  writer.noteIs("bgpcomm", note.dump());
  writer.write(file("old"));
  const auto roots = [&](const char* store) {
    const MoxStash::FileStore its(file(store));
    std::string text;
    for (const auto& root : its.roots()) text += std::to_string(root.figure) + ' ';
    return text;
  };
  EXPECT_EQ(roots("old"), "2 2 ");
  std::filesystem::copy(file("old"), file("copy"));
  good("merge " + file("old") + ' ' + file("copy") + " --to " + file("new"));
  good("merge " + file("old") + ' ' + file("copy") + " --total --to " + file("total"));
  EXPECT_EQ(roots("new"), "8 ");
  EXPECT_EQ(roots("total"), "8 ");
  EXPECT_EQ(figures("restore --json --total " + file("old") + ' ' + file("copy")),
            figures("restore --json --total " + file("new")));
  // Each store is good, but their sum is none.
  note[0]["records"] = U64{1} << 42;
  writer.noteIs("bgpcomm", note.dump());
  writer.write(file("old"));
  writer.write(file("copy"));
  expectRuns({{"bgpcomm merge " + file("old") + ' ' + file("copy") + " --to " + file("new"), "", 1,
               file("copy") + ": counts of all files together reach 2^43"}});
  EXPECT_EQ(roots("new"), "8 ");
}

TEST_F(Merged, IsWrittenOfGoodStoresOnlyEachOnce) {
  const Bytes one = path("c00804fde80064", "180a0102");
  const std::string dump = file("dump", one), a = file("a"), to = " --to " + file("to");
  const std::string broken = file("broken", "none"), twice = ": is named twice, the first time as ";
  good("save " + dump + " --to " + a);
  const std::string b = file("b"), merge = "bgpcomm merge ", restore = "bgpcomm restore ";
  const std::string title = " | grep -v '^ \\|^$'";
  std::filesystem::copy(a, b);
  expectRuns({
      // clang-format off
      {merge + a + ' ' + broken + to, "", 1, broken + ": is too short for a store"},
      {merge + a + " /nowhere" + to, "", 1, "/nowhere: cannot be opened: No such file or directory"},
      {merge + a + ' ' + dump + to, "", 1, dump + ": is not a store"},
      {merge + a + ' ' + b + " --to " + dump, "", 1, dump + ": is not a store, and is not replaced"},
      {merge + a + ' ' + b + " --to " + b, "", 2, "--to " + b + ": is one of the stores to be read"},
      {merge + a + ' ' + b + ' ' + a + to, "", 2, a + twice + a},
      {"ln -s " + a + ' ' + file("link") + "; " + restore + a + ' ' + file("link"), "", 2, file("link") + twice + a},
      {"ls " + folder_.name(), "a\nb\nbroken\ndump\nlink\n"},
      {restore + a + ' ' + broken + title, dump + '\n', 0, broken + ": is too short for a store"},
      {restore + a + ' ' + b + title, dump + '\n' + dump + "\ntotal\n"},
      {restore + a + ' ' + b + " --total" + title, "total\n"},
      {restore + a + " --total" + title, "total\n"},
      {merge + a + ' ' + b + to + " --total; " + restore + file("to") + title, "total\n"},
      {restore + "--json " + a + ' ' + b + " | grep -c file", "4\n"},
      {restore + "--json --total " + a + ' ' + b + " | grep file", "  \"files\": [],\n    \"file\": \"total\",\n"},
      {"bgpcomm summary --total /nowhere", "", 1, "/nowhere: No such file or directory"},
      // clang-format on
  });
}

}  // namespace
