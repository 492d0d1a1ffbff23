/// Cases held in memory, column by column, in the order in which they are handed over.
#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/dataset/active_dataset.h"

namespace workbench {

/// A split group: its cases end before case `end` (they begin where the group before ends).
struct SplitGroup {
  int64_t end = 0;
  std::vector<SplitValue> values;
};

/// Grows while the cases are read in file order; finish() brings them into split order.
class CaseTable {
 public:
  /// One column per variable of `columns`, in any order, without repeats. `weighted` tables carry
  /// weights besides.
  CaseTable(const std::vector<VarIndex>& columns, bool weighted);

  VarIndex variableOf(size_t column) const { return columns_[column].variable; }
  size_t columnCount() const { return columns_.size(); }

  /// Makes a column one of strings, at least this wide; to be called before values are added.
  void declareString(size_t column, int32_t width);
  /// The values are taken as they are, so they must be normal already (strings: trimmed).
  void addNumber(size_t column, double value) { columns_[column].words.push_back(value); }
  void addNumbers(size_t column, const double* values, size_t count);
  /// Room for `count` more numbers, which the caller fills in.
  double* extend(size_t column, size_t count);
  double* extendWeights(size_t count);
  void addString(size_t column, std::string_view value);
  void addWeight(double weight) { weights_.push_back(weight); }
  void setCaseCount(int64_t count) { caseCount_ = count; }

  /// Bytes that the table takes or will take once it is finished.
  size_t bytes() const;
  /// Of the widest string so far, at least 1; 0 for columns of numbers.
  int32_t width(size_t column) const;

  /// Brings the cases into the order of the split variables (each must be a column), those of a
  /// group into the order in which they were added, and strings into observations. To be called
  /// once, after all cases were added.
  void finish(const std::vector<VarIndex>& splitVariables);
  /// The same for cases that are in order already.
  void finishOrdered(const std::vector<VarIndex>& splitVariables);
  /// Room for that many cases.
  void reserve(size_t cases);

  int64_t caseCount() const { return caseCount_; }
  /// Empty without split variables.
  const std::vector<SplitGroup>& groups() const { return groups_; }
  const double* weights() const { return weighted_ ? weights_.data() : nullptr; }
  ColumnView view(size_t column) const;

 private:
  struct Column {
    VarIndex variable = -1;
    bool isString = false;
    int32_t width = 0;
    ptrdiff_t stride = 1;
    std::vector<double> words;  // numbers, or the padded strings once finished
    std::string bytes;          // strings one after the other
    std::vector<size_t> ends;   // where each of them ends in `bytes`
    std::string_view text(size_t row) const;
  };

  std::vector<size_t> positions(const std::vector<VarIndex>& variables) const;
  void orderCases(const std::vector<size_t>& splitColumns);
  void cutGroups(const std::vector<size_t>& splitColumns);
  std::vector<double> sortKeys(const Column& column) const;
  static void permute(Column& column, const std::vector<uint32_t>& order);
  static void padStrings(Column& column);
  SplitValue splitValue(const Column& column, int64_t row) const;

  std::vector<Column> columns_;
  std::vector<double> weights_;
  std::vector<SplitGroup> groups_;
  int64_t caseCount_ = 0;
  bool weighted_;
};

/// Cases that a feed reads at a time, and more than any chunk holds: what the engine gives last may
/// reach beyond.
inline constexpr int64_t kChunkCases = 16'384;
inline constexpr int64_t kMostChunkCases = 2 * kChunkCases;

/// Views of all variables of a data set; those that were not read show a missing value.
class ColumnViews {
 public:
  explicit ColumnViews(int32_t variableCount);
  ColumnView& operator[](VarIndex variable) { return views_[static_cast<size_t>(variable)]; }
  const ColumnView* data() const { return views_.data(); }
  /// Makes a variable that was not read look missing.
  void showMissing(const ActiveDataset& dataset, VarIndex variable);

 private:
  std::vector<ColumnView> views_;
};

/// Makes a chunk of the cases of a table from `begin` to before `end`; `views` is what it shows.
void showCases(const CaseTable& table, int64_t begin, int64_t end, ColumnViews& views,
               CaseChunk& chunk);

/// Where the newest feed stands: the values of the group that it delivered last.
struct SplitCursor {
  const std::vector<SplitValue>* values = nullptr;
  std::vector<SplitValue> own;  ///< for feeds whose values do not outlive them
};

/// What a feed reports to the data set that opened it.
class FeedObserver {
 public:
  virtual ~FeedObserver() = default;
  /// Asked before every chunk; false ends the feed for good.
  virtual bool mayContinue() = 0;
  /// All cases were delivered.
  virtual void passComplete(int64_t cases) = 0;
  /// The cases cannot be read to the end.
  virtual void passFailed(const std::exception& error) = 0;
};

/// Walks a finished table in chunks of at most `chunkSize` cases. The observer may be null, else it
/// outlives the feed; `cases` is what it is told at the end.
std::unique_ptr<CaseFeed> makeTableFeed(std::shared_ptr<const CaseTable> table, ColumnViews views,
                                        std::shared_ptr<SplitCursor> cursor, int64_t chunkSize,
                                        FeedObserver* observer, int64_t cases);

}  // namespace workbench
