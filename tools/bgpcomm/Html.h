// Markup of HTML: text, tables, bar charts.
//
//   HtmlTable table("Peers", {{"Peer", HtmlTable::code}, {"Paths", HtmlTable::number}}, 1);
//   table.add({Html::text(name), Html::number(paths)});
//   page.add("<h2>", Html::text(title), "</h2>", table.html());
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Mox/Types.h"

namespace bgpcomm {
using namespace Mox::Words;

/// Markup is what stands in the source as such. All else comes in as text, so that nothing that a
/// file holds can be markup.
class Html {
 public:
  Html() = default;
  template <std::size_t size>
  Html(const char (&markup)[size]) : markup_(markup, size - 1) {}
  /// Escaped, in attributes too. U+FFFD stands for each octet that `visible` would escape.
  static Html text(std::string_view text);
  /// `1,234,567`
  static Html number(U64 number);

  /// Appends each, markup or Html.
  template <class... Parts>
  Html& add(const Parts&... parts) {
    ((markup_ += Html(parts).markup_), ...);
    return *this;
  }
  bool empty() const { return markup_.empty(); }
  const std::string& markup() const { return markup_; }

 private:
  std::string markup_;
};

/// A table in a box that scrolls by itself. The first column says what a row is of.
class HtmlTable {
 public:
  enum Form {
    words,   ///< a few
    text,    ///< as long as it likes
    code,    ///< as commands read it
    number,  ///< to the right, sorted by size
  };
  struct Column {
    std::string_view title;
    Form form = words;
  };
  static constexpr std::size_t unsorted = ~std::size_t{0};

  /// `descending` is the column of numbers by which rows are in order.
  HtmlTable(std::string_view label, std::vector<Column> columns, std::size_t descending = unsorted);
  /// REQUIRES: as many cells as columns.
  void add(const std::vector<Html>& cells);
  /// A line that there is nothing, when it has no rows.
  Html html() const;

 private:
  const std::vector<Column> columns_;
  Html before_, rows_;
};

/// A bar of a chart.
struct HtmlBar {
  std::string label;
  U64 size = 0;
  bool less = false;  ///< in a quieter colour
};
/// Bars under each other, the longest as wide as the chart; as an image that says its figures to
/// those who do not see it. Nothing when there are no bars. `id` tells it from other charts of the
/// page.
Html barChart(std::string_view id, std::string_view title, const std::vector<HtmlBar>& bars);

}  // namespace bgpcomm
