/// The program's command line.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>

#include "workbench/dataset/source_dataset.h"
#include "workbench/render/render.h"

namespace workbench {

enum class ProgressMode { kAuto, kAlways, kNever };

struct ProgramOptions {
  DataOptions data;
  std::string commandText;
  Format format = Format::kText;
  RenderOptions shown;
  std::string output;  ///< a path; empty: standard output
  ProgressMode progress = ProgressMode::kAuto;
  bool advise = true;
};

/// A command line that cannot be run: what is wrong and what to do.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Reads the command line, and the command text from a file or standard input. Nothing when help or
/// the version was asked for and has been printed. Throws UsageError.
std::optional<ProgramOptions> readOptions(int argc, const char* const* argv);

}  // namespace workbench
