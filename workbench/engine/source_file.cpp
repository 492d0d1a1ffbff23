// Delimited text: the layout is found here, the reading is the engine's.
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include "workbench/engine/compressed_file.h"
#include "workbench/engine/read_problem.h"
#include "workbench/engine/source_kinds.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

constexpr size_t kHeadBytes = size_t{1} << 20;
/// What one thread of the engine takes from a file at a time: small enough that files of a few
/// megabytes keep all of them busy, and more than the engine's longest line of 2,000,000 bytes.
constexpr size_t kReadBytes = 4'000'000;
constexpr const char* kEndings =
    "Files that are read: .csv, .tsv, .parquet, .json, .jsonl, .ndjson (text files also compressed "
    "as .gz or .zst), - for CSV on standard input, duckdb:FILE for a database.";

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

std::string lowered(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

/// What the engine is told to read when the ending says that the file is compressed.
std::string compressionOf(const std::string& file) {
  const std::string ending = lowered(std::filesystem::path(file).extension().string());
  if (ending == ".gz") return "gzip";
  return ending == ".zst" ? "zstd" : "none";
}

void refuseUnreadable(const std::string& file) {
  struct stat status {};
  if (stat(file.c_str(), &status) != 0) {
    throw DataError(errno == ENOENT ? fmt::format("{}: there is no such file.", file)
                                    : fmt::format("{}: {}.", file, std::strerror(errno)));
  }
  if (S_ISDIR(status.st_mode)) {
    throw DataError(fmt::format("{}: this is a folder; name a file in it.", file));
  }
  if (access(file.c_str(), R_OK) != 0) {
    throw DataError(fmt::format("{}: may not be read ({}).", file, std::strerror(errno)));
  }
}

std::string readHead(const std::string& file, const std::string& label, bool& complete) {
  const File stream(std::fopen(file.c_str(), "rb"));
  if (!stream) throw DataError(fmt::format("{}: {}.", label, std::strerror(errno)));
  std::string head(kHeadBytes + 1, '\0');
  head.resize(std::fread(head.data(), 1, head.size(), stream.get()));
  if (std::ferror(stream.get()) != 0) {
    throw DataError(fmt::format("{}: cannot be read ({}).", label, std::strerror(errno)));
  }
  complete = head.size() <= kHeadBytes;
  if (!complete) head.resize(kHeadBytes);
  return head;
}

/// An open file, closed with its owner.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  int number() const { return number_; }

 private:
  int number_;
};

/// Copies what can be read only once.
void copyAll(int from, int to, const std::string& label, const std::atomic<bool>* interrupted) {
  std::string buffer(size_t{1} << 16, '\0');
  for (;;) {
    if (interrupted != nullptr && *interrupted) throw Interrupted();
    const ssize_t count = read(from, buffer.data(), buffer.size());
    if (count == 0) return;
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw DataError(fmt::format("{}: {}.", label, std::strerror(errno)));
    for (ssize_t written = 0; written < count;) {
      const ssize_t now = write(to, buffer.data() + written, static_cast<size_t>(count - written));
      if (now < 0 && errno == EINTR) continue;
      if (now < 0) {
        throw DataError(
            fmt::format("{}: cannot be copied to the working folder ({}). Set TMPDIR "
                        "to a folder with more room.",
                        label, std::strerror(errno)));
      }
      written += now;
    }
  }
}

class DelimitedSource final : public Source {
 public:
  DelimitedSource(const std::string& data, char delimiter, const MissingTexts& missing,
                  const std::atomic<bool>* interrupted)
      : Source(data == "-" ? "standard input" : data), file_(data), compression_("none") {
    engine_.watch(interrupted);
    if (data == "-") {
      spoolFrom(STDIN_FILENO);
    } else {
      openFile();
    }
    if (compression_ == "none") {
      bytes_ = fileSize();
    } else {
      checkCompressedFile(file_, compression_, label(), interrupted);
    }
    file_ = enginePath(file_, engine_);
    bool complete = true;
    const std::string head =
        compression_ == "none" ? readHead(file_, label(), complete) : decompressedHead(complete);
    take(csvLayout(head, complete, delimiter, label(), missing), complete, missing);
  }

  bool rescannable() const override { return false; }
  int64_t bytes() const override { return bytes_; }
  int64_t estimatedRows() const override { return estimatedRows_; }
  Database& database() override;
  std::string relation(const std::vector<size_t>& wanted) const override;
  bool settle(const std::vector<size_t>& wanted) override;

