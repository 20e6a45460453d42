#include "ReportPage.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <stdexcept>

#include "Html.h"
#include "Meanings.h"
#include "Terminal.h"
#include "Wrapped.h"

namespace bgpcomm {
namespace {

using Column = HtmlTable::Column;
constexpr HtmlTable::Form text = HtmlTable::text, code = HtmlTable::code,
                          number = HtmlTable::number;
constexpr std::size_t mostBars = 10;

/// The markup for the template's places, by their names.
using Parts = std::map<std::string, Html, std::less<>>;

Html decimal(double value, int digits, const char* behind = "") {
  char out[64];
  std::snprintf(out, sizeof out, "%.*f%s", digits, value, behind);
  return Html::text(out);
}

Html share(U64 part, U64 whole) {
  return decimal(whole ? 100 * double(part) / double(whole) : 0, 1, "%");
}

Html optionalNumber(const std::optional<U64>& value) {
  return value ? Html::number(*value) : Html("?");
}

/// The first bars, of things that stand in order.
template <class Things>
std::vector<HtmlBar> barsOf(const Things& things, auto makeBar) {
  std::vector<HtmlBar> bars;
  for (const auto& thing : things) {
    if (bars.size() == mostBars) break;
    bars.push_back(makeBar(thing));
  }
  return bars;
}

class Page {
 public:
  explicit Page(const ReportFigures& figures) : figures_(figures), total_(figures.total) {}

  Parts parts() {
    parts_["version"] = Html::text(BGPCOMM_VERSION);
    addHeadlines();
    addSharing();
    addCommunities();
    addKinds();
    addRouteTargets();
    addPeers();
    addMalformed();
    addFiles();
    return std::move(parts_);
  }

 private:
  void add(const std::string& section, const std::string& title, const std::vector<HtmlBar>& bars,
           const HtmlTable& table) {
    parts_[section + "-chart"] = barChart(section + "-chart", title, bars);
    parts_[section + "-table"] = table.html();
  }

  std::string title() const {
    if (figures_.files.size() == 1) {
      const std::string_view file = shownFile(figures_.files[0].file);
      return std::string(file.substr(file.rfind('/') + 1));
    }
    return counted(figures_.files.size(), "file");
  }

  void addHeadlines() {
    U64 attributes = 0, communities = 0, lists = 0, shared = 0, unshared = 0;
    U64 values = 0;
    bool valuesKnown = true;
    for (const auto& [type, figures] : total_.types) {
      attributes += figures.attributes;
      communities += figures.communities;
      lists += figures.distinctLists;
      shared += figures.internedOctets;
      unshared += figures.unsharedOctets;
      values += figures.distinctValues.value_or(0);
      valuesKnown = valuesKnown && figures.distinctValues;
    }
    const auto note = [&](const std::string& name, const std::string& words) {
      parts_[name + "-note"] = Html::text(words);
    };
    parts_["title"] = Html::text(title());
    parts_["paths"] = Html::number(total_.paths);
    note("paths", "in " + counted(total_.records, "record") + " of " +
                      counted(figures_.peers.size(), "peer"));
    parts_["lists"] = Html::number(lists);
    note("lists", "for " + counted(attributes, "attribute"));
    parts_["values"] = valuesKnown ? Html::number(values) : Html("?");
    note("values", "carried " + counted(communities, "time"));
    parts_["saved"] = lists ? decimal(timesSaved(unshared, shared), 1, "×") : Html("-");
    parts_["saved-class"] = unshared > shared ? Html(" class=\"good\"") : Html();
    note("saved", lists ? counted(shared, "octet") + " instead of " + grouped(unshared)
                        : "there are no lists");
    parts_["malformed"] = Html::number(total_.faults.total());
    parts_["malformed-class"] = total_.faults.total() ? Html(" class=\"bad\"") : Html();
    std::string malformed =
        total_.faults.total() ? "records and attributes, left out" : "no record or attribute is";
    if (const U64 skipped = total(total_.skipped))
      malformed += "; " + counted(skipped, "record") + " skipped";
    if (const auto failed = std::ranges::count_if(
            figures_.files, [](const FileFigures& file) { return !file.failure.empty(); }))
      malformed += "; " + counted(U64(failed), "file") + " not read to the end";
    note("malformed", malformed);
  }

