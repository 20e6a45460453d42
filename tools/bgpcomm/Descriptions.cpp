#include "Descriptions.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <unordered_map>

#include "Commands.h"
#include "Terminal.h"

namespace bgpcomm {

using namespace Routing::Bgp;

namespace {

namespace fs = std::filesystem;

/// The files and folders that `--describe` names.
std::vector<std::string>& named() {
  static std::vector<std::string> paths;
  return paths;
}

/// Where a user keeps descriptions for good; empty when nobody says where that is.
fs::path ownFolder() {
  if (const char* const base = std::getenv("XDG_CONFIG_HOME"); base && *base == '/')
    return fs::path(base) / "bgpcomm" / "communities";
  if (const char* const home = std::getenv("HOME"); home && *home)
    return fs::path(home) / ".config" / "bgpcomm" / "communities";
  return {};
}

[[noreturn]] void refuse(const fs::path& path, std::error_code why) {
  throw DataError(path.string() + ": " + why.message());
}

void addFile(CommunityDescriptions& all, const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  if (!file) refuse(path, {errno, std::generic_category()});
  const auto faults = all.add(text);
  if (faults.empty()) return;
  const std::string more = faults.size() > 1 ? ", and " + grouped(faults.size() - 1) + " more" : "";
  printError(path.string() + ':' + std::to_string(faults[0].line) + ": " + faults[0].text + more);
}

/// A file, or all of a folder that are called as those of an AS are: `as64500.txt`.
void addPath(CommunityDescriptions& all, const fs::path& path) {
  std::error_code error;
  if (!fs::is_directory(path, error)) {
    if (error) refuse(path, error);
    return addFile(all, path);
  }
  std::vector<fs::path> files;
  for (fs::directory_iterator at(path, error), end; !error && at != end; at.increment(error)) {
    const std::string name = at->path().filename().string();
    std::error_code none;
    if (name.starts_with("as") && name.ends_with(".txt") && !fs::is_directory(at->path(), none))
      files.push_back(at->path());
  }
  if (error) refuse(path, error);
  std::ranges::sort(files);
  for (const fs::path& file : files) addFile(all, file);
}

std::shared_ptr<const CommunityDescriptions> readAll() {
  std::vector<fs::path> paths(named().begin(), named().end());
  std::error_code none;
  if (const fs::path own = ownFolder(); fs::is_directory(own, none)) paths.push_back(own);
  if (paths.empty()) return nullptr;
  auto all = std::make_shared<CommunityDescriptions>();
  for (const fs::path& path : paths) addPath(*all, path);
  return all;
}

}  // namespace

const std::shared_ptr<const CommunityDescriptions>& descriptions() {
  static const auto all = readAll();
  return all;
}

bool& explains() {
  static bool explains = false;
  return explains;
}

std::string explained(std::string text, std::string_view value, const std::string& description) {
  if (!description.empty() && description != value) text += " (" + description + ')';
  return text;
}

const std::string& descriptionOf(const AnyCommunity& community) {
  static std::unordered_map<std::string, std::string> known;
  const CommunityOctets octets(community);  // as many as no other attribute has
  const auto [at, isNew] = known.try_emplace(std::string(asText(octets.all())));
  if (isNew && descriptions()) at->second = visible(descriptions()->find(community).value_or(""));
  return at->second;
}

void addDescriptionOptions(CLI::App& app) {
  app.add_option("--describe", named(),
                 "What communities mean: files as 64500:100,Text by\n"
                 "lines, or a folder of such (as64500.txt)")
      ->allow_extra_args(false)
      ->option_text("PATH");
  app.add_flag("--explain", explains(), "Descriptions beside the values");
}

}  // namespace bgpcomm
