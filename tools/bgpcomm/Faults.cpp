#include <nlohmann/json.hpp>

#include "Commands.h"
#include "HeldListsOf.h"
#include "Hex.h"
#include "PathFilter.h"
#include "PathText.h"
#include "Reading.h"
#include "Terminal.h"
#include "Wrapped.h"

namespace bgpcomm {
namespace {

using Routing::Bgp::BgpPathAttrType;
using Routing::Bgp::PathFault;
using Routing::Bgp::PathFaultReason;

struct Options {
  std::vector<std::string> files;
  PathFilterOptions filter;
  bool flags = false, repeats = false, json = false;
};

/// The octets of an attribute, as far as they are there, and the place of the fault among them.
struct MarkedOctets {
  Octets octets;
  std::size_t place = 0;
  std::optional<U64> length = {};  ///< as the attribute's header says it, if that is there

  /// `c00805fde80064>00`
  std::string text() const { return hex(octets.first(place)) + '>' + hex(octets.subspan(place)); }
};
MarkedOctets markedOctets(Octets attributes, const PathFault& fault) {
  const Octets left = attributes.subspan(fault.offset);
  const auto header = Routing::Bgp::readPathAttributeHeader(left);
  if (!header) return {left, left.size()};
  const Octets octets =
      left.first(std::min<std::size_t>(left.size(), header->headerSize + header->attrSize));
  if (fault.overrun) return {octets, octets.size(), header->attrSize};
  const std::size_t place = fault.value ? header->headerSize + fault.value->offset : 0;
  return {octets, place, header->attrSize};
}

/// As `summary` counts it, where it does.
std::string nameOf(const PathFault& fault) {
  const auto counted = countedAs(fault);
  return std::string(counted ? faultNames[std::size_t(*counted)] : stringValue(fault.reason));
}

class FaultPrinter {
 public:
  FaultPrinter(const Options& options, const PathFilter& filter)
      : options_(options), filter_(filter) {}

  void fileIs(const std::string& file) { file_ = file; }

  /// Prints the faults of a path, and counts those that are not counted yet.
  void print(const Path& path, CommunityValues& values, Position position) const {
    Routing::Bgp::PathCommunities lists;
    for (const PathFault& fault : tables_.readAll(path.attributes, lists)) {
      if (countedAs(fault) == Fault::linkBandwidth) values.faults.add(Fault::linkBandwidth);
      if (!isShown(fault.reason)) continue;
      const MarkedOctets octets = markedOctets(path.attributes, fault);
      if (options_.json)
        bgpcomm::print(jsonLine(path, position, fault, octets));
      else
        printFields(textLine(path, position, fault, octets));
    }
  }
  /// The same of a fault that is of no path.
  void print(Fault fault, Position position, const std::string& reason) const {
    if (!options_.json)
      return printFields("-\t-\t-\t-\t" + place(position) + "\t-\t-\t" + visible(reason) + "\t-");
    nlohmann::ordered_json object = {{"time", nullptr},
                                     {"peer", nullptr},
                                     {"peerAs", nullptr},
                                     {"announced", nullptr},
                                     {"attribute", nullptr}};
    addPlace(object, position);
    object.update({{"offset", nullptr},
                   {"length", nullptr},
                   {"fault", faultNames[std::size_t(fault)]},
                   {"reason", reason},
                   {"approach", nullptr},
                   {"octets", nullptr},
                   {"at", nullptr}});
    bgpcomm::print(dumped(object));
  }

 private:
  bool isShown(PathFaultReason reason) const {
    if (reason == PathFaultReason::wrongFlags) return options_.flags;
    if (reason == PathFaultReason::repeated) return options_.repeats;
    return true;
  }

