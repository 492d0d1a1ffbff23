/// What a dictionary's document says, in its own terms.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "workbench/dataset/case_source.h"

namespace workbench {

struct DictionaryField {
  /// A category or a missing value.
  struct Entry {
    std::string text;
    std::string label;
    bool labelled = false;
    std::string place;
  };
  std::string place;
  std::string title;
  std::string typeName;  // empty: as detected
  ColumnType::Name type = ColumnType::Name::kDetected;
  std::vector<Entry> categories;
  bool ordered = false;
  std::vector<Entry> missing;  // without ""
};

using DictionaryFields = std::map<std::string, std::unique_ptr<DictionaryField>>;

/// The fields by name. Throws DataError that names the file and the place in it.
DictionaryFields readDictionary(const std::string& file);

/// Throws DataError that names the file and the place in it, which is empty for the whole.
[[noreturn]] void refuseDictionary(const std::string& file, const std::string& place,
                                   const std::string& what);

}  // namespace workbench
