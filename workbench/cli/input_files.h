/// The files that a run reads.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "workbench/cli/options.h"
#include "workbench/cli/output_target.h"
#include "workbench/system/file_identity.h"

namespace workbench {

struct InputFile {
  std::string what;  ///< "the data file d.csv", for messages
  std::optional<FileIdentity> identity;
  /// Of a file that an engine may still make while it reads: where it would be, else empty.
  std::string place = {};
};

/// Each file once; what does not exist, or is not a regular file, is left out.
std::vector<InputFile> inputFiles(const ProgramOptions& options);

/// A database that a server's driver reads, and the files beside it; nothing when it is no file.
std::vector<InputFile> databaseFiles(const std::string& path);

/// Throws UsageError when `output`, which was given as `outputPath`, is one of the files that the
/// run reads.
void refuseToOverwrite(const std::vector<InputFile>& inputs, const std::string& outputPath,
                       const OutputTarget& output);

}  // namespace workbench