  std::string textLine(const Path& path, Position position, const PathFault& fault,
                       const MarkedOctets& octets) const {
    return timeText(path) + '\t' + peerText(path.peer) + '\t' +
           prefixesText(PrefixReader::announced(path), filter_) + '\t' + attributeText(fault) +
           '\t' + place(position) + '\t' + std::to_string(fault.offset) + '\t' +
           (octets.length ? std::to_string(*octets.length) : "-") + '\t' +
           std::string(fault.toStrep()) + '\t' + octets.text();
  }
  std::string jsonLine(const Path& path, Position position, const PathFault& fault,
                       const MarkedOctets& octets) const {
    auto prefixes = nlohmann::ordered_json::array();
    visitPrefixes(path, [&](const Prefix& prefix) {
      if (filter_.wants(prefix)) prefixes.push_back(nlriText(prefix.addressFamily, prefix.nlri));
    });
    nlohmann::ordered_json object = {{"time", timeText(path)},
                                     {"peer", addressText(path.peer.address)},
                                     {"peerAs", path.peer.asNumber},
                                     {"announced", std::move(prefixes)},
                                     {"attribute", U32(fault.attribute)}};
    addPlace(object, position);
    object.update({{"offset", fault.offset},
                   {"length", octets.length ? nlohmann::json(*octets.length) : nlohmann::json()},
                   {"fault", nameOf(fault)},
                   {"reason", std::string(fault.toStrep())},
                   {"approach", std::string(stringValue(fault.approach()))},
                   {"octets", hex(octets.octets)},
                   {"at", octets.place}});
    return dumped(object);
  }

  std::string place(Position position) const {
    return visible(shownFile(file_)) + '\t' + std::to_string(position.record) + '\t' +
           std::to_string(position.octet);
  }
  void addPlace(nlohmann::ordered_json& object, Position position) const {
    object.update({{"file", file_}, {"record", position.record}, {"octet", position.octet}});
  }
  /// File names need not be UTF-8.
  static std::string dumped(const nlohmann::ordered_json& object) {
    return object.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + '\n';
  }
  static std::string attributeText(const PathFault& fault) {
    return fault.attribute == BgpPathAttrType::invalidPathAttr
               ? "-"
               : std::to_string(U32(fault.attribute));
  }

  const Options& options_;
  const PathFilter& filter_;
  const CommunityTables tables_{sharedParser()};
  std::string file_;
};

int runFaults(const Options& options) {
  PathFilter filter(options.filter);
  FaultPrinter printer(options, filter);
  ReadOptions reading{.printsLines = true};
  reading.onFault = [&](Fault fault, Position position, const std::string& reason) {
    printer.print(fault, position, reason);
  };
  bool good = true;
  for (const std::string& file : options.files) {
    printer.fileIs(file);
    good &= readReporting(
        file,
        [&](const Path& path, CommunityValues& values, Position position) {
          if (filter.passes(path, values)) printer.print(path, values, position);
        },
        reading);
  }
  return good ? 0 : exitBadData;
}

}  // namespace

void addFaults(CLI::App& app, int& exitCode) {
  const auto [command, options] = addCommand(
      app,
      {"faults", "Print every malformed attribute and record",
       "Fields are separated by tabs, on a terminal by blanks: time, peer, prefixes,\n"
       "number of the attribute, file, number of the record, its octet in the file, the\n"
       "attribute's octet among the path's attributes, its length, reason, the attribute\n"
       "in hex with > where the fault is.\n"
       "Records that are bad or cut short have a line too, whatever paths are asked for,\n"
       "with - for what is not known. As many lines as summary counts malformed; with\n"
       "--flags also as many as it counts wrong flags, which are none of these. Exit\n"
       "code 1 when a file cannot be read to its end.\n\n"
       "Example: bgpcomm faults --peer 192.0.2.1 updates.20241001.0055.gz"},
      exitCode, runFaults);
  addFiles(command, options.files);
  addFilterOptions(command, options.filter);
  command.add_flag("--flags", options.flags,
                   "Also community attributes that are not optional\nand transitive");
  command.add_flag("--repeats", options.repeats, "Also such as are given again: the first counts");
  addJsonLines(command, options.json);
}

}  // namespace bgpcomm
