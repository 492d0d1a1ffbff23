#include "workbench/dataset/server_cases.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

#include "workbench/dataset/case_collector.h"
#include "workbench/dataset/server_blocks.h"
#include "workbench/dataset/server_rows.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

using Use = ServerBlocks::Use;

constexpr size_t kBlockRows = 4096;
double numberAt(const ServerStatement& statement, size_t column) {
  const std::string_view text = statement.text(column);
  double value = 0.0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

SourceVariable declaredVariable(const ServerColumn& column) {
  SourceVariable variable;
  variable.variable.name = column.name;
  variable.variable.kind = valueKindOf(column.kind);
  variable.untyped = column.kind == ServerKind::kText || column.kind == ServerKind::kMixed;
  variable.kindKnown = column.kind != ServerKind::kMixed && column.kind != ServerKind::kZeroOne;
  variable.categories = column.categories;
  if (column.kind == ServerKind::kUnusable) {
    variable.unusable = fmt::format(
        "{} holds bytes, intervals, lists or another type without a meaning here{}; take the part "
        "that is wanted with --query",
        column.name, column.typeName.empty() ? "" : " (" + column.typeName + ")");
  }
  return variable;
}

/// What a counting statement tells of each combination, after its values.
class CombinationTotals {
 public:
  CombinationTotals(size_t values, bool weighted) : values_(values), weighted_(weighted) {}

  void beginBlock() { weights.clear(); }
  /// Whether there are weights that the server takes for others than the program does.
  bool isOdd(const ServerStatement& row) const {
    return weighted_ && numberAt(row, values_ + 5) != 0.0;
  }
  /// How many combinations the row becomes: none when it tells of a table without rows, two when
  /// there are weights above 0 and below it, whose sums are looked at apart.
  size_t take(const ServerStatement& row) {
    const double count = numberAt(row, values_ + (weighted_ ? 1 : 0));
    if (count == 0.0) return 0;
    cases += count;
    counts.push_back(count);
    if (!weighted_) return 1;
    weights.push_back(row.isNull(values_) ? kSystemMissing : numberAt(row, values_));
    sums.push_back((numberAt(row, values_ + 2) + numberAt(row, values_ + 3)) / kWeightParts);
    const double below = numberAt(row, values_ + 4);
    if (below == 0.0) return 1;
    counts.push_back(0.0);
    weights.push_back(kSystemMissing);
    sums.push_back(below);
    return 2;
  }

  std::vector<double> weights;  // of the block at hand
  std::vector<double> counts;
  std::vector<double> sums;
  double cases = 0.0;

 private:
  size_t values_;
  bool weighted_;
};

class ServerCases final : public CaseSource {
 public:
  ServerCases(ServerOptions options, const FieldRules& rules, ProgressCallback progress)
      : rules_(rules), progress_(std::move(progress)) {
    interrupted_ = std::move(options.isInterrupted);
    options.isInterrupted = [this] { return lookUp(); };
    relation_ = std::make_unique<ServerRelation>(options);
    if (!rules_.missingGiven) rules_.missingTexts.clear();
    for (const ServerColumn& column : relation_->columns()) {
      variables_.push_back(declaredVariable(column));
    }
  }

  const std::string& label() const override { return relation_->label(); }
  const std::vector<SourceVariable>& variables() const override { return variables_; }
  CodedCases read(const CaseRequest& request) override;
  void forEachBlock(const CaseRequest& request,
                    const std::function<void(const CaseBlock&)>& take) override;
  std::vector<std::string> statements(const CaseRequest& request) const override;
  std::string cost() const override;

 private:
  std::optional<CodedCases> count(const CaseRequest& request, bool roundWeight);
  std::optional<CodedCases> takeCombinations(const CaseRequest& request, const Selection& selection,
                                             const std::string& sql);
  CodedCases stream(const CaseRequest& request);
  Selection selectionOf(const CaseRequest& request, bool roundWeight) const;
  bool roundsWeight(const CaseRequest& request) const;
  void finish(const CaseRequest& request, ServerBlocks& blocks, CodedCases& cases);
  bool collect(ServerBlocks& blocks, CaseCollector& collector) const;
  void reckon(const ServerRows& rows);
  bool lookUp();
  void showProgress();

  FieldRules rules_;
  std::function<bool()> interrupted_;
  std::unique_ptr<ServerRelation> relation_;
  std::vector<SourceVariable> variables_;
  std::vector<SpelledColumn> understood_;  // of the last read
  ProgressCallback progress_;
  int64_t rowsNow_ = 0;  // of the statement that runs
  int64_t rows_ = 0;
  int64_t bytes_ = 0;
};

void ServerCases::showProgress() {
  if (progress_) progress_(rowsNow_ == 0 ? Phase::kWaiting : Phase::kReading, -1.0, rowsNow_);
}

/// Called while the server is waited for.
bool ServerCases::lookUp() {
  showProgress();
  return interrupted_ && interrupted_();
}

void ServerCases::reckon(const ServerRows& rows) {
  rows_ += rows.rows();
  bytes_ += rows.bytes();
}

std::string ServerCases::cost() const {
  return fmt::format("from the server: {} row{}, {} byte{} of values", rows_, rows_ == 1 ? "" : "s",
                     bytes_, bytes_ == 1 ? "" : "s");
}

/// With missing values of its own that are numbers, weights are rounded here.
bool ServerCases::roundsWeight(const CaseRequest& request) const {
  const Variable* weight = request.weight;
  if (weight == nullptr) return false;
  const ColumnRequest& wanted = request.columns.back();
  return canRound(relation_->columns()[wanted.column]) && wanted.type.codes.empty() &&
         wanted.type.name != ColumnType::Name::kString && wanted.type.missingTexts.empty() &&
         weight->missingNumbers.empty() && weight->missingLow > weight->missingHigh;
}

Selection ServerCases::selectionOf(const CaseRequest& request, bool roundWeight) const {
  Selection selection;
  for (const ColumnRequest& wanted : request.columns) {
    selection.columns.push_back(selectedColumn(relation_->columns()[wanted.column], wanted.type));
  }
  if (roundWeight) {
    selection.weight = selection.columns.back().column;
    selection.columns.pop_back();
  }
  return selection;
}

std::vector<std::string> ServerCases::statements(const CaseRequest& request) const {
  std::vector<std::string> all = relation_->statements();
  const Dialect& dialect = relation_->dialect();
  if (request.collapse != CollapseMode::kNever) {
    const auto counting =
        countingStatement(dialect, selectionOf(request, roundsWeight(request)), relation_->sql());
    if (counting) {
      all.push_back(*counting);
      return all;
    }
  }
  for (std::string& statement : caseStatements(*relation_, selectionOf(request, false))) {
    all.push_back(std::move(statement));
  }
  return all;
}

CodedCases ServerCases::read(const CaseRequest& request) {
  try {
    if (request.collapse != CollapseMode::kNever) {
      std::optional<CodedCases> counted = count(request, roundsWeight(request));
      if (counted) return std::move(*counted);
    }
    return stream(request);
  } catch (const ServerError& error) {
    throw DataError(relation_->problem(error));
  }
}

/// Nothing when there are too many different cases, or the server cannot keep them apart. A weight
/// that the server rounds otherwise than the program would is not rounded there.
std::optional<CodedCases> ServerCases::count(const CaseRequest& request, bool roundWeight) {
  const Selection selection = selectionOf(request, roundWeight);
  const std::optional<std::string> sql =
      countingStatement(relation_->dialect(), selection, relation_->sql());
  if (!sql) return std::nullopt;
  CaseRequest keys = request;
  if (roundWeight) keys.columns.pop_back();
  std::optional<CodedCases> counted = takeCombinations(keys, selection, *sql);
  if (counted || !roundWeight) return counted;
  return count(request, false);
}

std::optional<CodedCases> ServerCases::takeCombinations(const CaseRequest& request,
                                                        const Selection& selection,
                                                        const std::string& sql) {
  ServerBlocks blocks(*relation_, request, rules_, "combination");
  const bool weighted = selection.weight != nullptr;
  std::vector<ValueKind> kinds = blocks.kinds();
  if (weighted) kinds.push_back(ValueKind::kNumber);
  CaseCollector collector(kinds, CollapseMode::kNever, request.memoryLimit);
  CombinationTotals totals(request.columns.size(), weighted);
  rowsNow_ = 0;
  const auto rows = openRows(*relation_, sql, blocks.inMemory());
  bool more = true;
  bool usable = true;
  while (more && usable) {
    blocks.beginBlock();
    totals.beginBlock();
    while (usable && blocks.rows() < kBlockRows && (more = rows->next())) {
      ++rowsNow_;
      usable = !totals.isOdd(rows->row());
      for (size_t i = totals.take(rows->row()); i > 0; --i) blocks.take(rows->row(), Use::kCodes);
    }
    blocks.endBlock();
    if (weighted)
      collector.addNumbers(request.columns.size(), totals.weights.data(), blocks.rows());
    usable = usable && collect(blocks, collector) && totals.counts.size() <= kMostCombinations;
  }
  reckon(*rows);
  if (!usable) return std::nullopt;
  CodedCases counted = collector.finish();
  counted.counts = std::move(totals.counts);
  counted.weightSums = std::move(totals.sums);
  counted.cases = static_cast<int64_t>(totals.cases);
  finish(request, blocks, counted);
  return counted;
}

/// False when the cases take more than the limit.
bool ServerCases::collect(ServerBlocks& blocks, CaseCollector& collector) const {
  size_t texts = 0;
  const size_t columns = blocks.kinds().size();
  for (size_t i = 0; i < columns; ++i) {
    if (blocks.isSpelled(i)) {
      collector.addCodes(i, blocks.codes(i).data(), blocks.rows());
      texts += blocks.spelled(i).memory();
    } else if (blocks.isText(i)) {
      collector.addTexts(i, blocks.texts(i).data(), blocks.rows());
    } else {
      collector.addNumbers(i, blocks.numbers(i).data(), blocks.rows());
    }
  }
  return collector.endBlock(blocks.rows(), texts);
}

void ServerCases::finish(const CaseRequest& request, ServerBlocks& blocks, CodedCases& cases) {
  for (size_t i = 0; i < request.columns.size(); ++i) {
    SourceVariable& variable = variables_[request.columns[i].column];
    blocks.finish(i, cases.complete, cases.columns[i]);
    variable.variable.kind = cases.columns[i].kind;
    variable.kindKnown = true;
  }
  understood_ = blocks.takeSpelled();
}

CodedCases ServerCases::stream(const CaseRequest& request) {
  ServerBlocks blocks(*relation_, request, rules_, "case");
  CaseCollector collector(blocks.kinds(), request.collapse, request.memoryLimit);
  rowsNow_ = 0;
  const auto rows = openCases(*relation_, selectionOf(request, false), blocks.inMemory());
  bool keeping = true;
  bool more = true;
  while (more) {
    blocks.beginBlock();
    while (blocks.rows() < kBlockRows && (more = rows->next())) {
      blocks.take(rows->row(), keeping ? Use::kCodes : Use::kNote);
      ++rowsNow_;
    }
    blocks.endBlock();
    showProgress();
    if (keeping) {
      keeping = collect(blocks, collector);
      if (!keeping) blocks.forgetTexts();
    } else {
      collector.endBlock(blocks.rows());
    }
  }
  reckon(*rows);
  relation_->refuseLostConnection();
  CodedCases cases = collector.finish();
  finish(request, blocks, cases);
  return cases;
}

void ServerCases::forEachBlock(const CaseRequest& request,
                               const std::function<void(const CaseBlock&)>& take) {
  try {
    ServerBlocks blocks(*relation_, request, rules_, "case");
    blocks.understandAs(understood_);
    rowsNow_ = 0;
    const auto rows = openCases(*relation_, selectionOf(request, false), blocks.inMemory());
    CaseBlock block;
    block.columns.resize(request.columns.size());
    int64_t before = 0;
    block.placeOf = [&](size_t row) {
      return fmt::format("{}, case {}", label(), before + static_cast<int64_t>(row) + 1);
    };
    bool more = true;
    while (more) {
      blocks.beginBlock();
      while (blocks.rows() < kBlockRows && (more = rows->next())) {
        blocks.take(rows->row(), Use::kValues);
        ++rowsNow_;
      }
      blocks.endBlock();
      showProgress();
      block.cases = blocks.rows();
      for (size_t i = 0; i < block.columns.size(); ++i) {
        block.columns[i].numbers = blocks.numbers(i);
        block.columns[i].texts = blocks.texts(i);
      }
      take(block);
      before += static_cast<int64_t>(block.cases);
    }
    reckon(*rows);
    relation_->refuseLostConnection();
  } catch (const ServerError& error) {
    throw DataError(relation_->problem(error));
  }
}

}  // namespace

std::unique_ptr<CaseSource> openServerCases(const ServerOptions& options, const FieldRules& rules,
                                            ProgressCallback progress) {
  return std::make_unique<ServerCases>(options, rules, std::move(progress));
}

}  // namespace workbench
