#include "workbench/engine/database.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace workbench {
namespace {

constexpr int64_t kPollEvery = 100'000'000;  // nanoseconds
constexpr std::chrono::milliseconds kLookEvery{20};

int64_t nanoseconds() {
  return std::chrono::steady_clock::now().time_since_epoch() / std::chrono::nanoseconds(1);
}

std::string doubled(std::string_view text, char quote) {
  std::string quoted(1, quote);
  for (const char c : text) {
    quoted += c;
    if (c == quote) quoted += c;
  }
  return quoted += quote;
}

std::string textOrNothing(const char* text) { return text == nullptr ? "" : text; }

}  // namespace

std::string quotedName(std::string_view name) { return doubled(name, '"'); }
std::string quotedText(std::string_view text) { return doubled(text, '\''); }

Database::Database(const std::string& file,
                   const std::vector<std::pair<std::string, std::string>>& configuration) {
  const DuckdbLibrary& api = duckdb();
  duckdb_config config = nullptr;
  if (api.create_config(&config) != DuckDBSuccess) throw EngineError("no configuration");
  for (const auto& [name, value] : configuration) {
    if (api.set_config(config, name.c_str(), value.c_str()) != DuckDBSuccess) {
      api.destroy_config(&config);
      throw EngineError("the engine does not know the setting " + name);
    }
  }
  char* error = nullptr;
  const duckdb_state opened =
      api.open_ext(file.empty() ? nullptr : file.c_str(), &database_, config, &error);
  api.destroy_config(&config);
  if (opened != DuckDBSuccess) {
    const std::string text = textOrNothing(error);
    if (error != nullptr) api.free(error);
    throw EngineError(text);
  }
  if (api.connect(database_, &connection_) != DuckDBSuccess) {
    api.close(&database_);
    throw EngineError("no connection to the engine");
  }
}

Database::~Database() {
  watcher_ = {};
  // Closing waits for the step that runs, unless it is told.
  if (watched_ != nullptr && *watched_) duckdb().interrupt(connection_);
  duckdb().disconnect(&connection_);
  duckdb().close(&database_);
}

/// A step of the engine may take minutes, so that somebody else has to look.
void Database::watch(const std::atomic<bool>* interrupted) {
  watcher_ = {};
  watched_ = interrupted;
  if (interrupted == nullptr) return;
  watcher_ = std::jthread([this](const std::stop_token& stop) {
    std::mutex mutex;
    std::unique_lock lock(mutex);
    std::condition_variable_any ended;
    // Told again and again: a statement that begins forgets it.
    while (!ended.wait_for(lock, stop, kLookEvery, [&] { return stop.stop_requested(); })) {
      if (*watched_) duckdb().interrupt(connection_);
    }
  });
}

void Database::execute(const std::string& sql) {
  duckdb_result result{};
  const duckdb_state state = duckdb().query(connection_, sql.c_str(), &result);
  const std::string error =
      state == DuckDBSuccess ? "" : textOrNothing(duckdb().result_error(&result));
  duckdb().destroy_result(&result);
  if (state == DuckDBSuccess) return;
  throwIfSet(watched_);
  throw EngineError(error);
}

void Database::pollProgress() {
  if (!progress_) return;
  const int64_t now = nanoseconds();
  if (now < nextPoll_) return;
  nextPoll_ = now + kPollEvery;
  const duckdb_query_progress_type progress = duckdb().query_progress(connection_);
  progress_(Phase::kReading, progress.percentage, static_cast<int64_t>(progress.rows_processed));
}

Statement::Statement(Database& database, const std::string& sql) {
  if (duckdb().prepare(database.connection(), sql.c_str(), &statement_) == DuckDBSuccess) return;
  const std::string error = textOrNothing(duckdb().prepare_error(statement_));
  duckdb().destroy_prepare(&statement_);
  throw EngineError(error);
}

Statement Statement::selectOnly(Database& database, const std::string& sql) {
  const DuckdbLibrary& api = duckdb();
  struct Extracted {
    duckdb_extracted_statements statements = nullptr;
    ~Extracted() { duckdb().destroy_extracted(&statements); }
  } extracted;
  const idx_t count =
      api.extract_statements(database.connection(), sql.c_str(), &extracted.statements);
  if (count == 0) {
    const std::string error = textOrNothing(api.extract_statements_error(extracted.statements));
    if (!error.empty()) throw EngineError(error);
    throw std::invalid_argument("no statement");
  }
  if (count > 1) throw std::invalid_argument("more than one statement");
  Statement prepared;
  const duckdb_state state = api.prepare_extracted_statement(
      database.connection(), extracted.statements, 0, &prepared.statement_);
  if (state != DuckDBSuccess) {
    throw EngineError(textOrNothing(api.prepare_error(prepared.statement_)));
  }
  if (api.prepared_statement_type(prepared.statement_) != DUCKDB_STATEMENT_TYPE_SELECT) {
    throw std::invalid_argument("a statement that does not select");
  }
  return prepared;
}

Statement::~Statement() {
  if (statement_ != nullptr) duckdb().destroy_prepare(&statement_);
}

size_t Statement::columnCount() const {
  return duckdb().prepared_statement_column_count(statement_);
}

std::string Statement::columnName(size_t column) const {
  const char* name = duckdb().prepared_statement_column_name(statement_, column);
  std::string text = textOrNothing(name);
  duckdb().free(const_cast<char*>(name));
  return text;
}

