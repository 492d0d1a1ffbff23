/// The variables' dictionary: a Frictionless Table Schema.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "workbench/dataset/case_source.h"
#include "workbench/dataset/variable.h"

namespace workbench {

/// What a dictionary says of one variable, still in its own terms.
struct DictionaryField;

class Dictionary {
 public:
  /// An empty one.
  Dictionary();
  /// Throws DataError that names the file and the place in it when the file cannot be read, is
  /// larger than 64 MiB, is not a JSON Table Schema, or says about values what is not supported.
  /// `decimal` is the sign that the data's numbers have; a listed value may be spelt with it.
  explicit Dictionary(const std::string& file, char decimal = '.');
  ~Dictionary();
  Dictionary(Dictionary&&) noexcept;
  Dictionary& operator=(Dictionary&&) noexcept;

  const std::string& file() const { return file_; }

  /// Throws DataError when the dictionary lists a variable that the data do not have.
  void refuseUnknown(const std::vector<std::string>& names) const;

  /// How the values of a column are to be read. Throws DataError when the column, whose kind is
  /// known, cannot be of the type.
  ColumnType type(const SourceVariable& column) const;

  /// The variable with its label.
  Variable titled(Variable variable) const;

  /// The entry of a variable of that name and kind, as it is read by `type`. Throws DataError when
  /// a category does not fit the kind.
  Variable variable(Variable variable, const ColumnType& type) const;

 private:
  /// As everywhere the case of letters does not matter, but an exact match wins.
  const DictionaryField* find(const std::string& name) const;
  std::optional<double> valueOf(const Variable& variable, const std::string& text) const;
  /// Values that got a label.
  struct Labelled {
    std::set<double> numbers;
    std::set<std::string> texts;
  };
  Labelled addCategories(const DictionaryField& field, Variable& variable) const;
  void addMissing(const DictionaryField& field, const Labelled& labelled, Variable& variable) const;

  std::string file_;
  char decimal_ = '.';
  std::map<std::string, std::unique_ptr<DictionaryField>> fields_;
  std::map<std::string, const DictionaryField*> folded_;  // by folded names
};

}  // namespace workbench
