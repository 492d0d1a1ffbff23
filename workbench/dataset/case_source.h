/// The boundary between a data set and what it is read from.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "workbench/dataset/coded_cases.h"
#include "workbench/dataset/odd_text.h"
#include "workbench/dataset/variable.h"

namespace workbench {

/// When identical cases are counted while they are read, and handed over once.
enum class CollapseMode { kAuto, kAlways, kNever };

/// A column of a source, with all that the source itself says about it.
struct SourceVariable {
  /// The name, and what a source brings along (a label, value labels, missing values). The kind is
  /// provisional until `kindKnown`.
  Variable variable;
  bool kindKnown = true;  ///< false: found by reading all of the column's values
  std::string unusable;   ///< why no command may name it; empty when it may
  bool zoned = false;     ///< date-times that had a zone
  /// Of dates and times that the source has as counts: a dictionary may make them numbers again.
  bool countable = false;
  bool untyped = false;  ///< its values are texts, so that a dictionary may make any kind of them
  /// Of an enumeration the texts in declared order; its numbers are 1, 2, ...
  std::vector<std::string> categories;
  /// Of a column of texts, found by reading it: at most one value in twenty is not of the one other
  /// kind that all the rest have.
  std::optional<OddText> odd = {};
};

/// A column of texts whose values decide what it is.
inline SourceVariable untypedVariable(std::string name) {
  SourceVariable variable;
  variable.variable.name = std::move(name);
  variable.kindKnown = false;
  variable.untyped = true;
  return variable;
}

/// What a dictionary says about the values of a column.
struct ColumnType {
  enum class Name { kDetected, kString, kNumber, kInteger, kBoolean, kDate, kTime, kDateTime };
  Name name = Name::kDetected;
  std::vector<std::string> missingTexts;  ///< user-missing values as texts
  bool asCount = false;  ///< a date or time is to be the number that the source has for it
  /// Of a string that is read as ordered categories: texts and the number of each.
  std::vector<std::pair<std::string, double>> codes;
};

/// A column that is wanted.
struct ColumnRequest {
  size_t column = 0;  ///< position among the source's variables
  ColumnType type;
};

struct CaseRequest {
  std::vector<ColumnRequest> columns;
  /// The entry of the last column, when that is the weight: of its values only the rounded ones and
  /// their sum matter. Null without a weight.
  const Variable* weight = nullptr;
  CollapseMode collapse = CollapseMode::kAuto;
  size_t memoryLimit = 0;  ///< bytes that the cases may take
};

/// A run of single cases in file order, valid during the call that gets it: of each column that was
/// asked for the numbers or the texts, as CaseColumn has them.
struct CaseBlock {
  struct Column {
    std::vector<double> numbers;
    std::vector<std::string_view> texts;
  };
  size_t cases = 0;
  std::vector<Column> columns;
  /// Where a case of the block stands, for messages ("data.csv, line 7").
  std::function<std::string(size_t row)> placeOf;
};

/// Columns of a few cases that a source can be read with at a time in little memory: any source,
/// and one whose files the program reads itself.
inline constexpr size_t kFewColumns = 4096;
inline constexpr size_t kManyColumns = size_t{1} << 16U;

/// Something that holds cases: files, a table of a database, the result of a query. Everything that
/// is wrong with it is a DataError with what, where and what to do instead; a run that is stopped
/// from outside ends in Interrupted.
class CaseSource {
 public:
  virtual ~CaseSource() = default;

  /// Names the data in messages.
  virtual const std::string& label() const = 0;
  /// In file order. After a read the kinds of the columns read are known.
  virtual const std::vector<SourceVariable>& variables() const = 0;
  /// How many columns of a few cases can be read at a time in little memory.
  virtual size_t mostColumns() const { return kFewColumns; }

  /// Reads all cases. The same request gives the same values and kinds every time; only how many of
  /// the cases were counted may differ. Cases that take more than the memory limit are left out and
  /// the result says so.
  virtual CodedCases read(const CaseRequest& request) = 0;
  /// Hands over all cases in file order, block by block, on the caller's thread.
  virtual void forEachBlock(const CaseRequest& request,
                            const std::function<void(const CaseBlock&)>& take) = 0;

  /// The statements that a read of the request would run elsewhere, in their order, all that were
  /// run so far among them; none when the program reads the data itself. Runs nothing.
  virtual std::vector<std::string> statements(const CaseRequest& /*request*/) const { return {}; }
  /// What the reads so far have brought from elsewhere, as a text for the reader; empty when
  /// nothing.
  virtual std::string cost() const { return {}; }

  /// Throws DataError when what was read is not what is there now.
  virtual void refuseChanged() const {}
};

}  // namespace workbench
