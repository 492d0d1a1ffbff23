// Cases that do not fit into memory: a table of the engine, read in chunks by every pass.
#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "workbench/dataset/case_store.h"
#include "workbench/dataset/variable.h"
#include "workbench/text/collation.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

constexpr size_t kChunkBytes = size_t{16} << 20;

/// Runs a statement that leaves a table behind; unlike Database::execute it can be interrupted.
void run(Database& database, const std::string& sql) {
  Query query(database, sql);
  while (query.fetch()) {
  }
}

/// Walks the result of a query that is in split order.
class EngineFeed final : public CaseFeed {
 public:
  EngineFeed(Database& database, const std::string& sql, CaseReader reader,
             std::vector<VarIndex> split, ColumnViews views, std::shared_ptr<SplitCursor> cursor,
             FeedObserver& observer)
      : query_(database, sql),
        reader_(std::move(reader)),
        split_(std::move(split)),
        views_(std::move(views)),
        cursor_(std::move(cursor)),
        observer_(observer) {
    chunk_.columns = views_.data();
  }

  const CaseChunk* NextChunk() override;

 private:
  bool load();
  const CaseChunk* slice();
  const CaseChunk* marker();

  Query query_;
  CaseReader reader_;
  std::vector<VarIndex> split_;
  ColumnViews views_;
  std::shared_ptr<SplitCursor> cursor_;
  FeedObserver& observer_;
  CaseChunk chunk_;
  std::optional<CaseTable> table_;
  int64_t row_ = 0;
  size_t group_ = 0;
  bool groupOpen_ = false;
  bool done_ = false;
};

bool EngineFeed::load() {
  table_.emplace(reader_.newTable());
  row_ = 0;
  group_ = 0;
  while (table_->caseCount() < kChunkCases && table_->bytes() < kChunkBytes) {
    const Chunk chunk = query_.fetch();
    if (!chunk) break;
    reader_.add(chunk, *table_);
  }
  table_->finishOrdered(split_);
  return table_->caseCount() > 0;
}

const CaseChunk* EngineFeed::marker() {
  groupOpen_ = false;
  chunk_.count = 0;
  chunk_.groupEnd = true;
  return &chunk_;
}

const CaseChunk* EngineFeed::slice() {
  int64_t end = table_->caseCount();
  if (!split_.empty()) {
    const SplitGroup& group = table_->groups()[group_];
    if (groupOpen_ && group.values != cursor_->own) return marker();
    end = group.end;
    ++group_;
    if (!groupOpen_) cursor_->own = group.values;
    groupOpen_ = true;
    cursor_->values = &cursor_->own;
  }
  showCases(*table_, row_, end, views_, chunk_);
  row_ = end;
  return &chunk_;
}

const CaseChunk* EngineFeed::NextChunk() {
  if (done_) return nullptr;
  if (!observer_.mayContinue()) {
    done_ = true;
    return nullptr;
  }
  try {
    if (table_ && row_ < table_->caseCount()) return slice();
    if (load()) return slice();
    if (groupOpen_) return marker();
    observer_.passComplete(reader_.casesRead());
  } catch (const std::exception& error) {
    observer_.passFailed(error);
  }
  done_ = true;
  return nullptr;
}

class EngineStore final : public CaseStore {
 public:
  explicit EngineStore(const CasePlan& plan);
  ~EngineStore() override;
  int32_t width(size_t column) const override { return entries_[column].width; }
  std::unique_ptr<CaseFeed> openFeed(ColumnViews views, std::shared_ptr<SplitCursor> cursor,
                                     FeedObserver& observer) override;

 private:
  void copyCases();
  void findWidths();
  void orderCases();
  std::string orderOf(size_t position, std::string& joins);
  std::string rankTable(size_t column);
  size_t columnOf(VarIndex variable) const;

  CasePlan plan_;
  std::vector<Variable> entries_;  // with exact widths; plan_.columns point to them
  Variable weight_;
  std::string rows_;  // what stands after SELECT in every pass
  std::vector<std::string> tables_;
};

EngineStore::EngineStore(const CasePlan& plan) : plan_(plan) {
  entries_.reserve(plan_.columns.size());
  for (ReadColumn& column : plan_.columns) column.entry = &entries_.emplace_back(*column.entry);
  if (plan_.weightEntry != nullptr) {
    weight_ = *plan_.weightEntry;
    plan_.weightEntry = &weight_;
  }
  std::vector<size_t> used;
  for (const ReadColumn& column : plan_.columns) {
    used.push_back(static_cast<size_t>(column.variable));
  }
  if (plan_.weight >= 0) used.push_back(static_cast<size_t>(plan_.weight));
  rows_ = fmt::format("SELECT {} FROM {}", selectOf(plan_), plan_.source->relation(used));
  // The engine keeps the order of the file where no order is asked for.
  if (!plan_.source->rescannable() || !plan_.split.empty()) copyCases();
  findWidths();
  if (!plan_.split.empty()) orderCases();
}

EngineStore::~EngineStore() {
  for (const std::string& table : tables_) {
    try {
      plan_.source->database().execute("DROP TABLE IF EXISTS temp." + table);
    } catch (const EngineError&) {
      // It goes with the database.
      continue;
    }
  }
}

