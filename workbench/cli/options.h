/// The program's command line.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "workbench/bootstrap/bootstrap.h"
#include "workbench/dataset/source_dataset.h"
#include "workbench/dataset/typed_counts.h"
#include "workbench/render/render.h"

namespace workbench {

enum class ProgressMode { kAuto, kAlways, kNever };

struct ProgramOptions {
  DataOptions data;
  std::optional<TypedCounts> counts;  ///< in place of data
  bool list = false;                  ///< the variables are listed, no command runs
  bool explain = false;  ///< the statements that would run elsewhere are listed, no command runs
  std::optional<std::string> passwordFile;
  std::string commandText;
  std::string commandFile;  ///< where the text was read from; empty: the command line
  std::string locale = "und";
  Format format = Format::kText;
  RenderOptions shown;
  std::string output = "-";  ///< a path; "-": standard output
  ProgressMode progress = ProgressMode::kAuto;
  bool advise = true;
  BootstrapOptions bootstrap;
};

/// A command line that cannot be run: what is wrong and what to do.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Reads the command line, and the command text from a file or standard input. Throws UsageError.
ProgramOptions readOptions(const std::vector<std::string>& arguments);

}  // namespace workbench
