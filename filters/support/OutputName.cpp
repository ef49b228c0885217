#include "filters/support/OutputName.h"

#include <filesystem>
#include <system_error>

#include <corvel/Path.h>
#include <corvel/Text.h>

#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

namespace fs = std::filesystem;

// Follows links by hand: the library's own functions want to have a file at their end.
fs::path FollowLinks(fs::path path, std::error_code& failed) {
  constexpr int kMostLinks = 40;  // as Linux has it
  for (int links = 0; fs::is_symlink(fs::symlink_status(path, failed)); ++links) {
    if (links == kMostLinks) {
      failed = std::make_error_code(std::errc::too_many_symbolic_link_levels);
      return path;
    }
    const fs::path next = fs::read_symlink(path, failed);
    if (failed) return path;
    path = path.parent_path() / next;
  }
  return path;
}

// What is wrong with a name that only a file may have; empty when all is well.
std::string Obstacle(const fs::path& path) {
  std::error_code failed;
  switch (fs::status(path, failed).type()) {
    case fs::file_type::regular:
    case fs::file_type::not_found:
      return {};
    case fs::file_type::none:
      return failed.message();
    case fs::file_type::directory:
      return "it is a folder";
    default:
      return "it is a device or a pipe, no file that could be replaced";
  }
}

}  // namespace

std::wstring OutputTarget(const std::wstring& path) {
  const fs::path given(corvel::PathToSystem(path));
  if (path.find(L'\0') != std::wstring::npos) {
    throw FilterError("cannot write a file with a zero byte in its name");
  }
  if (given.filename().empty()) FailToWrite(path, "this is no name of a file");
  std::error_code failed;
  const fs::path target = FollowLinks(given, failed);
  if (failed == std::errc::too_many_symbolic_link_levels) FailToWrite(path, failed.message());
  const std::string obstacle = Obstacle(target);
  if (!obstacle.empty()) FailToWrite(path, obstacle);
  return target == given ? path : corvel::PathFromSystem(target.string());
}

void FailToWrite(const std::wstring& path, const std::string& reason) {
  throw FilterError("cannot write \"" + corvel::Utf8FromWide(path) + "\": " + reason);
}

}  // namespace trovan::filters
