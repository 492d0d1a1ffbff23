// Sources that declare their columns themselves: typed files, tables and queries.
#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "workbench/engine/read_problem.h"
#include "workbench/engine/source_kinds.h"
#include "workbench/engine/typed_values.h"
#include "workbench/text/nearest.h"
#include "workbench/text/text_fold.h"
#include "workbench/values/column_names.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

ColumnForm formOf(EngineKind kind) {
  switch (kind) {
    case EngineKind::kNumber:
      return ColumnForm::kNumber;
    case EngineKind::kBoolean:
      return ColumnForm::kBoolean;
    case EngineKind::kDate:
      return ColumnForm::kDate;
    case EngineKind::kTime:
      return ColumnForm::kTime;
    case EngineKind::kDateTime:
    case EngineKind::kZonedDateTime:
      return ColumnForm::kDateTime;
    case EngineKind::kText:
      return ColumnForm::kString;
    case EngineKind::kUnusable:
      break;
  }
  return ColumnForm::kUnusable;
}

void describe(EngineType type, SourceColumn& column) {
  const EngineKind kind = kindOf(type);
  column.reading.form = formOf(kind);
  column.zoned = kind == EngineKind::kZonedDateTime;
  column.isText = type.id == DUCKDB_TYPE_VARCHAR;
  column.type = std::move(type);
}

/// A relation that is written once.
class RelationSource final : public Source {
 public:
  RelationSource(std::string label, bool rescannable)
      : Source(std::move(label)), rescannable_(rescannable) {}

  bool rescannable() const override { return rescannable_; }
  int64_t bytes() const override { return bytes_; }
  Database& database() override { return engine_.database(); }
  std::string relation(const std::vector<size_t>&) const override { return relation_; }

  EngineHolder& engine() { return engine_; }
  void setBytes(int64_t bytes) { bytes_ = bytes; }
  /// Takes the columns of the relation.
  void take(const std::string& relation) {
    relation_ = relation;
    columns_ = columnsOf(Statement(engine_.database(), "SELECT * FROM " + relation));
  }

 private:
  std::string relation_;
  bool rescannable_;
  int64_t bytes_ = -1;
};

bool hasDoubtfulName(const Source& source) {
  // The engine renames the second of two columns with one name to name_1.
  const auto& columns = source.columns();
  return std::any_of(columns.begin(), columns.end(), [&](const SourceColumn& column) {
    const size_t mark = column.name.rfind('_');
    if (mark == std::string::npos) return false;
    const std::string base = foldCase(column.name.substr(0, mark));
    return std::any_of(columns.begin(), columns.end(),
                       [&](const SourceColumn& other) { return foldCase(other.name) == base; });
  });
}

/// Refuses names that the engine made up because the file has them twice.
void refuseRenamed(RelationSource& source, const std::string& path, bool json) {
  if (!hasDoubtfulName(source)) return;
  const std::string sql =
      json ? fmt::format("SELECT DISTINCT unnest(json_keys(json)) FROM read_json_objects({})",
                         quotedText(path))
           : fmt::format("SELECT name FROM parquet_schema({}) OFFSET 1", quotedText(path));
  std::vector<std::string> names;
  Query query(source.database(), sql);
  while (const Chunk chunk = query.fetch()) {
    const auto* values = chunk.data<duckdb_string_t>(0);
    for (size_t row = 0; row < chunk.size(); ++row) names.emplace_back(textOf(values[row]));
  }
  if (json) {
    refuseBadNames(names, source.label());
    return;
  }
  // Fields of structures are in the list, too.
  for (const SourceColumn& column : source.columns()) {
    if (std::find(names.begin(), names.end(), column.name) != names.end()) continue;
    throw DataError(
        fmt::format("{}: several columns are named {} (or differ in the case of "
                    "letters only). Rename all but one.",
                    source.label(), column.name.substr(0, column.name.rfind('_'))));
  }
}

std::string jsonRelation(const std::string& path, const Source& source) {
  std::string declared;
  for (const SourceColumn& column : source.columns()) {
    const ColumnForm form = column.reading.form;
    const char* type = form == ColumnForm::kNumber     ? (column.whole ? "BIGINT" : "DOUBLE")
                       : form == ColumnForm::kBoolean  ? "BOOLEAN"
                       : form == ColumnForm::kDate     ? "DATE"
                       : form == ColumnForm::kTime     ? "TIME"
                       : form == ColumnForm::kDateTime ? "TIMESTAMP"
                       : form == ColumnForm::kString   ? "VARCHAR"
                                                       : "JSON";
    declared +=
        fmt::format("{}{}: '{}'", declared.empty() ? "" : ", ", quotedText(column.name), type);
  }
  return fmt::format("read_json({}, columns={{{}}})", quotedText(path), declared);
}

