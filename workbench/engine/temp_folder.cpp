#include "workbench/engine/temp_folder.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "workbench/values/data_error.h"

namespace workbench {
namespace {

/// What mkdtemp asks for at the end of a name: it puts characters that no other folder has there.
constexpr const char* kMadeUnique = "XXXXXX";

}  // namespace

TempFolder::TempFolder() {
  const char* chosen = std::getenv("TMPDIR");
  const std::string parent = chosen != nullptr && *chosen != '\0' ? chosen : "/tmp";
  path_ = parent + "/proportions-" + kMadeUnique;
  if (mkdtemp(path_.data()) == nullptr) {
    throw DataError(
        fmt::format("No working folder can be made in {}: {}.\nSet TMPDIR to a folder "
                    "that can be written to.",
                    parent, std::strerror(errno)));
  }
}

TempFolder::~TempFolder() {
  std::error_code ignored;  // there is nobody left to tell
  std::filesystem::remove_all(path_, ignored);
}

}  // namespace workbench
