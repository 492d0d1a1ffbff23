/// The files that a run reads, as far as its command line names them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "workbench/cli/options.h"
#include "workbench/system/file_identity.h"

namespace workbench {

struct InputFile {
  std::string what;  ///< "the data file d.csv", for messages
  FileIdentity identity;
};

/// Each file once; what does not exist, or is not a regular file, is left out.
std::vector<InputFile> inputFiles(const ProgramOptions& options);

/// Throws UsageError when `output` is one of the files that the run reads.
void refuseToOverwrite(const std::vector<InputFile>& inputs, const std::string& outputPath,
                       const std::optional<FileIdentity>& output);

}  // namespace workbench
