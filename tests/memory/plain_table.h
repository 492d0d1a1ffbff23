/// Cases held in memory as they are handed over, column by column: plain and easy to check.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/dataset/case_feed.h"

namespace workbench {

/// A split group: its cases end before case `end` (they begin where the group before ends).
struct SplitGroup {
  int64_t end = 0;
  std::vector<SplitValue> values;
};

/// Grows while the cases are read in file order; finish() brings them into split order.
class PlainTable {
 public:
  /// One column per variable of `columns`, in any order, without repeats. `weighted` tables carry
  /// weights besides.
  PlainTable(const std::vector<VarIndex>& columns, bool weighted);

  VarIndex variableOf(size_t column) const { return columns_[column].variable; }
  size_t columnCount() const { return columns_.size(); }

  /// Makes a column one of strings, at least this wide; to be called before values are added.
  void declareString(size_t column, int32_t width);
  /// The values are taken as they are, so they must be normal already (strings: trimmed).
  void addNumbers(size_t column, const double* values, size_t count);
  void addString(size_t column, std::string_view value);
  void addWeight(double weight) { weights_.push_back(weight); }
  void setCaseCount(int64_t count) { caseCount_ = count; }

  /// Brings the cases into the order of the split variables (each must be a column), those of a
  /// group into the order in which they were added, and strings into observations. To be called
  /// once, after all cases were added.
  void finish(const std::vector<VarIndex>& splitVariables);

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

/// Walks a finished table in chunks of at most `chunkSize` cases. The observer outlives the feed;
/// `cases` is what it is told at the end.
std::unique_ptr<CaseFeed> makePlainFeed(std::shared_ptr<const PlainTable> table, ColumnViews views,
                                        std::shared_ptr<SplitCursor> cursor, int64_t chunkSize,
                                        FeedObserver& observer, int64_t cases);

}  // namespace workbench
