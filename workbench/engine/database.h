/// Thin owners of the data engine's objects.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "workbench/engine/duckdb_library.h"
#include "workbench/session/progress.h"
#include "workbench/values/data_error.h"

namespace workbench {

/// A type of the engine's, as far as it matters here.
struct EngineType {
  duckdb_type id = DUCKDB_TYPE_DOUBLE;
  int decimalDigits = 0;                ///< of DECIMAL: in all
  int decimalScale = 0;                 ///< after the point
  std::vector<std::string> categories;  ///< of ENUM, in declared order
};

/// A statement that the engine refused or could not finish; the text is the engine's own.
class EngineError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A database and one connection to it.
class Database {
 public:
  /// `file` empty: in memory. Throws EngineError.
  Database(const std::string& file,
           const std::vector<std::pair<std::string, std::string>>& configuration);
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  duckdb_connection connection() const { return connection_; }

  /// Runs one or more statements whose result does not matter. Throws EngineError or Interrupted.
  void execute(const std::string& sql);

  /// A flag from outside: once it is set, what is running ends in Interrupted, and so does all that
  /// follows. May be null, else it outlives the database.
  void watch(const std::atomic<bool>* interrupted);
  const std::atomic<bool>* watched() const { return watched_; }

  void setProgress(ProgressCallback callback) { progress_ = std::move(callback); }
  /// Calls back now and then; queries do this while they run.
  void pollProgress();

 private:
  duckdb_database database_ = nullptr;
  duckdb_connection connection_ = nullptr;
  const std::atomic<bool>* watched_ = nullptr;
  std::jthread watcher_;
  ProgressCallback progress_;
  int64_t nextPoll_ = 0;
};

/// A prepared statement.
class Statement {
 public:
  /// Throws EngineError.
  Statement(Database& database, const std::string& sql);
  /// Prepares `sql` only if it is exactly one statement that selects. Throws EngineError with the
  /// engine's text when it cannot be parsed or bound, std::invalid_argument when it is something
  /// else.
  static Statement selectOnly(Database& database, const std::string& sql);
  ~Statement();
  Statement(Statement&& other) noexcept : statement_(std::exchange(other.statement_, nullptr)) {}
  Statement& operator=(Statement&&) = delete;

  size_t columnCount() const;
  std::string columnName(size_t column) const;
  EngineType columnType(size_t column) const;
  duckdb_prepared_statement get() const { return statement_; }

 private:
  Statement() = default;
  duckdb_prepared_statement statement_ = nullptr;
};

/// A chunk of up to 2,048 rows of a result. Columns must be read as what they are: numbers as
/// double or int64_t, strings as duckdb_string_t.
class Chunk {
 public:
  explicit Chunk(duckdb_data_chunk chunk) : chunk_(chunk) {}
  ~Chunk();
  Chunk(Chunk&& other) noexcept : chunk_(std::exchange(other.chunk_, nullptr)) {}
  Chunk& operator=(Chunk&& other) noexcept;

  size_t size() const;
  explicit operator bool() const { return chunk_ != nullptr; }
  /// Null bits: row r is null when bit r is 0; null pointer: no nulls.
  const uint64_t* validity(size_t column) const;
  template <typename T>
  const T* data(size_t column) const {
    return static_cast<const T*>(rawData(column));
  }

  static bool isNull(const uint64_t* validity, size_t row) {
    return validity != nullptr && ((validity[row / 64] >> (row % 64)) & 1U) == 0;
  }

 private:
  void* rawData(size_t column) const;
  duckdb_data_chunk chunk_ = nullptr;
};

inline std::string_view textOf(const duckdb_string_t& value) {
  return value.value.inlined.length <= 12
             ? std::string_view(value.value.inlined.inlined, value.value.inlined.length)
             : std::string_view(value.value.pointer.ptr, value.value.pointer.length);
}

/// A running query whose result comes in chunks while the engine still works, so that memory stays
/// bounded.
class Query {
 public:
  /// Runs until the first rows are there. Throws EngineError or Interrupted.
  Query(Database& database, const std::string& sql);
  ~Query();
  Query(const Query&) = delete;
  Query& operator=(const Query&) = delete;

  /// An empty Chunk after the last one. Throws EngineError or Interrupted.
  Chunk fetch();

 private:
  void runUntilReady(duckdb_pending_result pending);
  [[noreturn]] void fail(const char* text);

  Database& database_;
  Statement statement_;
  duckdb_result result_{};
};

/// Adds rows to a table of numbers (DOUBLE) and texts (VARCHAR); what was not closed is dropped.
/// Throws EngineError.
class TableWriter {
 public:
  /// Rows are given in blocks of at most that many.
  static constexpr size_t kMostRows = 2048;

  /// `texts` says of each column of the table whether it holds texts.
  TableWriter(Database& database, const std::string& table, const std::vector<bool>& texts);
  ~TableWriter();
  TableWriter(const TableWriter&) = delete;
  TableWriter& operator=(const TableWriter&) = delete;

  /// The values of one column for the next rows, then the end of the block. A number that equals
  /// `null` is stored as a null.
  void addNumbers(size_t column, const double* values, size_t count);
  void addNumbers(size_t column, const double* values, size_t count, double null);
  void addTexts(size_t column, const std::string_view* values, size_t count);
  void endBlock(size_t count);
  void close();

 private:
  void check(duckdb_state state);
  duckdb_vector vector(size_t column) const;

  duckdb_appender appender_ = nullptr;
  duckdb_data_chunk chunk_ = nullptr;
};

/// An identifier and a string constant in the engine's SQL.
std::string quotedName(std::string_view name);
std::string quotedText(std::string_view text);

}  // namespace workbench
