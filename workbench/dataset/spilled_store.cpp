// Cases that do not fit into memory: a table of the engine, read in chunks by every pass.
#include <fmt/format.h>

#include <algorithm>
#include <numeric>
#include <utility>

#include "workbench/dataset/case_store.h"
#include "workbench/engine/engine_holder.h"
#include "workbench/text/collation.h"
#include "workbench/values/data_error.h"
#include "workbench/values/excerpt.h"

namespace workbench {
namespace {

/// Runs a statement that may take long: unlike Database::execute it tells how far it is.
void run(Database& database, const std::string& sql) {
  Query query(database, sql);
  while (query.fetch()) {
  }
}

/// The cases' table: columns c0, c1, ... in split order, a weight as the last of them.
struct SpilledTable {
  std::vector<ValueKind> kinds;
  std::vector<int32_t> widths;
  std::vector<VarIndex> variables;  // of the columns but the weight
  std::vector<size_t> split;
  Variable weight;
  bool weighted = false;
  int64_t cases = 0;

  bool isText(size_t column) const { return kinds[column] == ValueKind::kString; }
};

/// Walks the table, which is in split order.
class SpilledFeed final : public CaseFeed {
 public:
  SpilledFeed(Database& database, const SpilledTable& table, ColumnViews views,
              std::shared_ptr<SplitCursor> cursor, FeedObserver& observer)
      : query_(database, "SELECT * FROM proportions_cases"),
        table_(table),
        views_(std::move(views)),
        cursor_(std::move(cursor)),
        observer_(observer),
        buffers_(table.variables.size()) {
    chunk_.columns = views_.data();
  }

  const CaseChunk* NextChunk() override;

 private:
  bool fetch();
  const CaseChunk* cases();
  const CaseChunk* marker();
  bool startsGroup(size_t row) const;
  std::vector<SplitValue> splitAt(size_t row) const;
  void decode(size_t column, size_t end);

  Query query_;
  const SpilledTable& table_;
  ColumnViews views_;
  std::shared_ptr<SplitCursor> cursor_;
  FeedObserver& observer_;
  std::vector<std::vector<double>> buffers_;
  std::vector<double> weights_;
  Chunk fetched_{nullptr};
  CountedChunk chunk_;
  int64_t delivered_ = 0;
  size_t row_ = 0;  // in what was fetched
  bool groupOpen_ = false;
  bool done_ = false;
};

bool SpilledFeed::fetch() {
  if (row_ < fetched_.size()) return true;
  fetched_ = query_.fetch();
  row_ = 0;
  return static_cast<bool>(fetched_);
}

std::vector<SplitValue> SpilledFeed::splitAt(size_t row) const {
  std::vector<SplitValue> values;
  for (const size_t column : table_.split) {
    if (table_.isText(column)) {
      values.emplace_back(std::string(textOf(fetched_.data<duckdb_string_t>(column)[row])));
    } else {
      values.emplace_back(fetched_.data<double>(column)[row]);
    }
  }
  return values;
}

bool SpilledFeed::startsGroup(size_t row) const {
  return std::any_of(table_.split.begin(), table_.split.end(), [&](size_t column) {
    if (!table_.isText(column)) {
      const auto* numbers = fetched_.data<double>(column);
      return numbers[row] != numbers[row - 1];
    }
    const auto* texts = fetched_.data<duckdb_string_t>(column);
    return textOf(texts[row]) != textOf(texts[row - 1]);
  });
}

void SpilledFeed::decode(size_t column, size_t end) {
  const size_t count = end - row_;
  std::vector<double>& buffer = buffers_[column];
  const int32_t width = table_.widths[column];
  const int32_t words = ObsLength(width);
  buffer.resize(count * static_cast<size_t>(words));
  if (table_.isText(column)) {
    const auto* texts = fetched_.data<duckdb_string_t>(column) + row_;
    for (size_t i = 0; i < count; ++i) {
      writeObservation(textOf(texts[i]), words, buffer.data() + i * static_cast<size_t>(words));
    }
  } else {
    std::copy_n(fetched_.data<double>(column) + row_, count, buffer.data());
  }
  views_[table_.variables[column]] = {buffer.data(), words};
}

const CaseChunk* SpilledFeed::marker() {
  groupOpen_ = false;
  chunk_.count = 0;
  chunk_.groupEnd = true;
  return &chunk_;
}

const CaseChunk* SpilledFeed::cases() {
  size_t end = fetched_.size();
  if (!table_.split.empty()) {
    std::vector<SplitValue> values = splitAt(row_);
    if (groupOpen_ && values != cursor_->own) return marker();
    cursor_->own = std::move(values);
    cursor_->values = &cursor_->own;
    groupOpen_ = true;
    end = row_ + 1;
    while (end < fetched_.size() && !startsGroup(end)) ++end;
  }
  for (size_t column = 0; column < buffers_.size(); ++column) decode(column, end);
  if (table_.weighted) {
    const auto* raw = fetched_.data<double>(buffers_.size()) + row_;
    weights_.assign(raw, raw + (end - row_));
    chunk_.weights = weights_.data();
  }
  chunk_.count = static_cast<ptrdiff_t>(end - row_);
  chunk_.groupEnd = false;
  delivered_ += chunk_.count;
  row_ = end;
  return &chunk_;
}

const CaseChunk* SpilledFeed::NextChunk() {
  if (done_) return nullptr;
  if (observer_.mayContinue()) {
    try {
      if (fetch()) return cases();
      if (groupOpen_) return marker();
      observer_.passComplete(delivered_);
    } catch (const std::exception& error) {
      observer_.passFailed(error);
    }
  }
  done_ = true;
  return nullptr;
}

class SpilledStore final : public CaseStore {
 public:
  SpilledStore(CaseSource& source, const CasePlan& plan, const std::vector<ValueKind>& kinds,
               int64_t cases, EngineHolder& workspace);
  int32_t width(size_t column) const override { return table_.widths[column]; }
  int64_t rows() const override { return table_.cases; }
  std::unique_ptr<CaseFeed> openFeed(ColumnViews views, std::shared_ptr<SplitCursor> cursor,
                                     FeedObserver& observer) override {
    return std::make_unique<SpilledFeed>(database_, table_, std::move(views), std::move(cursor),
                                         observer);
  }