size_t EngineStore::columnOf(VarIndex variable) const {
  const auto found = std::find_if(plan_.columns.begin(), plan_.columns.end(),
                                  [&](const ReadColumn& c) { return c.variable == variable; });
  return static_cast<size_t>(found - plan_.columns.begin());
}

void EngineStore::copyCases() {
  std::string list;
  for (size_t i = 0; i < plan_.columns.size(); ++i) {
    const bool text = plan_.columns[i].entry->isString();
    list +=
        text ? fmt::format("coalesce(rtrim(c{0}, ' '), '') AS c{0}, ", i) : fmt::format("c{}, ", i);
  }
  if (plan_.weight >= 0 || plan_.columns.empty()) list += "w, ";
  list.resize(list.size() - 2);
  tables_.emplace_back("proportions_cases");
  run(plan_.source->database(),
      fmt::format("CREATE OR REPLACE TEMP TABLE {} AS SELECT {} FROM ({})", tables_.back(), list,
                  rows_));
  rows_ = "SELECT * FROM temp." + tables_.back();
}

void EngineStore::findWidths() {
  std::string list;
  std::vector<size_t> strings;
  for (size_t i = 0; i < plan_.columns.size(); ++i) {
    if (!plan_.columns[i].entry->isString()) continue;
    strings.push_back(i);
    list += fmt::format("{}CAST(coalesce(max(strlen(rtrim(c{}, ' '))), 1) AS BIGINT)",
                        list.empty() ? "" : ", ", i);
  }
  if (strings.empty()) return;
  Query query(plan_.source->database(), fmt::format("SELECT {} FROM ({})", list, rows_));
  const Chunk chunk = query.fetch();
  for (size_t k = 0; k < strings.size(); ++k) {
    const int64_t width = chunk.data<int64_t>(k)[0];
    // Wider strings are refused with their case when they are read.
    entries_[strings[k]].width = static_cast<int32_t>(std::clamp<int64_t>(width, 1, 32'767));
  }
}

/// A table of the column's different values with their places in the order of strings.
std::string EngineStore::rankTable(size_t column) {
  Database& database = plan_.source->database();
  std::vector<std::string> values;
  {
    Query query(database, fmt::format("SELECT DISTINCT c{} FROM ({})", column, rows_));
    while (const Chunk chunk = query.fetch()) {
      const auto* texts = chunk.data<duckdb_string_t>(0);
      for (size_t row = 0; row < chunk.size(); ++row) values.emplace_back(textOf(texts[row]));
    }
  }
  std::sort(values.begin(), values.end(),
            [](const std::string& a, const std::string& b) { return compareStrings(a, b) < 0; });
  std::string table = fmt::format("proportions_ranks{}", column);
  tables_.push_back(table);
  database.execute(
      fmt::format("CREATE OR REPLACE TEMP TABLE {} (value VARCHAR, rank DOUBLE)", table));
  TableWriter writer(database, table);
  double rank = 0;
  for (const std::string& value : values) writer.addRow(value, rank++);
  writer.close();
  return table;
}

/// The ORDER BY terms of a split variable.
std::string EngineStore::orderOf(size_t position, std::string& joins) {
  const size_t column = columnOf(plan_.split[position]);
  if (!entries_[column].isString()) {
    // Missing before all numbers; NaN is missing.
    return fmt::format(
        "(s.c{0} IS NOT NULL AND NOT isnan(s.c{0})), "
        "CASE WHEN isnan(s.c{0}) THEN NULL ELSE s.c{0} + 0e0 END",
        column);
  }
  const std::string table = rankTable(column);
  joins += fmt::format(" JOIN temp.{0} ON s.c{1} = {0}.value", table, column);
  return table + ".rank";
}

void EngineStore::orderCases() {
  std::string order;
  std::string joins;
  for (size_t i = 0; i < plan_.split.size(); ++i) order += orderOf(i, joins) + ", ";
  const std::string sorted = "proportions_sorted";
  tables_.push_back(sorted);
  run(plan_.source->database(),
      fmt::format(
          "CREATE OR REPLACE TEMP TABLE {} AS SELECT s.* FROM temp.proportions_cases AS s{} "
          "ORDER BY {}s.rowid",
          sorted, joins, order));
  plan_.source->database().execute("DROP TABLE temp.proportions_cases");
  rows_ = "SELECT * FROM temp." + sorted;
}

std::unique_ptr<CaseFeed> EngineStore::openFeed(ColumnViews views,
                                                std::shared_ptr<SplitCursor> cursor,
                                                FeedObserver& observer) {
  CaseReader reader(plan_.columns,
                    plan_.weight >= 0 ? CaseReader::Weights::kRaw : CaseReader::Weights::kNone,
                    plan_.weightEntry, plan_.source->label());
  return std::make_unique<EngineFeed>(plan_.source->database(), rows_, std::move(reader),
                                      plan_.split, std::move(views), std::move(cursor), observer);
}

}  // namespace

std::unique_ptr<CaseStore> makeEngineStore(const CasePlan& plan) {
  return std::make_unique<EngineStore>(plan);
}

}  // namespace workbench
