#include "workbench/engine/temp_folder.h"

#include <fmt/format.h>

#include <cstdlib>
#include <system_error>

#include "workbench/system/temporary_paths.h"
#include "workbench/values/data_error.h"

namespace workbench {

TempFolder::TempFolder() {
  const char* chosen = std::getenv("TMPDIR");
  const std::string parent = chosen != nullptr && *chosen != '\0' ? chosen : "/tmp";
  try {
    path_ = makeTemporaryFolder(parent + "/proportions-");
  } catch (const std::system_error& error) {
    throw DataError(
        fmt::format("No working folder can be made in {}: {}.\nSet TMPDIR to a folder "
                    "that can be written to.",
                    parent, error.code().message()));
  }
}

TempFolder::~TempFolder() { removeTemporary(path_); }

}  // namespace workbench
