// Stores that `save` writes and `restore` reads.
#include <sys/resource.h>

#include <csignal>

#include "MoxStash/StoreWriter.h"
#include "RunTool.h"
#include "community-list/ZoBgpCommunityListStandard.h"
#include "tools/bgpcomm/Faults.h"
#include "tools/bgpcomm/FileSaving.h"

namespace {

/// Writes a store of more octets than a file may have, so that `signal` comes in the middle of it.
bool writeInterrupted(const std::string& file, int signal) {
  static int sent;
  sent = signal;
  const rlimit less{1 << 12, RLIM_INFINITY};
  ::setrlimit(RLIMIT_FSIZE, &less);
  std::signal(SIGXFSZ, [](int) { std::raise(sent); });
  MoxStash::StoreWriter writer;
  writer.noteIs("large", std::string(1 << 16, 'x'));
  return writeStore(writer, file);
}

TEST(StoreSaving, SignalEndsTheProcessAndLeavesTheOldStoreAlone) {
  const Folder folder;
  const std::string store = folder.file("store");
  ASSERT_TRUE(writeStore(MoxStash::StoreWriter(), store));
  for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM})
    EXPECT_EXIT(writeInterrupted(store, signal), testing::KilledBySignal(signal),
                store + ": is not written: " + strsignal(signal));
  EXPECT_EXIT(
      {
        std::signal(SIGHUP, SIG_IGN);
        std::exit(writeInterrupted(store, SIGHUP));
      },
      testing::ExitedWithCode(0), store + ": cannot be written: File too large");
  EXPECT_EQ(folder.files(), "store 64 ");
}

using Stored = ToolTest;

TEST_F(Stored, NothingButAStoreIsReplacedAndNothingIsLeftBeside) {
  const Folder folder;
  const std::string store = folder.file("store"), text = folder.file("text");
  ::setenv("STORE", store.c_str(), 1);
  ::setenv("TEXT", text.c_str(), 1);
  const std::string sample = "samples/rib.bird.mrt.gz";
  const std::string save = "bgpcomm save " + sample + " --to ";
  const std::string name(250, 'x');
  expectRuns({
      // clang-format off
      {"echo mine >$TEXT; " + save + "$TEXT", "", 1, text + ": is not a store, and is not replaced"},
      {"bgpcomm save /nowhere --to $TEXT; cat $TEXT; rm $TEXT", "mine\n", 0,
       text + ": is not a store, and is not replaced"},
      {"bgpcomm save /nowhere --to /nowhere/store", "", 1,
       "/nowhere/store: cannot be written: No such file or directory"},
      {"(ulimit -f 8; " + save + "$STORE)", "", 1, store + ": cannot be written: File too large"},
      {"cd $(dirname $STORE) && ls && bgpcomm save $OLDPWD/" + sample + " --to " + name +
           " && ls && bgpcomm restore --json " + name + " | grep -c rib.bird", name + "\n1\n"},
      {"head -c 3000 " + sample + " | bgpcomm save - --to $STORE", "", 1,
       "standard input: gzip data end too early (record 94, octet 11125)"},
      {"bgpcomm save /nowhere " + sample + " --to $STORE; bgpcomm restore --json $STORE | grep -c '\"file\"'", "2\n", 0,
       "/nowhere: No such file or directory"},
      {"cp " + sample + " $STORE; bgpcomm save $STORE --to $STORE", "", 2,
       "--to " + store + ": is one of the files to be read"},
      // clang-format on
  });
}