/// Reads again with the types that the whole file has shown, so that nothing is guessed twice.
void takeJson(RelationSource& source, const std::string& path) {
  std::vector<size_t> unusable;
  for (size_t i = 0; i < source.columns().size(); ++i) {
    if (source.columns()[i].reading.form == ColumnForm::kUnusable) unusable.push_back(i);
  }
  source.take(jsonRelation(path, source));
  for (const size_t i : unusable) source.setReading(i, {ColumnForm::kUnusable, false, {}});
}

void trimEnd(std::string& sql) {
  while (!sql.empty() && (sql.back() == ';' || sql.back() == ' ' || sql.back() == '\n' ||
                          sql.back() == '\t' || sql.back() == '\r')) {
    sql.pop_back();
  }
}

/// Refuses what is not one SELECT statement, and makes a relation of it. The engine must be
/// confined before.
std::string relationOfQuery(Database& database, std::string query) {
  std::vector<std::string> names;
  try {
    const Statement statement = Statement::selectOnly(database, query);
    for (size_t i = 0; i < statement.columnCount(); ++i) names.push_back(statement.columnName(i));
  } catch (const std::invalid_argument& error) {
    throw DataError(fmt::format("--query must be one SELECT statement; this is {}.", error.what()));
  }
  refuseBadNames(names, "--query");
  trimEnd(query);
  return "(\n" + query + "\n)";
}

struct TableName {
  std::string schema;
  std::string name;
  std::string shown() const { return schema == "main" ? name : schema + "." + name; }
  std::string sql() const { return quotedName(schema) + "." + quotedName(name); }
};

std::vector<TableName> tablesOf(Database& database) {
  Query query(database,
              "SELECT schema_name, table_name FROM duckdb_tables() WHERE NOT internal AND NOT "
              "temporary UNION ALL SELECT schema_name, view_name FROM duckdb_views() WHERE NOT "
              "internal AND NOT temporary ORDER BY 1, 2");
  std::vector<TableName> tables;
  while (const Chunk chunk = query.fetch()) {
    const auto* schemas = chunk.data<duckdb_string_t>(0);
    const auto* names = chunk.data<duckdb_string_t>(1);
    for (size_t row = 0; row < chunk.size(); ++row) {
      tables.push_back({std::string(textOf(schemas[row])), std::string(textOf(names[row]))});
    }
  }
  return tables;
}

TableName chooseTable(const std::vector<TableName>& tables, const std::string& label,
                      const std::optional<std::string>& wanted) {
  std::vector<std::string> shown;
  for (const TableName& table : tables) shown.push_back(table.shown());
  if (tables.empty()) throw DataError(fmt::format("{}: the database holds no table.", label));
  if (!wanted) {
    if (tables.size() == 1) return tables.front();
    throw DataError(fmt::format("{}: the database holds several tables; name one with --table: {}.",
                                label, fmt::join(shown, ", ")));
  }
  for (const bool exact : {true, false}) {
    for (size_t i = 0; i < tables.size(); ++i) {
      if (exact ? shown[i] == *wanted : foldCase(shown[i]) == foldCase(*wanted)) return tables[i];
    }
  }
  const std::string guess = nearest(*wanted, shown);
  throw DataError(fmt::format("{}: there is no table {}.{} The database holds: {}.", label, *wanted,
                              guess.empty() ? "" : " Did you mean " + guess + "?",
                              fmt::join(shown, ", ")));
}

/// A delimited or typed file under a query: columns of whole numbers are integers there.
std::string viewColumn(const Source& file, size_t index) {
  const SourceColumn& column = file.columns()[index];
  std::string name = quotedName(column.name);
  if (!column.isText || column.reading.form == ColumnForm::kString) return name;
  const std::string value = file.value(index);
  switch (column.reading.form) {
    case ColumnForm::kNumber:
      return fmt::format("{} AS {}", column.whole ? "CAST(" + value + " AS BIGINT)" : value, name);
    case ColumnForm::kBoolean:
      return fmt::format("CAST({} AS BOOLEAN) AS {}", value, name);
    case ColumnForm::kDate:
      return fmt::format("CAST(make_timestamp(CAST(({}) * 1e6 AS BIGINT)) AS DATE) AS {}", value,
                         name);
    case ColumnForm::kDateTime:
      return fmt::format("make_timestamp(CAST(({}) * 1e6 AS BIGINT)) AS {}", value, name);
    case ColumnForm::kTime:
      return fmt::format("CAST(make_timestamp(CAST(({}) * 1e6 AS BIGINT)) AS TIME) AS {}", value,
                         name);
    default:
      return name;
  }
}

