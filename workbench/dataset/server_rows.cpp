#include "workbench/dataset/server_rows.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "workbench/odbc/case_parts.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

/// Rows that a cursor hands over at first, at least and at most, and how many bytes of values they
/// should have.
constexpr int64_t kFirstPortion = 1'000;
constexpr int64_t kSmallestPortion = 100;
constexpr int64_t kLargestPortion = 20'000;
constexpr int64_t kPortionBytes = 8 << 20;
/// What the parts that come by one statement may take in the driver.
constexpr double kPartMemory = 128.0 * 1024 * 1024;

constexpr const char* kClose = "CLOSE proportions_cases";

std::string declaredCursor(const std::string& select) {
  return "DECLARE proportions_cases NO SCROLL CURSOR FOR " + select;
}

std::string fetchedPortion(int64_t rows) {
  return fmt::format("FETCH FORWARD {} FROM proportions_cases", rows);
}

class PlainRows final : public ServerRows {
 public:
  PlainRows(ServerRelation& relation, const std::string& sql, std::vector<bool> inMemory)
      : statement_(relation.connection()) {
    statement_.asDoubles(std::move(inMemory));
    statement_.run(sql);
  }
  bool next() override { return statement_.fetch(); }
  const ServerStatement& row() const override { return statement_; }

 private:
  ServerStatement statement_;
};

class CursorRows final : public ServerRows {
 public:
  CursorRows(ServerRelation& relation, const std::string& select, std::vector<bool> inMemory)
      : statement_(relation.connection()) {
    statement_.asDoubles(std::move(inMemory));
    statement_.run(declaredCursor(select));
    statement_.run(fetchedPortion(portion_));
  }

  bool next() override {
    if (statement_.fetch()) {
      ++fetched_;
      return true;
    }
    const bool isLast = fetched_ < portion_;
    if (isLast) {
      statement_.run(kClose);
      return false;
    }
    const int64_t width = std::max<int64_t>(statement_.bytes() / statement_.rows(), 1);
    portion_ = std::clamp(kPortionBytes / width, kSmallestPortion, kLargestPortion);
    fetched_ = 0;
    statement_.run(fetchedPortion(portion_));
    return next();
  }
  const ServerStatement& row() const override { return statement_; }

 private:
  ServerStatement statement_;
  int64_t portion_ = kFirstPortion;
  int64_t fetched_ = 0;  // rows of the portion
};

class PartRows final : public ServerRows {
 public:
  PartRows(ServerRelation& relation, const Selection& selection, std::vector<bool> inMemory)
      : relation_(relation), selection_(selection), statement_(relation.connection()) {
    ranges_ = partRanges(readSizes(), selection.columns.size(), kPartMemory);
    statement_.asDoubles(std::move(inMemory));
  }

  bool next() override {
    if (repeats_ > 0) {
      --repeats_;
      return true;
    }
    while (next_ == 0 || !statement_.fetch()) {
      if (next_ > 0) refuseChanged();
      if (next_ == ranges_.size()) return false;
      found_ = 0;
      statement_.run(
          partStatement(relation_.dialect(), selection_, relation_.sql(), ranges_[next_++]));
    }
    const int64_t cases =
        ranges_[next_ - 1].counted ? wholeAt(statement_, selection_.columns.size()) : 1;
    found_ += cases;
    repeats_ = cases - 1;
    return true;
  }
  const ServerStatement& row() const override { return statement_; }
  int64_t rows() const override { return statement_.rows() + sizes_; }
  int64_t bytes() const override { return statement_.bytes() + sizeBytes_; }

 private:
  static int64_t wholeAt(const ServerStatement& row, size_t column) {
    return std::stoll(std::string(row.text(column)));
  }

  std::vector<PartSize> readSizes() {
    ServerStatement statement(relation_.connection());
    statement.run(partSizesStatement(relation_.dialect(), selection_, relation_.sql()));
    std::vector<PartSize> sizes;
    while (statement.fetch()) {
      sizes.push_back({static_cast<int>(wholeAt(statement, 0)), wholeAt(statement, 1),
                       static_cast<double>(wholeAt(statement, 2))});
    }
    sizes_ = statement.rows();
    sizeBytes_ = statement.bytes();
    return sizes;
  }

  /// Where a transaction does not keep others from changing the table, or a query gives other
  /// values each time, the statements do not fit together.
  void refuseChanged() const {
    const int64_t expected = ranges_[next_ - 1].cases;
    if (found_ == expected) return;
    throw DataError(fmt::format(
        "{}: the data changed while they were read: {} cases at first, then {}. Run the command "
        "again.",
        relation_.label(), expected, found_));
  }

  ServerRelation& relation_;
  const Selection selection_;
  std::vector<PartRange> ranges_;
  size_t next_ = 0;      // range
  int64_t found_ = 0;    // cases of the range at hand
  int64_t repeats_ = 0;  // of the row at hand, still to come
  int64_t sizes_ = 0;
  int64_t sizeBytes_ = 0;
  ServerStatement statement_;
};

}  // namespace

std::unique_ptr<ServerRows> openRows(ServerRelation& relation, const std::string& sql,
                                     std::vector<bool> inMemory) {
  return std::make_unique<PlainRows>(relation, sql, std::move(inMemory));
}

std::unique_ptr<ServerRows> openCases(ServerRelation& relation, const Selection& selection,
                                      std::vector<bool> inMemory) {
  const Dialect& dialect = relation.dialect();
  if (dialect.manyRows == ManyRows::kInParts) {
    return std::make_unique<PartRows>(relation, selection, std::move(inMemory));
  }
  const std::string select = casesStatement(dialect, selection, relation.sql());
  if (dialect.manyRows == ManyRows::kByCursor) {
    return std::make_unique<CursorRows>(relation, select, std::move(inMemory));
  }
  return openRows(relation, select, std::move(inMemory));
}

std::vector<std::string> caseStatements(const ServerRelation& relation,
                                        const Selection& selection) {
  const Dialect& dialect = relation.dialect();
  if (dialect.manyRows == ManyRows::kInParts) {
    return {partSizesStatement(dialect, selection, relation.sql()),
            partStatement(dialect, selection, relation.sql(), {0, kCaseParts - 1, 0, false})};
  }
  const std::string select = casesStatement(dialect, selection, relation.sql());
  if (dialect.manyRows == ManyRows::kByCursor) {
    return {declaredCursor(select), fetchedPortion(kFirstPortion), kClose};
  }
  return {select};
}

}  // namespace workbench