 private:
  void openFile();
  void spoolFrom(int descriptor);
  int64_t fileSize() const;
  std::string decompressedHead(bool& complete);
  void take(const CsvLayout& layout, bool complete, const MissingTexts& missing);
  static std::string typeOf(const SourceColumn& column);
  bool convertedByReader(const SourceColumn& column) const override {
    return typeOf(column) != "VARCHAR";
  }

  std::string file_;  // as the engine is to be given it
  Descriptor spooled_;
  std::string compression_;
  char delimiter_ = ',';
  int64_t bytes_ = -1;
  int64_t estimatedRows_ = -1;
};

void DelimitedSource::openFile() {
  refuseUnreadable(file_);
  compression_ = compressionOf(file_);
  if (std::filesystem::is_regular_file(file_)) return;
  const Descriptor descriptor(open(file_.c_str(), O_RDONLY | O_CLOEXEC));
  if (descriptor.number() < 0) {
    throw DataError(fmt::format("{}: {}.", label(), std::strerror(errno)));
  }
  spoolFrom(descriptor.number());
}

/// The copy has no name, so that nothing stays behind however the run ends.
void DelimitedSource::spoolFrom(int descriptor) {
  const std::string name = engine_.folder() + "/spooled";
  spooled_ = Descriptor(open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (spooled_.number() < 0) {
    throw DataError(fmt::format("{}: {}.", name, std::strerror(errno)));
  }
  unlink(name.c_str());
  copyAll(descriptor, spooled_.number(), label(), engine_.watched());
  file_ = fmt::format("/proc/self/fd/{}", spooled_.number());
}

int64_t DelimitedSource::fileSize() const {
  std::error_code error;
  const auto size = std::filesystem::file_size(file_, error);
  return error ? -1 : static_cast<int64_t>(size);
}

void DelimitedSource::take(const CsvLayout& layout, bool complete, const MissingTexts& missing) {
  delimiter_ = layout.delimiter;
  if (bytes_ >= 0 && layout.bytes > 0) {
    estimatedRows_ =
        static_cast<int64_t>(static_cast<double>(bytes_) * static_cast<double>(layout.rows) /
                             static_cast<double>(layout.bytes));
  }
  for (const CsvColumn& found : layout.columns) {
    SourceColumn& column = columns_.emplace_back();
    column.name = found.name;
    column.reading.form = found.form;
    if (found.form != ColumnForm::kString) column.reading.missing = missing(found.name);
    column.guessed = !complete;
    column.blanks = found.blanks;
    column.zoned = found.zoned;
    column.isText = true;
    column.whole = found.whole;
  }
}

Database& DelimitedSource::database() {
  if (!engine_.started()) {
    engine_.start("");
    engine_.confine({file_});
  }
  return engine_.database();
}

/// The engine decompresses; each line is one value for it.
std::string DelimitedSource::decompressedHead(bool& complete) {
  Database& engine = database();
  std::string head;
  complete = true;
  try {
    Query lines(engine, fmt::format("SELECT line FROM read_csv({}, auto_detect=false, "
                                    "delim=chr(31), quote='', escape='', header=false, "
                                    "compression='{}', columns={{'line': 'VARCHAR'}})",
                                    quotedText(file_), compression_));
    while (const Chunk chunk = lines.fetch()) {
      const auto* values = chunk.data<duckdb_string_t>(0);
      const uint64_t* validity = chunk.validity(0);
      for (size_t row = 0; row < chunk.size(); ++row) {
        if (!Chunk::isNull(validity, row)) head += textOf(values[row]);
        head += '\n';
      }
      if (head.size() <= kHeadBytes) continue;
      complete = false;
      break;
    }
  } catch (const EngineError& error) {
    throw DataError(readProblem(error.what(), label()).text);
  }
  return head;
}

/// Text that the engine converts itself comes with a line number when it does not fit; the rest is
/// converted by an expression.
std::string DelimitedSource::typeOf(const SourceColumn& column) {
  if (column.reading.form == ColumnForm::kBoolean || column.blanks ||
      !column.reading.missing.empty()) {
    return "VARCHAR";
  }
  return sqlTypeOf(column);
}

std::string DelimitedSource::relation(const std::vector<size_t>& wanted) const {
  std::vector<std::string> types(columns_.size(), "VARCHAR");
  for (const size_t column : wanted) types[column] = typeOf(columns_[column]);
  std::string declared;
  for (size_t i = 0; i < columns_.size(); ++i) {
    declared +=
        fmt::format("{}{}: '{}'", i == 0 ? "" : ", ", quotedText(columns_[i].name), types[i]);
  }
  return fmt::format(
      "read_csv({}, auto_detect=false, delim={}, quote='\"', escape='\"', "
      "header=true, hive_partitioning=false, compression='{}', buffer_size={}, columns={{{}}})",
      quotedText(file_), quotedText(std::string(1, delimiter_)), compression_, kReadBytes,
      declared);
}

bool DelimitedSource::settle(const std::vector<size_t>& wanted) {
  std::vector<size_t> checked;
  std::string checks;
  for (const size_t i : wanted) {
    const SourceColumn& column = columns_[i];
    if (!column.guessed || column.reading.forced || column.reading.form == ColumnForm::kString) {
      continue;
    }
    const std::string name = quotedName(column.name);
    std::string missing = "''";
    for (const std::string& text : column.reading.missing) {
      missing += ", " + quotedText(stripped(text));
    }
    const std::string fits =
        column.reading.form == ColumnForm::kBoolean
            ? fmt::format("lower(trim({})) IN ('true', 'false')", name)
            : fmt::format("TRY_CAST({} AS {}) IS NOT NULL", name, sqlTypeOf(column));
    checks += fmt::format(
        "{}coalesce(bool_and({} IS NULL OR trim({}) IN ({}) OR {}), true), "
        "coalesce(bool_and({} IS NULL OR trim({}) = '' OR "
        "regexp_full_match(trim({}), '[+-]?[0-9]{{1,15}}')), true)",
        checked.empty() ? "" : ", ", name, name, missing, fits, name, name, name);
    checked.push_back(i);
  }
  if (checked.empty()) return false;
  Database& engine = database();
  Query query(engine, fmt::format("SELECT {} FROM {}", checks, relation({})));
  const Chunk chunk = query.fetch();
  bool changed = false;
  for (size_t k = 0; k < checked.size(); ++k) {
    SourceColumn& column = columns_[checked[k]];
    column.guessed = false;
    column.whole = chunk.data<bool>(2 * k + 1)[0];
    if (chunk.data<bool>(2 * k)[0]) continue;
    column.reading = ColumnReading{ColumnForm::kString, false, {}};
    changed = true;
  }
  return changed;
}

}  // namespace

