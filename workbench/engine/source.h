/// What DATA names, as columns and as SQL.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "workbench/engine/column_form.h"
#include "workbench/engine/csv_layout.h"
#include "workbench/engine/database.h"
#include "workbench/engine/temp_folder.h"

namespace workbench {

struct SourceOptions {
  std::string data;                  ///< a file, "-" or "duckdb:FILE"
  std::optional<std::string> query;  ///< one SELECT statement
  std::optional<std::string> table;
  /// Set from outside (by a signal handler, say) to make all reading fail; may be null, else it
  /// outlives the source.
  const std::atomic<bool>* interrupted = nullptr;
};

/// How a column is to be read.
struct ColumnReading {
  ColumnForm form = ColumnForm::kNumber;
  bool forced = false;               ///< by a dictionary: values that do not fit are errors
  std::vector<std::string> missing;  ///< texts that stand for missing in a column of numbers
};

struct SourceColumn {
  std::string name;
  ColumnReading reading;  ///< as detected, until it is changed
  bool guessed = false;   ///< detected from the head of a file only
  bool blanks = false;    ///< values of nothing but blanks occur
  bool zoned = false;     ///< date-times with an offset from UTC
  bool isText = false;    ///< the source itself holds texts
  bool whole = false;     ///< whole numbers only, as far as is known
  EngineType type;        ///< of columns that are not texts
};

/// The engine and its working folder. Started by the first use.
class EngineHolder {
 public:
  EngineHolder() = default;
  /// Starts the engine: in memory, or on a database file that is opened for reading only.
  void start(const std::string& databaseFile);
  bool started() const { return database_ != nullptr; }
  Database& database() { return *database_; }
  const std::string& folder();
  /// From now on nothing but `paths` (and the working folder) is read, nothing written, no code
  /// loaded, and no setting changed.
  void confine(const std::vector<std::string>& paths);
  void requestInterrupt();
  /// A flag from outside that means the same. May be null.
  void watch(const std::atomic<bool>* flag) { watched_ = flag; }
  const std::atomic<bool>* watched() const { return watched_; }
  bool interruptRequested() const { return interrupted_ || (watched_ != nullptr && *watched_); }
  void setProgress(ProgressCallback callback);

 private:
  std::unique_ptr<TempFolder> folder_;  // outlives the database, which writes to it
  std::unique_ptr<Database> database_;
  std::atomic<Database*> running_{nullptr};
  std::atomic<bool> interrupted_{false};
  const std::atomic<bool>* watched_ = nullptr;
  ProgressCallback progress_;
};

/// A table or query result that can be read. The engine is started when it is first needed.
class Source {
 public:
  virtual ~Source() = default;
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;

  const std::vector<SourceColumn>& columns() const { return columns_; }
  /// Changes how a column is read from now on.
  void setReading(size_t column, ColumnReading reading);

  /// Names the data in messages.
  const std::string& label() const { return label_; }
  /// False when reading the data again costs as much as parsing them.
  virtual bool rescannable() const = 0;
  /// Bytes of the file; negative when unknown.
  virtual int64_t bytes() const { return -1; }
  /// A rough number of rows; negative when unknown.
  virtual int64_t estimatedRows() const { return -1; }
  /// Checks all rows of columns that were guessed from the head and reads those as text in which
  /// some value is of another form. True when something changed.
  virtual bool settle(const std::vector<size_t>& columns);

  /// What stands after FROM, with (at least) these columns as `readAs` says.
  virtual std::string relation(const std::vector<size_t>& columns) const = 0;
  /// An expression over the relation: DOUBLE, or VARCHAR for strings; missing values are null.
  /// Numbers may be NaN or minus zero, strings may have trailing blanks.
  std::string value(size_t column) const;

  /// Ready to run queries, and confined to the data. Throws DataError.
  virtual Database& database() = 0;
  /// Stops what is running and all that follows; may be called from a signal handler.
  virtual void requestInterrupt() { engine_.requestInterrupt(); }
  virtual bool interruptRequested() const { return engine_.interruptRequested(); }
  virtual void setProgress(ProgressCallback callback) { engine_.setProgress(std::move(callback)); }

 protected:
  explicit Source(std::string label) : label_(std::move(label)) {}
  /// True for a column of texts whose values the relation gives as what its reading says.
  virtual bool convertedByReader(const SourceColumn&) const { return false; }

  EngineHolder engine_;
  std::vector<SourceColumn> columns_;
  std::string label_;
};

/// `missing` gives the texts for missing values by column name, without which numbers cannot be
/// told from texts. Opens what the options name. Throws DataError.
std::unique_ptr<Source> openSource(const SourceOptions& options, const MissingTexts& missing);

/// The dictionary beside a data file: its name without the endings for data and compression, with
/// `.schema.json`; empty for standard input and databases.
std::string dictionaryBeside(const std::string& data);

}  // namespace workbench
