#include "workbench/engine/source.h"

#include <fmt/format.h>

#include "workbench/engine/read_problem.h"
#include "workbench/engine/source_kinds.h"
#include "workbench/values/data_error.h"

namespace workbench {

const char* sqlTypeOf(const SourceColumn& column) {
  switch (column.reading.form) {
    case ColumnForm::kNumber:
    case ColumnForm::kBoolean:
      return "DOUBLE";
    case ColumnForm::kTime:
      return "TIME";
    // A date that is not at midnight after all keeps its time this way.
    case ColumnForm::kDate:
    case ColumnForm::kDateTime:
      return column.zoned ? "TIMESTAMPTZ" : "TIMESTAMP";
    default:
      return "VARCHAR";
  }
}

namespace {

std::string secondsOf(const std::string& expression) {
  return fmt::format("epoch_us({})/1e6", expression);
}

/// A value that is still text. What does not fit stops the query with an error that names the
/// column.
std::string valueOfText(const SourceColumn& column) {
  const std::string name = quotedName(column.name);
  std::string missing = "''";
  for (const std::string& text : column.reading.missing) {
    missing += ", " + quotedText(stripped(text));
  }
  const std::string complaint =
      fmt::format("CAST(error({} || {} || '\" to {}') AS DOUBLE)",
                  quotedText("Conversion Error: when converting column \"" + column.name +
                             "\". Could not convert string \""),
                  name, sqlTypeOf(column));
  const std::string none = fmt::format("{} IS NULL OR trim({}) IN ({})", name, name, missing);
  if (column.reading.form == ColumnForm::kBoolean) {
    return fmt::format(
        "CASE WHEN {} THEN NULL WHEN lower(trim({})) IN ('true', '1') THEN 1e0 "
        "WHEN lower(trim({})) IN ('false', '0') THEN 0e0 ELSE {} END",
        none, name, name, complaint);
  }
  const std::string cast = fmt::format("TRY_CAST({} AS {})", name, sqlTypeOf(column));
  const bool number = column.reading.form == ColumnForm::kNumber;
  return fmt::format("CASE WHEN {} THEN NULL ELSE coalesce({}, {}) END", none,
                     number ? cast : secondsOf(cast), complaint);
}

std::string valueOfTyped(const SourceColumn& column) {
  const std::string name = quotedName(column.name);
  switch (column.reading.form) {
    case ColumnForm::kNumber:
    case ColumnForm::kBoolean:
      return column.type.id == DUCKDB_TYPE_DOUBLE ? name : fmt::format("CAST({} AS DOUBLE)", name);
    case ColumnForm::kDate:
      return secondsOf(column.type.id == DUCKDB_TYPE_DATE ? name
                                                          : fmt::format("CAST({} AS DATE)", name));
    case ColumnForm::kDateTime:
      if (column.type.id == DUCKDB_TYPE_TIMESTAMP || column.type.id == DUCKDB_TYPE_TIMESTAMP_TZ)
        return secondsOf(name);
      return secondsOf(fmt::format("CAST({} AS TIMESTAMP)", name));
    case ColumnForm::kTime:
      return fmt::format("epoch({})", name);
    default:
      return fmt::format("CAST({} AS VARCHAR)", name);
  }
}

}  // namespace

void Source::setReading(size_t column, ColumnReading reading) {
  columns_[column].reading = std::move(reading);
}

std::string Source::value(size_t column) const {
  const SourceColumn& wanted = columns_[column];
  if (!wanted.isText) return valueOfTyped(wanted);
  if (convertedByReader(wanted)) {
    return wanted.reading.form == ColumnForm::kNumber ? quotedName(wanted.name)
                                                      : secondsOf(quotedName(wanted.name));
  }
  if (wanted.reading.form == ColumnForm::kString) return quotedName(wanted.name);
  return valueOfText(wanted);
}

bool Source::settle(const std::vector<size_t>&) { return false; }

void EngineHolder::start(const std::string& databaseFile) {
  std::vector<std::pair<std::string, std::string>> configuration{
      {"temp_directory", folder()},
      // Beside this come the program's own columns; together they stay below 1 GiB.
      {"memory_limit", "600MB"},
      {"autoinstall_known_extensions", "false"},
      {"autoload_known_extensions", "false"}};
  if (!databaseFile.empty()) configuration.emplace_back("access_mode", "READ_ONLY");
  database_ = std::make_unique<Database>(databaseFile, configuration);
  // The default buffer for results holds a fraction of a thread's share; the others would wait.
  database_->execute(
      "SET enable_progress_bar = true; SET enable_progress_bar_print = false; "
      "SET TimeZone = 'UTC'; SET streaming_buffer_size = '128MB'");
  database_->setProgress(progress_);
  database_->watch(watched_);
  running_ = database_.get();
  if (interrupted_) database_->requestInterrupt();
}

const std::string& EngineHolder::folder() {
  if (folder_ == nullptr) folder_ = std::make_unique<TempFolder>();
  return folder_->path();
}

void EngineHolder::confine(const std::vector<std::string>& paths) {
  std::string list;
  for (const std::string& path : paths) list += (list.empty() ? "" : ", ") + quotedText(path);
  database_->execute(
      fmt::format("SET allowed_paths = [{}]; SET enable_external_access = false; "
                  "SET lock_configuration = true",
                  list));
}

void EngineHolder::requestInterrupt() {
  interrupted_ = true;
  if (Database* database = running_) database->requestInterrupt();
}

void EngineHolder::setProgress(ProgressCallback callback) {
  progress_ = std::move(callback);
  if (database_ != nullptr) database_->setProgress(progress_);
}

namespace {

std::unique_ptr<Source> openByName(const SourceOptions& options, const MissingTexts& missing) {
  constexpr std::string_view kDatabase = "duckdb:";
  if (options.data.compare(0, kDatabase.size(), kDatabase) == 0) {
    if (options.query && options.table) {
      throw DataError("Give either --query or --table, not both.");
    }
    return openDatabaseSource(options.data.substr(kDatabase.size()), options);
  }
  if (options.table) {
    throw DataError(
        fmt::format("{}: --table names a table of a database; this is a file.", options.data));
  }
  std::unique_ptr<Source> file = openFileSource(options.data, missing, options.interrupted);
  if (!options.query) return file;
  return openQueryOverFile(std::move(file), *options.query);
}

}  // namespace

std::unique_ptr<Source> openSource(const SourceOptions& options, const MissingTexts& missing) {
  try {
    return openByName(options, missing);
  } catch (const EngineError& error) {
    throw DataError(readProblem(error.what(), options.data).text);
  }
}

}  // namespace workbench