  void addSharing() {
    HtmlTable table("How lists are shared", {{"List type"},
                                             {"Attributes", number},
                                             {"Communities", number},
                                             {"Distinct values", number},
                                             {"Distinct lists", number},
                                             {"Paths per list", number},
                                             {"Octets, shared", number},
                                             {"Octets, unshared", number},
                                             {"Saved", number}});
    std::vector<HtmlBar> bars;
    for (const auto& [type, figures] : total_.types) {
      const std::string name(type->title);
      table.add({Html::text(name), Html::number(figures.attributes),
                 Html::number(figures.communities), optionalNumber(figures.distinctValues),
                 Html::number(figures.distinctLists),
                 figures.attributes ? decimal(pathsPerList(figures), 1) : Html("-"),
                 Html::number(figures.internedOctets), Html::number(figures.unsharedOctets),
                 figures.attributes
                     ? decimal(timesSaved(figures.unsharedOctets, figures.internedOctets), 1, "×")
                     : Html("-")});
      if (figures.attributes == 0) continue;
      bars.push_back({name + ", unshared", figures.unsharedOctets, true});
      bars.push_back({name + ", shared", figures.internedOctets});
    }
    add("sharing", "Octets of lists, unshared and shared", bars, table);
  }

  void addCommunities() {
    struct Use {
      const ValueUse* value;
      std::string_view type;
    };
    std::vector<Use> uses;
    for (const auto& [type, figures] : total_.types)
      for (const ValueUse& value : figures.mostUsed) uses.push_back({&value, type->title});
    std::ranges::stable_sort(uses, std::greater(), [](const Use& use) { return use.value->uses; });
    HtmlTable table("Most used communities",
                    {{"Community", code},
                     {"Paths", number},
                     {"Of all", number},
                     {"Meaning", text},
                     {"Kind", code},
                     {"List type"},
                     {"Octets", code}},
                    1);
    for (const auto& [value, type] : uses)
      table.add({Html::text(value->text), Html::number(value->uses),
                 share(value->uses, total_.paths), Html::text(meaningOf(*value)),
                 Html::text(value->kind), Html::text(type), Html::text(value->octets)});
    parts_["communities-note"] =
        figures_.top == 0 ? Html("All of each list type.")
        : figures_.top == 1
            ? Html("The most used one of each list type.")
            : Html::text("The " + grouped(figures_.top) + " most used of each list type, at most.");
    add("communities", "Paths by community",
        barsOf(uses,
               [](const Use& use) {
                 return HtmlBar{use.value->text, use.value->uses};
               }),
        table);
  }

  void addKinds() {
    struct Row {
      KindUse use;
      std::string_view type;
      std::string_view title() const {
        if (!use.kind) return {};
        return use.kind->identifier.empty() ? "Defined by the AS that it names" : use.kind->name;
      }
      std::string name() const {
        if (!use.kind) return "unknown " + use.type;
        return std::string(use.kind->identifier.empty() ? type : use.kind->identifier);
      }
    };
    std::vector<Row> rows;
    for (std::size_t i = 0; i < figures_.details.size(); ++i)
      for (const KindUse& use : figures_.details[i].kinds)
        rows.push_back({use, total_.types[i].type->title});
    std::ranges::stable_sort(rows, std::greater(), [](const Row& row) { return row.use.paths; });
    HtmlTable table("Kinds and types",
                    {{"Kind", code},
                     {"Paths", number},
                     {"Of all", number},
                     {"Distinct values", number},
                     {"Distinct lists", number},
                     {"Name", text},
                     {"Defined in", text},
                     {"Type"},
                     {"List type"}},
                    1);
    for (const Row& row : rows)
      table.add({Html::text(row.name()), Html::number(row.use.paths),
                 share(row.use.paths, total_.paths), Html::number(row.use.values),
                 Html::number(row.use.lists), Html::text(row.title()),
                 Html::text(row.use.kind ? row.use.kind->reference : ""), Html::text(row.use.type),
                 Html::text(row.type)});
    add("kinds", "Paths by kind",
        barsOf(rows,
               [](const Row& row) {
                 return HtmlBar{row.name(), row.use.paths};
               }),
        table);
  }