 private:
  void spill(CaseSource& source, const CaseRequest& request);
  void append(TableWriter& writer, const CaseBlock& block);
  void appendNumbers(TableWriter& writer, size_t column, const double* values, size_t count);
  void sortCases();
  std::string rankTable(size_t column);

  Database& database_;
  const std::string& label_;
  SpilledTable table_;
  std::vector<double> numbers_;
};

Database& startedEngine(EngineHolder& workspace) {
  if (!workspace.started()) workspace.start({});
  return workspace.database();
}

SpilledStore::SpilledStore(CaseSource& source, const CasePlan& plan,
                           const std::vector<ValueKind>& kinds, int64_t cases,
                           EngineHolder& workspace)
    : database_(startedEngine(workspace)), label_(source.label()) {
  table_.kinds = kinds;
  table_.widths.assign(kinds.size(), 0);
  table_.variables = plan.variables;
  table_.split = plan.split;
  table_.weighted = plan.weight != nullptr;
  if (table_.weighted) {
    table_.weight = *plan.weight;
    table_.kinds.back() = ValueKind::kNumber;
  }
  spill(source, plan.request);
  if (cases >= 0 && table_.cases != cases) {
    throw DataError(fmt::format(
        "{}: the data changed while they were read: {} cases at first, then {}. Run the command "
        "again.",
        source.label(), cases, table_.cases));
  }
  if (!table_.split.empty()) sortCases();
}

void SpilledStore::spill(CaseSource& source, const CaseRequest& request) {
  std::string declared;
  std::vector<bool> texts;
  for (size_t i = 0; i < table_.kinds.size(); ++i) {
    texts.push_back(table_.isText(i));
    declared += fmt::format("{}c{} {}", i == 0 ? "" : ", ", i, texts.back() ? "VARCHAR" : "DOUBLE");
    if (texts.back()) table_.widths[i] = 1;
  }
  database_.execute(fmt::format("CREATE OR REPLACE TEMP TABLE proportions_cases ({})", declared));
  TableWriter writer(database_, "proportions_cases", texts);
  source.forEachBlock(request, [&](const CaseBlock& block) { append(writer, block); });
  writer.close();
}

void SpilledStore::append(TableWriter& writer, const CaseBlock& block) {
  for (size_t begin = 0; begin < block.cases; begin += TableWriter::kMostRows) {
    const size_t count = std::min(TableWriter::kMostRows, block.cases - begin);
    for (size_t i = 0; i < block.columns.size(); ++i) {
      const CaseBlock::Column& column = block.columns[i];
      if (!table_.isText(i)) {
        // A weight of texts weighs nothing.
        appendNumbers(writer, i, column.numbers.empty() ? nullptr : column.numbers.data() + begin,
                      count);
        continue;
      }
      for (size_t row = begin; row < begin + count; ++row) {
        const size_t width = column.texts[row].size();
        if (width > kWidestString) {
          throw DataError(fmt::format("{}: the text '{}' takes {} bytes; a string holds up to {}.",
                                      block.placeOf(row), excerpt(column.texts[row]), width,
                                      kWidestString));
        }
        table_.widths[i] = std::max(table_.widths[i], static_cast<int32_t>(width));
      }
      writer.addTexts(i, column.texts.data() + begin, count);
    }
    writer.endBlock(count);
  }
  table_.cases += static_cast<int64_t>(block.cases);
}

void SpilledStore::appendNumbers(TableWriter& writer, size_t column, const double* values,
                                 size_t count) {
  if (!table_.weighted || column + 1 != table_.kinds.size()) {
    return writer.addNumbers(column, values, count);
  }
  numbers_.assign(count, kSystemMissing);
  for (size_t i = 0; values != nullptr && i < count; ++i) {
    numbers_[i] = normalWeight(table_.weight, values[i]);
  }
  writer.addNumbers(column, numbers_.data(), count);
}

/// A table of the column's different values with their places in the order of strings.
std::string SpilledStore::rankTable(size_t column) {
  std::vector<std::string> values;
  {
    Query query(database_, fmt::format("SELECT DISTINCT c{} FROM proportions_cases", column));
    while (const Chunk chunk = query.fetch()) {
      const auto* texts = chunk.data<duckdb_string_t>(0);
      for (size_t row = 0; row < chunk.size(); ++row) values.emplace_back(textOf(texts[row]));
    }
  }
  std::sort(values.begin(), values.end(),
            [](const std::string& a, const std::string& b) { return compareStrings(a, b) < 0; });
  std::string table = fmt::format("proportions_ranks{}", column);
  database_.execute(
      fmt::format("CREATE OR REPLACE TEMP TABLE {} (value VARCHAR, rank DOUBLE)", table));
  TableWriter writer(database_, table, {true, false});
  for (size_t begin = 0; begin < values.size(); begin += TableWriter::kMostRows) {
    const size_t count = std::min(TableWriter::kMostRows, values.size() - begin);
    const std::vector<std::string_view> texts(
        values.begin() + static_cast<ptrdiff_t>(begin),
        values.begin() + static_cast<ptrdiff_t>(begin + count));
    numbers_.resize(count);
    std::iota(numbers_.begin(), numbers_.end(), static_cast<double>(begin));
    writer.addTexts(0, texts.data(), count);
    writer.addNumbers(1, numbers_.data(), count);
    writer.endBlock(count);
  }
  writer.close();
  return table;
}

void SpilledStore::sortCases() {
  std::string order;
  std::string joins;
  for (const size_t column : table_.split) {
    if (table_.isText(column)) {
      const std::string ranks = rankTable(column);
      joins += fmt::format(" JOIN {0} ON s.c{1} = {0}.value", ranks, column);
      order += ranks + ".rank, ";
    } else {
      // Missing comes before all numbers, minus infinity too.
      order += fmt::format("s.c{0} <> CAST('{1}' AS DOUBLE), s.c{0}, ", column, kSystemMissing);
    }
  }
  run(database_, fmt::format("CREATE OR REPLACE TEMP TABLE proportions_sorted AS "
                             "SELECT s.* FROM proportions_cases AS s{} ORDER BY {}s.rowid",
                             joins, order));
  database_.execute(
      "DROP TABLE proportions_cases; "
      "ALTER TABLE proportions_sorted RENAME TO proportions_cases");
}

}  // namespace

std::unique_ptr<CaseStore> makeSpilledStore(CaseSource& source, const CasePlan& plan,
                                            const std::vector<ValueKind>& kinds, int64_t cases,
                                            EngineHolder& workspace) {
  return std::make_unique<SpilledStore>(source, plan, kinds, cases, workspace);
}

}  // namespace workbench
