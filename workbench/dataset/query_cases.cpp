#include "workbench/dataset/query_cases.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "workbench/dataset/engine_cases.h"
#include "workbench/engine/read_problem.h"
#include "workbench/engine/relation.h"
#include "workbench/values/data_error.h"
#include "workbench/values/extended_missing.h"
#include "workbench/values/whole_numbers.h"

namespace workbench {
namespace {

/// Fills a table of the engine with numbers and texts, and shows it as what they are.
class DataTable {
 public:
  DataTable(Database& database, CaseSource& texts);
  /// Makes the view `data`.
  void show();

 private:
  void create();
  void append(TableWriter& writer, const CaseBlock& block);
  std::string shownColumn(size_t column) const;
  const double* withoutLetters(size_t column, const double* values, size_t count);

  Database& database_;
  CaseSource& source_;
  CaseRequest request_;
  std::vector<ValueKind> kinds_;
  std::vector<bool> whole_;
  std::vector<double> changed_;
};

DataTable::DataTable(Database& database, CaseSource& texts) : database_(database), source_(texts) {
  for (size_t i = 0; i < texts.variables().size(); ++i) request_.columns.push_back({i, {}});
  request_.collapse = CollapseMode::kNever;
  request_.memoryLimit = 0;  // the kinds first; the cases go to the engine block by block
  for (const CaseColumn& column : texts.read(request_).columns) kinds_.push_back(column.kind);
  whole_.assign(kinds_.size(), true);
  create();
}

void DataTable::create() {
  std::string declared;
  std::vector<bool> isText;
  for (size_t i = 0; i < kinds_.size(); ++i) {
    isText.push_back(kinds_[i] == ValueKind::kString);
    declared +=
        fmt::format("{}c{} {}", i == 0 ? "" : ", ", i, isText.back() ? "VARCHAR" : "DOUBLE");
  }
  if (kinds_.empty()) throw DataError(fmt::format("{}: there is no column.", source_.label()));
  database_.execute(fmt::format("CREATE TEMP TABLE proportions_data ({})", declared));
  TableWriter writer(database_, "proportions_data", isText);
  source_.forEachBlock(request_, [&](const CaseBlock& block) { append(writer, block); });
  writer.close();
  source_.refuseChanged();
}

void DataTable::append(TableWriter& writer, const CaseBlock& block) {
  for (size_t begin = 0; begin < block.cases; begin += TableWriter::kMostRows) {
    const size_t count = std::min(TableWriter::kMostRows, block.cases - begin);
    for (size_t i = 0; i < kinds_.size(); ++i) {
      if (kinds_[i] == ValueKind::kString) {
        writer.addTexts(i, block.columns[i].texts.data() + begin, count);
        continue;
      }
      const double* values = withoutLetters(i, block.columns[i].numbers.data() + begin, count);
      writer.addNumbers(i, values, count, kSystemMissing);
      whole_[i] = whole_[i] && std::all_of(values, values + count, [](double value) {
                    return value == kSystemMissing ||
                           (std::abs(value) <= kAllWhole && value == std::trunc(value));
                  });
    }
    writer.endBlock(count);
  }
}

/// SQL has one kind of missing value.
const double* DataTable::withoutLetters(size_t column, const double* values, size_t count) {
  if (!source_.variables()[column].variable.extendedMissing) return values;
  changed_.assign(values, values + count);
  for (double& value : changed_) {
    if (isExtendedMissing(value)) value = kSystemMissing;
  }
  return changed_.data();
}

std::string DataTable::shownColumn(size_t column) const {
  const SourceVariable& variable = source_.variables()[column];
  const std::string name = quotedName(variable.variable.name);
  // Microseconds of all seconds at once would be more than a double holds.
  const std::string moment = fmt::format(
      "make_timestamp(CAST(floor(c{0}) AS BIGINT) * 1000000 + CAST(round((c{0} - floor(c{0})) * "
      "1e6) AS BIGINT))",
      column);
  switch (kinds_[column]) {
    case ValueKind::kString:
      return fmt::format("nullif(c{}, '') AS {}", column, name);
    case ValueKind::kBoolean:
      return fmt::format("CAST(c{} AS BOOLEAN) AS {}", column, name);
    case ValueKind::kDate:
      return fmt::format("CAST({} AS DATE) AS {}", moment, name);
    case ValueKind::kTime:
      return fmt::format("CAST({} AS TIME) AS {}", moment, name);
    case ValueKind::kDateTime:
      return fmt::format("CAST({} AS {}) AS {}", moment,
                         variable.zoned ? "TIMESTAMPTZ" : "TIMESTAMP", name);
    case ValueKind::kNumber:
      break;
  }
  return fmt::format("CAST(c{} AS {}) AS {}", column, whole_[column] ? "BIGINT" : "DOUBLE", name);
}

void DataTable::show() {
  std::string list;
  for (size_t i = 0; i < kinds_.size(); ++i) list += (i == 0 ? "" : ", ") + shownColumn(i);
  database_.execute(fmt::format("CREATE TEMP VIEW data AS SELECT {} FROM proportions_data", list));
}

}  // namespace

std::unique_ptr<CaseSource> openQueryCases(CaseSource& texts, const std::string& query,
                                           const FieldRules& rules,
                                           const std::atomic<bool>* interrupted,
                                           const ProgressCallback& progress) {
  auto relation = std::make_unique<Relation>(texts.label(), interrupted);
  relation->engine().setProgress(progress);
  try {
    relation->engine().start({});
    DataTable(relation->database(), texts).show();
  } catch (const EngineError& error) {
    throw DataError(readProblem(error.what(), texts.label()));
  }
  relation->takeQuery(query);
  return openEngineCases(std::move(relation), rules);
}

}  // namespace workbench
