/// Sources that are files of text.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "workbench/dataset/case_source.h"
#include "workbench/dataset/data_files.h"
#include "workbench/dataset/odd_text.h"

namespace workbench {

/// What such sources share: the files, their columns, and how places in them are named.
class FileCases : public CaseSource {
 public:
  const std::string& label() const final { return files_.label; }
  const std::vector<SourceVariable>& variables() const final { return variables_; }
  size_t mostColumns() const final { return kManyColumns; }

 protected:
  explicit FileCases(DataFiles files) : files_(std::move(files)) {}
  /// "data.csv, line 7", with the file given by its position.
  std::string lineText(size_t file, uint64_t line) const;
  /// The odd text of a column whose values were tallied by file and line.
  std::optional<OddText> oddText(const KindTally& tally) const;

  const DataFiles files_;
  std::vector<SourceVariable> variables_;
};

}  // namespace workbench