EngineType Statement::columnType(size_t column) const {
  const DuckdbLibrary& api = duckdb();
  duckdb_logical_type logical = api.prepared_statement_column_logical_type(statement_, column);
  EngineType type;
  type.id = api.get_type_id(logical);
  if (type.id == DUCKDB_TYPE_DECIMAL) {
    type.decimalDigits = api.decimal_width(logical);
    type.decimalScale = api.decimal_scale(logical);
  }
  if (type.id == DUCKDB_TYPE_ENUM) {
    for (uint32_t i = 0; i < api.enum_dictionary_size(logical); ++i) {
      char* text = api.enum_dictionary_value(logical, i);
      type.categories.push_back(textOrNothing(text));
      api.free(text);
    }
  }
  api.destroy_logical_type(&logical);
  return type;
}

Chunk::~Chunk() {
  if (chunk_ != nullptr) duckdb().destroy_data_chunk(&chunk_);
}

Chunk& Chunk::operator=(Chunk&& other) noexcept {
  if (this != &other) {
    if (chunk_ != nullptr) duckdb().destroy_data_chunk(&chunk_);
    chunk_ = std::exchange(other.chunk_, nullptr);
  }
  return *this;
}

size_t Chunk::size() const { return chunk_ == nullptr ? 0 : duckdb().data_chunk_get_size(chunk_); }

const uint64_t* Chunk::validity(size_t column) const {
  return duckdb().vector_get_validity(duckdb().data_chunk_get_vector(chunk_, column));
}

void* Chunk::rawData(size_t column) const {
  return duckdb().vector_get_data(duckdb().data_chunk_get_vector(chunk_, column));
}

Query::Query(Database& database, const std::string& sql)
    : database_(database), statement_(database, sql) {
  duckdb_pending_result pending = nullptr;
  struct Guard {
    duckdb_pending_result& pending;
    ~Guard() { duckdb().destroy_pending(&pending); }
  } guard{pending};
  if (duckdb().pending_prepared_streaming(statement_.get(), &pending) != DuckDBSuccess) {
    fail(duckdb().pending_error(pending));
  }
  runUntilReady(pending);
  if (duckdb().execute_pending(pending, &result_) != DuckDBSuccess) {
    const std::string text = textOrNothing(duckdb().result_error(&result_));
    duckdb().destroy_result(&result_);
    fail(text.c_str());
  }
}

void Query::runUntilReady(duckdb_pending_result pending) {
  for (;;) {
    throwIfSet(database_.watched());
    switch (duckdb().pending_execute_task(pending)) {
      case DUCKDB_PENDING_RESULT_READY:
        return;
      case DUCKDB_PENDING_ERROR:
        fail(duckdb().pending_error(pending));
      case DUCKDB_PENDING_NO_TASKS_AVAILABLE:
        // The other threads have it all in hand.
        std::this_thread::sleep_for(std::chrono::microseconds(100));
        break;
      default:
        break;
    }
    database_.pollProgress();
  }
}

void Query::fail(const char* text) {
  throwIfSet(database_.watched());
  throw EngineError(textOrNothing(text));
}

Query::~Query() { duckdb().destroy_result(&result_); }

Chunk Query::fetch() {
  throwIfSet(database_.watched());
  Chunk chunk(duckdb().fetch_chunk(result_));
  if (!chunk || chunk.size() == 0) {
    const char* error = duckdb().result_error(&result_);
    if (error != nullptr && *error != '\0') fail(error);
    return Chunk(nullptr);
  }
  database_.pollProgress();
  return chunk;
}

TableWriter::TableWriter(Database& database, const std::string& table,
                         const std::vector<bool>& texts) {
  check(duckdb().appender_create(database.connection(), nullptr, table.c_str(), &appender_));
  std::vector<duckdb_logical_type> types;
  for (const bool text : texts) {
    types.push_back(duckdb().create_logical_type(text ? DUCKDB_TYPE_VARCHAR : DUCKDB_TYPE_DOUBLE));
  }
  chunk_ = duckdb().create_data_chunk(types.data(), types.size());
  for (duckdb_logical_type& type : types) duckdb().destroy_logical_type(&type);
}

TableWriter::~TableWriter() {
  if (chunk_ != nullptr) duckdb().destroy_data_chunk(&chunk_);
  if (appender_ != nullptr) duckdb().appender_destroy(&appender_);
}

void TableWriter::check(duckdb_state state) {
  if (state != DuckDBSuccess) throw EngineError("a working table cannot be written");
}

duckdb_vector TableWriter::vector(size_t column) const {
  return duckdb().data_chunk_get_vector(chunk_, column);
}

void TableWriter::addNumbers(size_t column, const double* values, size_t count) {
  std::copy_n(values, count, static_cast<double*>(duckdb().vector_get_data(vector(column))));
}

void TableWriter::addNumbers(size_t column, const double* values, size_t count, double null) {
  addNumbers(column, values, count);
  if (std::find(values, values + count, null) == values + count) return;
  duckdb().vector_ensure_validity_writable(vector(column));
  uint64_t* validity = duckdb().vector_get_validity(vector(column));
  for (size_t row = 0; row < count; ++row) {
    if (values[row] == null) duckdb().validity_set_row_invalid(validity, row);
  }
}

void TableWriter::addTexts(size_t column, const std::string_view* values, size_t count) {
  for (size_t row = 0; row < count; ++row) {
    duckdb().vector_assign_string_element_len(vector(column), row, values[row].data(),
                                              values[row].size());
  }
}

void TableWriter::endBlock(size_t count) {
  duckdb().data_chunk_set_size(chunk_, count);
  check(duckdb().append_data_chunk(appender_, chunk_));
  duckdb().data_chunk_reset(chunk_);
}

void TableWriter::close() { check(duckdb().appender_close(appender_)); }

}  // namespace workbench
