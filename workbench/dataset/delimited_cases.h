/// Cases of delimited text: CSV and TSV.
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "workbench/dataset/case_source.h"
#include "workbench/dataset/data_files.h"
#include "workbench/session/progress.h"
#include "workbench/values/field.h"

namespace workbench {

/// How delimited text is written.
struct TextLayout {
  char delimiter = 0;    ///< 0: found from the text
  std::string encoding;  ///< empty: UTF-8
};

/// Reads the heads of the files. `interrupted` may be null, else it outlives the source; `progress`
/// may be empty, and is called from any thread.
std::unique_ptr<CaseSource> openDelimitedCases(const DataFiles& files, const TextLayout& layout,
                                               const FieldRules& rules,
                                               const std::atomic<bool>* interrupted,
                                               ProgressCallback progress);

}  // namespace workbench