// A store of one list, which two of three paths hold; each row makes one thing of its note wrong.
TEST_F(Stored, NoNumberOfANoteIsTrusted) {
  using namespace nlohmann::literals;
  using Routing::Bgp::CommList;
  const TemporaryFile file;
  MoxStash::StoreWriter().write(file.name());
  const std::string notSaved = ": no files are noted in it: it was not saved by bgpcomm";
  expectRuns({{"bgpcomm restore " + file.name(), "", 1, file.name() + notSaved}});
  const auto restore = [&](const nlohmann::json& note, U32 length = 1) {
    MoxStash::StoreWriter writer;
    const auto list = CommList::CommListIs();
    while (length > 0) list->commIs(0xFDE80063 + length--);
    writer.add(CommList::PtrConst(list), 2);
    writer.noteIs("bgpcomm", note.dump());
    writer.write(file.name());
    return runTool("bgpcomm restore " + file.name());
  };
  const nlohmann::json none = {{"communities", 0}, {"lists", nlohmann::json::array()}};
  nlohmann::json good = R"([{"file": [97, 195, 255], "records": 3, "paths": 3, "firstFault": "",
    "seconds": 0.5, "faults": {"attrLength": 0, "attrOverrun": 0, "linkBandwidth": 0,
    "badRecord": 0, "truncatedRecord": 0, "compression": 0}, "wrongFlags": 0,
    "kinds": {"standard": {"communities": 2, "lists": [[72, 2]]}}}])"_json;
  for (const char* const key : {"extended", "ipv6Extended", "large"}) good[0]["kinds"][key] = none;
  for (const SkippedName& one : skippedNames) good[0]["skipped"][std::string(one.key)] = 0;
  const ToolRun run = restore(good);
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.out.substr(0, run.out.find('\n')), "a\\xc3\\xff");

  const auto expectRefused = [&](const std::string& at, const nlohmann::json& value,
                                 const std::string& reason) {
    SCOPED_TRACE(at + ' ' + value.dump());
    nlohmann::json bad = good;
    bad[nlohmann::json::json_pointer(at)] = value;
    const ToolRun refused = restore(bad);
    const std::string begin = "bgpcomm: " + file.name() + ": " + reason;
    EXPECT_EQ(refused.err.substr(0, begin.size()), begin);
    EXPECT_TRUE(refused.exitCode == 1 && refused.out.empty());
  };
  const std::string damaged = "its note of files is damaged: ";
  const U64 most = U64{1} << 43;
  const nlohmann::json numbers = good.flatten();
  for (const auto& [at, number] : numbers.items())
    for (const nlohmann::json& value : {nlohmann::json(-1), nlohmann::json(1e300)})
      expectRefused(at, value, damaged);
  const std::tuple<const char*, nlohmann::json, const char*> cases[] = {
      {"/0/records", 2.5, "\"records\" is no count, or too large\n"},
      {"/0/paths", "3", "\"paths\" is no count, or too large\n"},
      {"/0/paths", most, "\"paths\" is no count, or too large\n"},
      {"/0/kinds/standard/lists/0/1", 4, "more paths hold a list than there are\n"},
      {"/0/kinds/standard/lists/0/0", 64, "a file has a list twice, or one that is no list\n"},
      {"/0/kinds/standard/lists/1", {72, 1}, "a file has a list twice, or one that is no list\n"},
      {"/0/kinds/large/lists/0", {72, 1}, "a file has a list twice, or one that is no list\n"},
      {"/0/seconds", 1.1e10, "\"seconds\" is out of range\n"},
      {"/0/file/1", 256, "\"file\" holds no octets\n"},
      {"/0/file", 5, "\"file\" is no array\n"},
      {"/0/skipped", nullptr, "\"skipped\" is no object\n"},
      {"/0/kinds/large/lists", nullptr, "\"lists\" is no array\n"},
      {"/0/firstFault", 1, "[json.exception.type_error.302] type must be string"},
      {"", 7, "it is no list of files\n"},
  };
  for (const auto& [at, value, reason] : cases) expectRefused(at, value, damaged + reason);
  for (const U64 records : {most - 3, most - 7})  // with paths, and with those that hold the list
    expectRefused("/0/records", records, "counts of all files together reach 2^43\n");
  // A list as long as an attribute can have it, a longer one, and none at all: where each stands.
  const std::pair<U32, U32> lengths[] = {{16383, 65600}, {16384, 65600}, {0, 64}};
  for (const auto& [length, at] : lengths) {
    nlohmann::json note = good;
    note[0]["kinds"]["standard"]["lists"][0][0] = at;
    EXPECT_EQ(restore(note, length).exitCode, length != 16383) << length;
  }
  // Each of two files is good, but their sum is none.
  good[0]["records"] = most / 2;
  good.push_back(good[0]);
  EXPECT_EQ(restore(good).exitCode, 1);
}

}  // namespace