/// The query's columns; the file that it reads belongs to it, engine included.
class QueryOverFile final : public Source {
 public:
  QueryOverFile(std::unique_ptr<Source> file, std::string query)
      : Source(file->label()), file_(std::move(file)), sql_(std::move(query)) {}
  bool rescannable() const override { return false; }
  int64_t bytes() const override { return file_->bytes(); }
  Database& database() override { return file_->database(); }
  std::string relation(const std::vector<size_t>&) const override { return relation_; }
  void requestInterrupt() override { file_->requestInterrupt(); }
  bool interruptRequested() const override { return file_->interruptRequested(); }
  void setProgress(ProgressCallback callback) override { file_->setProgress(std::move(callback)); }
  void open();

 private:
  std::unique_ptr<Source> file_;
  std::string sql_;
  std::string relation_;
};

void QueryOverFile::open() {
  std::vector<size_t> all(file_->columns().size());
  for (size_t i = 0; i < all.size(); ++i) all[i] = i;
  try {
    // A query mixes the columns, so that it would be too late to correct a type afterwards.
    file_->settle(all);
    std::string list;
    for (const size_t i : all) list += (i == 0 ? "" : ", ") + viewColumn(*file_, i);
    database().execute(
        fmt::format("CREATE TEMP VIEW data AS SELECT {} FROM {}", list, file_->relation(all)));
  } catch (const EngineError& error) {
    throw DataError(readProblem(error.what(), label()).text);
  }
  try {
    relation_ = relationOfQuery(database(), sql_);
    columns_ = columnsOf(Statement(database(), "SELECT * FROM " + relation_));
  } catch (const EngineError& error) {
    throw DataError(readProblem(error.what(), "--query").text);
  }
}

}  // namespace

std::vector<SourceColumn> columnsOf(const Statement& statement) {
  std::vector<SourceColumn> columns(statement.columnCount());
  for (size_t i = 0; i < columns.size(); ++i) {
    columns[i].name = statement.columnName(i);
    describe(statement.columnType(i), columns[i]);
  }
  return columns;
}

std::unique_ptr<Source> openTypedFile(const std::string& file, bool json,
                                      const std::atomic<bool>* interrupted) {
  auto source = std::make_unique<RelationSource>(file, !json);
  source->engine().watch(interrupted);
  std::error_code error;
  const auto size = std::filesystem::file_size(file, error);
  if (!error && size == 0) throw DataError(fmt::format("{}: the file is empty.", file));
  if (!error) source->setBytes(static_cast<int64_t>(size));
  source->engine().start("");
  const std::string path = enginePath(file, source->engine());
  source->engine().confine({path});
  try {
    source->take(json ? fmt::format("read_json({}, sample_size=-1)", quotedText(path))
                      : fmt::format("read_parquet({}, hive_partitioning=false)", quotedText(path)));
    refuseRenamed(*source, path, json);
    if (json) takeJson(*source, path);
  } catch (const EngineError& problem) {
    throw DataError(readProblem(problem.what(), file).text);
  }
  return source;
}

std::unique_ptr<Source> openDatabaseSource(const std::string& file, const SourceOptions& options) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error)) {
    throw DataError(fmt::format("{}: there is no such database file.", file));
  }
  auto source = std::make_unique<RelationSource>(options.data, !options.query.has_value());
  source->engine().watch(options.interrupted);
  std::string place = source->label();
  try {
    source->engine().start(file);
    source->engine().confine({});
    if (options.query) {
      place = "--query";
      source->take(relationOfQuery(source->database(), *options.query));
    } else {
      source->take(chooseTable(tablesOf(source->database()), source->label(), options.table).sql());
    }
  } catch (const EngineError& problem) {
    throw DataError(readProblem(problem.what(), place).text);
  }
  return source;
}

std::unique_ptr<Source> openQueryOverFile(std::unique_ptr<Source> file, const std::string& query) {
  auto source = std::make_unique<QueryOverFile>(std::move(file), query);
  source->open();
  return source;
}

}  // namespace workbench
