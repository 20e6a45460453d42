#include <charconv>

#include "Benchmarks.h"
#include "Contenders.h"
#include "Measure.h"

namespace bench {
namespace {

using Routing::Bgp::CommList;
using Lists = std::vector<CommList::PtrConst>;

// The least that text can cost: numbers written one behind the other into room that is there.
std::size_t plainText(const CommList& list, char* text) {
  char* at = text;
  for (const U32 value : list.values()) {
    at = std::to_chars(at, at + 5, value >> 16).ptr;
    *at++ = ':';
    at = std::to_chars(at, at + 5, value & 0xFFFF).ptr;
    *at++ = ' ';
  }
  return std::size_t(at - text);
}

std::size_t copiedOctets(const CommList& list, U8* octets) {
  std::memcpy(octets, list.values().data(), list.values().size_bytes());
  return list.values().size_bytes();
}

// The work that `serialize` cannot avoid: a string of the header and the values in network order.
Mox::String swappedString(const CommList& list) {
  const auto values = list.values();
  const std::size_t header = values.size_bytes() > 255 ? 4 : 3;
  Mox::String octets(header + values.size_bytes(), '\xC0');
  auto* at = reinterpret_cast<U8*>(octets.data()) + header;
  for (std::size_t i = 0; i < values.size(); ++i)
    Zonet::storeNetworkOrder(at + i * sizeof(U32), values[i]);
  return octets;
}

template <class Format>
void addFormat(const Workload& workload, const char* operation, const char* contender,
               Format format) {
  add(nameOf(operation, workload.name, contender), int(1 + 40'000 / workload.distinct.size()),
      [&workload, format](benchmark::State& state) {
        Ours table;
        Lists lists;
        for (std::size_t i = 0; i < workload.distinct.size(); ++i)
          table.intern(workload.distinct[i], lists);
        Passes passes(state, lists.size());
        for (auto _ : state)
          passes.time([&] {
            for (const auto& list : lists) format(*list);
          });
      });
}

}  // namespace

void addFormatting(const Workload& workload) {
  const auto kept = [](auto made) { benchmark::DoNotOptimize(made.data()); };
  addFormat(workload, "text", "numbers",
            [kept](const CommList& list) { kept(list.commsStringForm()); });
  addFormat(workload, "text", "names",
            [kept](const CommList& list) { kept(list.commsWellKnownStringForm()); });
  addFormat(workload, "text", "appended", [](const CommList& list) {
    static Mox::String text;
    text.clear();
    list.appendCommsStringForm(text);
    benchmark::DoNotOptimize(text.data());
    benchmark::ClobberMemory();
  });
  addFormat(workload, "text", "to_chars", [](const CommList& list) {
    static char text[12 * 0xFFFF / sizeof(U32)];
    benchmark::DoNotOptimize(plainText(list, text));
    benchmark::ClobberMemory();
  });
  addFormat(workload, "wire", "serialize",
            [kept](const CommList& list) { kept(list.serialize()); });
  addFormat(workload, "wire", "swapped into a string",
            [kept](const CommList& list) { kept(swappedString(list)); });
  addFormat(workload, "wire", "memcpy", [](const CommList& list) {
    static U8 octets[0xFFFF];
    benchmark::DoNotOptimize(copiedOctets(list, octets));
    benchmark::ClobberMemory();
  });
}

}  // namespace bench
