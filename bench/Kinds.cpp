// Contents of all assigned kinds of 8 octets: parsed with the pack of kinds and without, written as
// canonical texts, and read back.
#include <algorithm>
#include <random>

#include "Benchmarks.h"
#include "Contenders.h"
#include "Measure.h"
#include "kinds/ZoBgpKindPack.h"
#include "kinds/ZoBgpKindText.h"

namespace bench {
namespace {

using namespace Routing::Bgp;

std::vector<ExtCommContent> contentsOfAllKinds() {
  constexpr std::size_t count = 20'000;
  std::mt19937_64 random(31);
  std::vector<ExtCommContent> contents;
  while (contents.size() < count)
    for (const Kind* kind : KindTable::builtIn().rows())
      if (kind->attribute == BgpPathAttrType::extCommunity)
        contents.emplace_back(U64(*kind->type) << 56 | U64(*kind->subtype) << 48 | random() >> 40);
  std::shuffle(contents.begin(), contents.end(), random);
  return contents;
}

BgpParseExtCommContainerSm::Ptr containerOf(bool withPack) {
  auto container = bgpParseExtCommContainerSmFactory();
  if (withPack) installKinds(*container);
  return container;
}

template <class Input, class Work>
void addEach(const char* operation, const char* contender, std::vector<Input> inputs, Work work) {
  add(nameOf(operation, "all kinds", contender), 5,
      [inputs = std::move(inputs), work](benchmark::State& state) {
        Passes passes(state, inputs.size());
        for (auto _ : state)
          passes.time([&] {
            for (const Input& input : inputs) work(input);
          });
      });
}

}  // namespace

void addKinds() {
  const auto contents = contentsOfAllKinds();
  std::vector<std::string> texts;
  for (const ExtCommContent& content : contents) texts.push_back(canonicalText(content));
  for (const bool withPack : {false, true})
    addEach("parse", withPack ? "with the pack" : "without", contents,
            [container = containerOf(withPack)](const ExtCommContent& content) {
              benchmark::DoNotOptimize(
                  container->extCommParser()->parseExtendedCommunity(content).get());
            });
  addEach("canonical text", Ours::name, contents, [](const ExtCommContent& content) {
    benchmark::DoNotOptimize(canonicalText(content).size());
  });
  addEach("policy text", Ours::name, contents,
          [container = containerOf(false)](const ExtCommContent& content) {
            constexpr auto format = strepFormatClassification | strepFormatUI;
            benchmark::DoNotOptimize(container->extCommParser()
                                         ->parseExtendedCommunity(content)
                                         ->toStrepForPolicy(ExtComm::StrepFormat(format))
                                         .size());
          });
  addEach("canonical text read", Ours::name, texts,
          [](const std::string& text) { benchmark::DoNotOptimize(parseCanonical(text).value); });
}

}  // namespace bench
