/// The types of columns that several files share.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "workbench/engine/database.h"

namespace workbench {

/// Makes sure that putting files together makes no value another one.
class CommonTypes {
 public:
  /// Adds the columns of a file. Throws DataError when one of them is of a type that cannot be put
  /// together with that of the files before.
  void add(const std::string& label, const Statement& columns);

  /// Whether columns have to be converted: some are whole numbers here and decimals there.
  bool mustConvert() const;
  /// What to select of the file that was added as number `file`.
  std::string selection(size_t file) const;

 private:
  struct File {
    std::string label;
    std::map<std::string, EngineType> types;
  };
  struct Common {
    EngineType first;
    std::string firstLabel;
    bool converted = false;
  };
  std::vector<File> files_;
  std::map<std::string, Common> columns_;
};

}  // namespace workbench
