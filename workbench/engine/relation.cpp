#include "workbench/engine/relation.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "workbench/engine/allowed_plan.h"
#include "workbench/engine/read_problem.h"
#include "workbench/values/column_names.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

/// The query without what may stand after its end. Comments are not blanks here: they end with the
/// line that is added after them.
std::string trimmedEnd(std::string sql) {
  while (!sql.empty() && (sql.back() == ';' || sql.back() == ' ' || sql.back() == '\n' ||
                          sql.back() == '\t' || sql.back() == '\r')) {
    sql.pop_back();
  }
  return sql;
}

}  // namespace

Relation::Relation(std::string label, const std::atomic<bool>* interrupted)
    : label_(std::move(label)) {
  engine_.watch(interrupted);
}

void Relation::refuseChanged() const {
  for (const FileStamp& file : files_) file.refuseChanged();
}

void Relation::watchFile(const std::string& path, const std::string& label) {
  files_.emplace_back(path, label);
}

void Relation::take(const std::string& sql, const std::string& place) {
  engine_.lock();
  try {
    const std::string select = "SELECT * FROM " + sql;
    refuseForeignOperators(database(), select, place);
    const Statement statement(database(), select);
    columns_.resize(statement.columnCount());
    for (size_t i = 0; i < columns_.size(); ++i) {
      columns_[i] = {statement.columnName(i), statement.columnType(i), false};
    }
  } catch (const EngineError& error) {
    throw DataError(readProblem(error.what(), place));
  }
  sql_ = sql;
}

void Relation::takeQuery(const std::string& query) {
  std::vector<std::string> names;
  try {
    const Statement statement = Statement::selectOnly(database(), query);
    for (size_t i = 0; i < statement.columnCount(); ++i) names.push_back(statement.columnName(i));
  } catch (const std::invalid_argument& error) {
    throw DataError(fmt::format("--query must be one SELECT statement; this is {}.", error.what()));
  } catch (const EngineError& error) {
    throw DataError(readProblem(error.what(), "--query"));
  }
  refuseBadNames(names, "--query");
  take("(\n" + trimmedEnd(query) + "\n)", "--query");
}

void Relation::markPathColumns(const std::vector<std::string>& names) {
  for (RelationColumn& column : columns_) {
    column.fromPath = std::find(names.begin(), names.end(), column.name) != names.end();
  }
}

}  // namespace workbench