  void addRouteTargets() {
    struct Row {
      const RouteTargetSet* set;
      std::string_view type;
    };
    std::vector<Row> rows;
    for (std::size_t i = 0; i < figures_.details.size(); ++i)
      for (const RouteTargetSet& set : figures_.details[i].routeTargetSets)
        rows.push_back({&set, total_.types[i].type->title});
    std::ranges::stable_sort(rows, std::greater(), [](const Row& row) { return row.set->paths; });
    const std::size_t all = rows.size();
    if (figures_.top && figures_.top < all) rows.resize(figures_.top);
    HtmlTable table("Route-target sets by users",
                    {{"Route targets", code},
                     {"Paths", number},
                     {"Of all", number},
                     {"Distinct lists", number},
                     {"List type"}},
                    1);
    for (const auto& [set, type] : rows)
      table.add({Html::text(set->text), Html::number(set->paths), share(set->paths, total_.paths),
                 Html::number(set->lists), Html::text(type)});
    parts_["route-targets-note"] =
        rows.empty()
            ? Html()
            : Html::text(all == rows.size() ? "All " + counted(all, "set") + '.'
                                            : "The " + grouped(rows.size()) + " most used of " +
                                                  counted(all, "set") + '.');
    add("route-targets", "Paths by route-target set",
        barsOf(rows,
               [](const Row& row) {
                 return HtmlBar{row.set->text, row.set->paths};
               }),
        table);
  }

  void addPeers() {
    std::vector<Column> columns = {
        {"Peer", code}, {"AS", number}, {"Paths", number}, {"Of all", number}};
    for (const ListType& type : listTypes) columns.push_back({type.title, number});
    columns.insert(columns.end(), {{"Distinct lists", number}, {"Malformed", number}});
    HtmlTable table("Peers", std::move(columns), 2);
    for (const PeerUse& peer : figures_.peers) {
      std::vector<Html> cells = {Html::text(peer.address),
                                 Html::text(std::to_string(peer.asNumber)),
                                 Html::number(peer.paths), share(peer.paths, total_.paths)};
      for (const U64 attributes : peer.attributes) cells.push_back(Html::number(attributes));
      cells.push_back(Html::number(peer.lists));
      cells.push_back(Html::number(peer.malformed));
      table.add(cells);
    }
    add("peers", "Paths by peer",
        barsOf(figures_.peers,
               [](const PeerUse& peer) {
                 return HtmlBar{peer.address + " AS" + std::to_string(peer.asNumber), peer.paths};
               }),
        table);
  }

  void addMalformed() {
    static constexpr std::array<std::string_view, faultNames.size()> reasons = {
        "A community attribute that is empty, or no multiple of the size of its values",
        "An attribute that goes beyond the end of its path's attributes",
        "An extended list with two different link bandwidths",
        "A record whose fields do not fit into it, or that is too long",
        "The file ends inside of a record",
        "Compressed data that are damaged or cut short"};
    HtmlTable table("Malformed, by fault",
                    {{"Fault", code}, {"Times", number}, {"What it is", text}});
    for (std::size_t i = 0; i < faultNames.size(); ++i)
      if (const U64 count = total_.faults[Fault(i)])
        table.add({Html::text(faultNames[i]), Html::number(count), Html::text(reasons[i])});
    parts_["malformed-table"] = table.html();
    HtmlTable passed("Skipped records, and wrong flags",
                     {{"Records or attributes"}, {"Times", number}});
    if (total_.wrongFlags)
      passed.add({"community attributes with wrong flags", Html::number(total_.wrongFlags)});
    for (std::size_t i = 0; i < skippedSorts; ++i)
      if (const U64 count = total_.skipped[i])
        passed.add({Html::text(skippedNames[i].words), Html::number(count)});
    parts_["passed-table"] = passed.html();
  }

  void addFiles() {
    HtmlTable table("Files", {{"File", text},
                              {"Records", number},
                              {"Paths", number},
                              {"Malformed", number},
                              {"First malformed", text},
                              {"Why not read to its end", text},
                              {"Seconds to read", number}});
    for (const FileFigures& file : figures_.files)
      table.add({Html::text(shownFile(file.file)), Html::number(file.records),
                 Html::number(file.paths), Html::number(file.faults.total()),
                 Html::text(file.firstMalformed()), Html::text(file.failure),
                 decimal(file.seconds, 3)});
    parts_["files-table"] = table.html();
  }

  const ReportFigures& figures_;
  const FileFigures& total_;
  Parts parts_;
};

}  // namespace

std::string reportPage(const ReportFigures& figures) {
  const Parts parts = Page(figures).parts();
  std::string page;
  std::string_view left = reportTemplate;
  for (std::size_t at; (at = left.find("{{")) != left.npos;) {
    page += left.substr(0, at);
    const std::size_t end = left.find("}}", at);
    page += parts.at(std::string(left.substr(at + 2, end - at - 2))).markup();
    left.remove_prefix(end + 2);
  }
  return page += left;
}

}  // namespace bgpcomm
