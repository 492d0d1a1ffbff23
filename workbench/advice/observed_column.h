/// What the values of one variable of a command are, seen chunk by chunk.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "workbench/dataset/active_dataset.h"

namespace workbench {

/// What becomes of a value.
enum class ValueClass : uint8_t { kValid, kUserMissing, kSystemMissing };

/// What is asked about a variable.
struct ColumnQuestions {
  bool includesUserMissing = false;  ///< user-missing values count as valid, too
  bool everyValue = false;           ///< which values occur
  /// The values that are looked for, however many others there are.
  std::vector<SplitValue> wanted;
  bool firstOfGroup = false;  ///< the lowest value of each split group
  bool lastOfGroup = false;   ///< the highest
};

/// Split groups that agree in their lowest or highest value.
struct GroupsOfValue {
  SplitValue value;
  int64_t groups = 0;
  std::vector<size_t> first;  ///< numbers of the first few of them
};

/// The split groups by a value of theirs.
struct GroupsByValue {
  std::vector<GroupsOfValue> values;  ///< the first few that occurred, most groups first
  int64_t otherGroups = 0;            ///< those of all other values
  SplitValue lowest;                  ///< of all values, when there is any
  SplitValue highest;
};

/// The answers.
struct ColumnAnswers {
  bool anyValue = false;
  bool oneValue = false;           ///< exactly one value occurs
  SplitValue some;                 ///< a value that occurs, when any does
  std::vector<SplitValue> values;  ///< ascending, as far as `everyValue` was asked
  bool moreValues = false;         ///< there are more than could be listed
  std::vector<bool> found;         ///< for each of `wanted` whether it occurs
  GroupsByValue byGroup;
  /// Texts that occur and that people write for missing values, though not declared as such.
  std::vector<std::string> missingLike;
};

/// At most so many values of a variable are listed, and so many groups of a value.
inline constexpr size_t kMostListedValues = 1000;
inline constexpr size_t kMostListedGroups = 5;

/// The observer of one column. "Valid" is what the command takes as valid.
class ObservedColumn {
 public:
  virtual ~ObservedColumn() = default;
  /// Tells what becomes of each of `count` values. True, with nothing told, when all are valid.
  virtual bool classify(const double* words, ptrdiff_t stride, size_t count,
                        ValueClass* classes) = 0;
  /// Takes the values of rows whose mark is not 0; all of them are valid.
  virtual void take(const double* words, ptrdiff_t stride, size_t count, const uint8_t* marks) = 0;
  /// The same for what is asked about each split group.
  virtual void takeOfGroup(const double* words, ptrdiff_t stride, size_t count,
                           const uint8_t* marks) = 0;
  virtual void endGroup(size_t group) = 0;
  virtual ColumnAnswers answers() const = 0;
};

/// For a variable whose width is known. The entry outlives the column.
std::unique_ptr<ObservedColumn> observeColumn(const Variable& variable, ColumnQuestions questions);

std::unique_ptr<ObservedColumn> observeNumbers(const Variable& variable, ColumnQuestions questions);
std::unique_ptr<ObservedColumn> observeTexts(const Variable& variable, ColumnQuestions questions);

/// Counts split groups by a value of theirs.
class GroupValues {
 public:
  void add(const SplitValue& value, size_t group);
  GroupsByValue found() const;

 private:
  GroupsByValue found_;
};

}  // namespace workbench
