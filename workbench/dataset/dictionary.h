/// The variables' dictionary: a Frictionless Table Schema.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "workbench/dataset/active_dataset.h"
#include "workbench/engine/source.h"

namespace workbench {

/// What a dictionary says of one variable, still in its own terms.
struct DictionaryField;

class Dictionary {
 public:
  /// An empty one.
  Dictionary();
  /// Throws DataError that names the file and the place in it when the file cannot be read, is no
  /// JSON or no Table Schema.
  explicit Dictionary(const std::string& file);
  ~Dictionary();
  Dictionary(Dictionary&&) noexcept;
  Dictionary& operator=(Dictionary&&) noexcept;

  const std::string& file() const { return file_; }

  /// The texts that stand for missing values in a column of that name though they are no values of
  /// any kind but text.
  const std::vector<std::string>& missingTexts(const std::string& name) const;

  /// Throws DataError when the dictionary lists a variable that the data do not have.
  void refuseUnknown(const std::vector<std::string>& names) const;

  /// How the column is to be read: as detected, unless the dictionary gives a type.
  ColumnReading reading(const SourceColumn& column) const;

  /// The entry of a variable of that name and kind. Throws DataError when a category does not fit
  /// the kind.
  Variable variable(Variable variable) const;

  /// True when the type is "integer".
  bool wholeOnly(const std::string& name) const;

 private:
  const DictionaryField* find(const std::string& name) const;

  std::string file_;
  std::map<std::string, std::unique_ptr<DictionaryField>> fields_;
};

}  // namespace workbench
