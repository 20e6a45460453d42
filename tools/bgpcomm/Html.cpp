#include "Html.h"

#include <algorithm>
#include <cstdio>

#include "Terminal.h"

namespace bgpcomm {
namespace {

constexpr int barRow = 36;  // pixels, a label and its bar

constexpr std::size_t mostShown = 36;  // characters that fit beside a figure where a page is narrow
constexpr std::size_t mostTold = 200;  // characters, of which a table has all

std::string shortened(const std::string& label, std::size_t most) {
  std::size_t characters = 0;
  for (std::size_t at = 0; at < label.size(); ++at) {
    const bool starts = (U8(label[at]) & 0xc0) != 0x80;
    if (starts && characters++ == most) return label.substr(0, at) + "…";
  }
  return label;
}

Html percent(U64 part, U64 whole) {
  char text[16];
  std::snprintf(text, sizeof text, "%.2f%%", whole ? 100 * double(part) / double(whole) : 0);
  return Html::text(text);
}

Html classOf(HtmlTable::Form form) {
  switch (form) {
    case HtmlTable::text:
      return " class=\"long\"";
    case HtmlTable::code:
      return " class=\"code\"";
    case HtmlTable::number:
      return " class=\"number\"";
    case HtmlTable::words:
      break;
  }
  return "";
}

}  // namespace

Html Html::text(std::string_view text) {
  Html html;
  while (!text.empty()) {
    const std::size_t size = printableSize(text);
    const char first = text[0];
    if (size == 0)
      html.markup_ += "\uFFFD";
    else if (first == '&')
      html.markup_ += "&amp;";
    else if (first == '<')
      html.markup_ += "&lt;";
    else if (first == '>')
      html.markup_ += "&gt;";
    else if (first == '"')
      html.markup_ += "&quot;";
    else if (first == '\'')
      html.markup_ += "&#39;";
    else
      html.markup_ += text.substr(0, size);
    text.remove_prefix(std::max<std::size_t>(size, 1));
  }
  return html;
}

Html Html::number(U64 number) { return text(grouped(number)); }

HtmlTable::HtmlTable(std::string_view label, std::vector<Column> columns, std::size_t descending)
    : columns_(std::move(columns)) {
  before_.add("<div class=\"scroll\" tabindex=\"0\" role=\"region\" aria-label=\"",
              Html::text(label), "\">\n<table>\n<thead><tr>");
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    before_.add("<th scope=\"col\"");
    if (columns_[i].form == number) before_.add(classOf(number));
    if (i == descending) before_.add(" aria-sort=\"descending\"");
    before_.add(">", Html::text(columns_[i].title), "</th>");
  }
  before_.add("</tr></thead>\n<tbody>\n");
}

void HtmlTable::add(const std::vector<Html>& cells) {
  rows_.add("<tr><th scope=\"row\"", classOf(columns_[0].form), ">", cells[0], "</th>");
  for (std::size_t i = 1; i < cells.size(); ++i)
    rows_.add("<td", classOf(columns_[i].form), ">", cells[i], "</td>");
  rows_.add("</tr>\n");
}

Html HtmlTable::html() const {
  if (rows_.empty()) return "<p class=\"none\">There are none.</p>";
  Html html;
  return html.add(before_, rows_, "</tbody>\n</table>\n</div>");
}

Html barChart(std::string_view id, std::string_view title, const std::vector<HtmlBar>& bars) {
  if (bars.empty()) return {};
  U64 most = 0;
  for (const HtmlBar& bar : bars) most = std::max(most, bar.size);
  Html figures, body;
  std::size_t y = 0;
  for (const HtmlBar& bar : bars) {
    const Html label = Html::text(shortened(bar.label, mostTold)), size = Html::number(bar.size);
    if (y > 0) figures.add("; ");
    figures.add(label, " ", size);
    body.add("<g transform=\"translate(0 ", Html::text(std::to_string(y)), ")\"><title>", label,
             ": ", size, "</title><text y=\"12\">", Html::text(shortened(bar.label, mostShown)),
             "</text><text class=\"value\" x=\"100%\" y=\"12\">", size, "</text>",
             "<rect class=\"rail\" y=\"18\" width=\"100%\" height=\"8\" rx=\"2\"/><rect class=\"",
             bar.less ? Html("less") : Html("bar"), "\" y=\"18\" height=\"8\" rx=\"2\" width=\"",
             percent(bar.size, most), "\"/></g>\n");
    y += barRow;
  }
  const Html its = Html::text(id);
  Html html;
  return html.add("<figure><figcaption>", Html::text(title),
                  "</figcaption>\n<svg class=\"chart\" role=\"img\" aria-labelledby=\"", its,
                  "-title ", its, "-desc\" height=\"", Html::text(std::to_string(y)),
                  "\">\n<title id=\"", its, "-title\">", Html::text(title), "</title>\n<desc id=\"",
                  its, "-desc\">", figures, "</desc>\n", body, "</svg></figure>");
}

}  // namespace bgpcomm