FileName splitEnding(const std::string& file) {
  std::filesystem::path path(file);
  std::string ending = lowered(path.extension().string());
  if (ending == ".gz" || ending == ".zst") {
    path.replace_extension();
    ending = lowered(path.extension().string());
  }
  path.replace_extension();
  return {path.string(), ending};
}

std::string dictionaryBeside(const std::string& data) {
  if (data == "-" || data.compare(0, 7, "duckdb:") == 0) return {};
  return splitEnding(data).stem + ".schema.json";
}

std::string enginePath(const std::string& file, EngineHolder& engine) {
  std::string path = std::filesystem::absolute(file).string();
  if (path.find_first_of("*?[") == std::string::npos) return path;
  // The engine would take such a name for a pattern.
  std::string link = engine.folder() + "/data" + std::filesystem::path(file).extension().string();
  std::filesystem::create_symlink(path, link);
  return link;
}

std::unique_ptr<Source> openFileSource(const std::string& data, const MissingTexts& missing,
                                       const std::atomic<bool>* interrupted) {
  std::string ending = ".csv";
  if (data.empty()) throw DataError(fmt::format("DATA is an empty name. {}", kEndings));
  if (std::filesystem::is_directory(data)) refuseUnreadable(data);
  if (data != "-") ending = splitEnding(data).ending;
  if (ending == ".csv" || ending == ".tsv") {
    const char delimiter = ending == ".tsv" ? '\t' : '\0';
    return std::make_unique<DelimitedSource>(data, delimiter, missing, interrupted);
  }
  const bool json = ending == ".json" || ending == ".jsonl" || ending == ".ndjson";
  if (!json && ending != ".parquet") {
    throw DataError(fmt::format("{}: this ending is not known. {}", data, kEndings));
  }
  refuseUnreadable(data);
  const std::string compression = compressionOf(data);
  if (compression != "none" && std::filesystem::is_regular_file(data)) {
    checkCompressedFile(data, compression, data, interrupted);
  }
  return openTypedFile(data, json, interrupted);
}

}  // namespace workbench
