#include "Commands.h"
#include "FileSaving.h"
#include "ReportPage.h"
#include "Terminal.h"

namespace bgpcomm {
namespace {

struct Options {
  std::vector<std::string> files;
  std::string output;
  U64 top = 10;
};

int runReport(const Options& options) {
  const bool toFile = options.output != "-";
  if (toFile)
    checkTarget({options.output, "--output", &checkReplaceableHtml}, options.files, "files");
  const FileLists lists;  // of all files
  PeerUses peers;
  ReportFigures report;
  report.top = options.top;
  report.total.file = totalName;
  bool good = true, any = false;
  for (const std::string& file : options.files) {
    FileFigures figures;
    const ReadResult result = readInto(file, lists, figures, &peers);
    reportPassedOver(file, result);
    good = good && !result.failed;
    any = any || !result.unopened;
    report.total.add(figures);
    report.files.push_back(std::move(figures));
  }
  if (!any) return exitBadData;  // nothing that would be worth a page
  good = takeFigures(lists, options.top, report.total) && good;
  for (std::size_t type = 0; type < listTypeCount; ++type)
    report.details.push_back(lists[type].details());
  report.peers = peers.sorted();
  const std::string page = reportPage(report);
  if (toFile) return writeHtml(page, options.output) && good ? 0 : exitBadData;
  print(page);
  return good ? 0 : exitBadData;
}

}  // namespace

void addReport(CLI::App& app, int& exitCode) {
  const auto [command, options] = addCommand(
      app,
      {"report", "Write a page of HTML that shows what files share",
       "How lists are shared, the most used communities and what they mean, kinds,\n"
       "route-target sets, peers, what is malformed; of all files together. The page\n"
       "needs nothing besides: no network, no script but to sort its tables. It takes\n"
       "the place of a page or an empty file of its name, once it is complete; no other\n"
       "file is replaced. Exit code 1 when a file cannot be read to its end; the page\n"
       "says why, and has what was read.\n\n"
       "Example: bgpcomm report rib.bz2 -o report.html"},
      exitCode, runReport);
  addFiles(command, options.files);
  command
      .add_option("-o,--output", options.output,
                  "The page to write; - is standard output; a\nsymbolic link is replaced")
      ->required()
      ->option_text("PAGE");
  command
      .add_option("--top", options.top,
                  "At most so many of the most used values of each\ntype, and of route-target sets "
                  "(default 10;\n0: all)")
      ->option_text("N");
  addTextOptions(command);
}

}  // namespace bgpcomm
