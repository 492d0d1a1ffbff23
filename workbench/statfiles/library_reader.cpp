#include "workbench/statfiles/library_reader.h"

#include <readstat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>

#include "workbench/statfiles/file_bytes.h"
#include "workbench/statfiles/wire.h"
#include "workbench/statfiles/worker_process.h"

namespace workbench {
namespace {

using wire::Problem;

constexpr size_t kXportRecord = 80;
/// In files from this size on a count of cases in 32 bits may have wrapped.
constexpr uint64_t kManyCases = uint64_t{1} << 31;

struct ProblemOf {
  readstat_error_t error;
  Problem problem;
};
constexpr ProblemOf kProblemOf[] = {
    {READSTAT_ERROR_READ, Problem::kCutOff},
    {READSTAT_ERROR_SEEK, Problem::kCutOff},
    {READSTAT_ERROR_MALLOC, Problem::kMemory},
    {READSTAT_ERROR_UNSUPPORTED_COMPRESSION, Problem::kCompression},
    {READSTAT_ERROR_UNSUPPORTED_FILE_FORMAT_VERSION, Problem::kVersion},
    {READSTAT_ERROR_ROW_COUNT_MISMATCH, Problem::kCaseCount}};

std::string_view orEmpty(const char* text) { return text == nullptr ? "" : text; }

/// Writes messages; ends the process when nobody reads them any more.
class Sender {
 public:
  explicit Sender(int output) : output_(output) {}

  void send(wire::Kind kind, const wire::Writer& message) {
    const std::string& bytes = message.bytes();
    if (bytes.size() > wire::kLargestMessage) throw std::bad_alloc();
    const wire::Header header{static_cast<uint32_t>(kind), static_cast<uint32_t>(bytes.size())};
    write(reinterpret_cast<const char*>(&header), sizeof header);
    write(bytes.data(), bytes.size());
  }

 private:
  void write(const char* bytes, size_t size) {
    while (size > 0) {
      const ssize_t count = ::write(output_, bytes, size);
      if (count < 0 && errno != EINTR) ::_exit(0);
      if (count <= 0) continue;
      bytes += count;
      size -= static_cast<size_t>(count);
    }
  }
  int output_;
};

/// The values of one column until they are sent.
struct Pending {
  bool isText = false;
  std::vector<double> numbers;
  std::vector<uint32_t> lengths;
  std::string texts;
};

class Reading {
 public:
  Reading(const ReadingOrder& order, int output)
      : order_(order), bytes_(order.descriptor, order.size), sender_(output) {}

  void run();

 private:
  static Reading& of(void* context) { return *static_cast<Reading*>(context); }
  void setHandlers(readstat_parser_t* parser);
  readstat_error_t parse(readstat_parser_t* parser);
  Problem problemOf(readstat_error_t error) const;

  int onMetadata(readstat_metadata_t* metadata);
  int onVariable(int index, readstat_variable_t* variable, const char* labelSet);
  int onLabel(const char* labelSet, readstat_value_t value, const char* label);
  int onValue(readstat_variable_t* variable, const readstat_value_t& value);

  bool letterOf(const readstat_value_t& value, char& letter) const;
  double numberOf(const readstat_value_t& value) const;
  int stop(Problem problem, size_t column);
  int endCase();
  bool flush();
  void sendProblem(Problem problem, size_t column, std::string_view detail);
  std::optional<Problem> problemAtEnd() const;
  std::optional<Problem> problemOfTransportFile() const;
  bool labelsEndRight() const;

  const ReadingOrder& order_;
  FileBytes bytes_;
  Sender sender_;
  bool stopped_ = false;  // a problem was sent

  std::vector<int> slots_;  // by column of the file: place in pending_, or negative
  size_t lastColumn_ = 0;
  std::vector<Pending> pending_;
  size_t pendingCases_ = 0;
  size_t pendingBytes_ = 0;
  uint64_t cases_ = 0;
  uint64_t caseBytes_ = 0;  // that the columns take
  uint64_t dataStart_ = 0;
  bool taggedFile_ = false;
};

void Reading::run() {
  readstat_parser_t* parser = readstat_parser_init();
  if (parser == nullptr) throw std::bad_alloc();
  // Texts come as they are in the file: what cannot be converted must not become something else.
  readstat_set_handler_character_encoding(parser, nullptr);
  setHandlers(parser);
  const readstat_error_t error = parse(parser);
  if (stopped_) return;
  if (bytes_.sawSecondMember() && order_.format == StatFormat::kXport) {
    sendProblem(Problem::kSeveralDataSets, 0, {});
  } else if (error != READSTAT_OK) {
    sendProblem(problemOf(error), 0, orEmpty(readstat_error_message(error)));
  } else if (const std::optional<Problem> problem = problemAtEnd()) {
    sendProblem(*problem, 0, {});
  } else if (flush()) {
    wire::Writer message;
    message.put(cases_);
    sender_.send(wire::Kind::kEnd, message);
  }
}

Problem Reading::problemOf(readstat_error_t error) const {
  const auto* found = std::find_if(std::begin(kProblemOf), std::end(kProblemOf),
                                   [&](const ProblemOf& each) { return each.error == error; });
  return found == std::end(kProblemOf) ? Problem::kDamaged : found->problem;
}

void Reading::setHandlers(readstat_parser_t* parser) {
  readstat_set_io_ctx(parser, this);
  readstat_set_open_handler(parser, [](const char*, void*) { return 0; });
  readstat_set_close_handler(parser, [](void*) { return 0; });
  readstat_set_seek_handler(parser,
                            [](readstat_off_t offset, readstat_io_flags_t whence, void* context) {
                              const int from = whence == READSTAT_SEEK_SET   ? SEEK_SET
                                               : whence == READSTAT_SEEK_CUR ? SEEK_CUR
                                                                             : SEEK_END;
                              return of(context).bytes_.seek(offset, from);
                            });
  readstat_set_read_handler(parser, [](void* to, size_t most, void* context) {
    return of(context).bytes_.read(static_cast<char*>(to), most);
  });
  readstat_set_update_handler(
      parser, [](long, readstat_progress_handler, void*, void*) { return READSTAT_OK; });
  readstat_set_metadata_handler(parser, [](readstat_metadata_t* metadata, void* context) {
    return of(context).onMetadata(metadata);
  });
  readstat_set_variable_handler(
      parser, [](int index, readstat_variable_t* variable, const char* labelSet, void* context) {
        return of(context).onVariable(index, variable, labelSet);
      });
  if (order_.cases) {
    readstat_set_value_handler(
        parser, [](int, readstat_variable_t* variable, readstat_value_t value, void* context) {
          return of(context).onValue(variable, value);
        });
    return;
  }
  readstat_set_value_label_handler(
      parser, [](const char* set, readstat_value_t value, const char* label, void* context) {
        return of(context).onLabel(set, value, label);
      });
  if (order_.format == StatFormat::kDta || order_.format == StatFormat::kCatalogue) return;
  // The other formats are read no further than the first case.
  readstat_set_row_limit(parser, 1);
  readstat_set_value_handler(parser, [](int, readstat_variable_t*, readstat_value_t, void*) {
    return static_cast<int>(READSTAT_HANDLER_OK);
  });
}

readstat_error_t Reading::parse(readstat_parser_t* parser) {
  switch (order_.format) {
    case StatFormat::kDta:
      return readstat_parse_dta(parser, "", this);
    case StatFormat::kSas7bdat:
      return readstat_parse_sas7bdat(parser, "", this);
    case StatFormat::kXport:
      return readstat_parse_xport(parser, "", this);
    case StatFormat::kCatalogue:
      break;
  }
  return readstat_parse_sas7bcat(parser, "", this);
}

int Reading::onMetadata(readstat_metadata_t* metadata) {
  constexpr int kFirstTagged = 117;
  taggedFile_ = order_.format == StatFormat::kDta &&
                readstat_get_file_format_version(metadata) >= kFirstTagged;
  if (order_.cases) return READSTAT_HANDLER_OK;
  constexpr int kFirstUtf8 = 118;
  const char* encoding = readstat_get_file_encoding(metadata);
  std::string_view name = orEmpty(encoding);
  if (order_.format == StatFormat::kDta) {
    name = readstat_get_file_format_version(metadata) >= kFirstUtf8 ? "UTF-8" : "windows-1252";
  }
  wire::Writer message;
  message.putText(name);
  // A transport file does not say how many there are.
  message.put(order_.format == StatFormat::kXport
                  ? int64_t{-1}
                  : static_cast<int64_t>(readstat_get_row_count(metadata)));
  sender_.send(wire::Kind::kHead, message);
  return READSTAT_HANDLER_OK;
}

int Reading::onVariable(int index, readstat_variable_t* variable, const char* labelSet) {
  const bool isText = readstat_variable_get_type_class(variable) == READSTAT_TYPE_CLASS_STRING;
  if (slots_.empty()) dataStart_ = bytes_.position();
  caseBytes_ += readstat_variable_get_storage_width(variable);
  const size_t column = slots_.size();
  slots_.push_back(-1);
  if (static_cast<size_t>(index) != column) return stop(Problem::kDamaged, column);
  if (!order_.cases) {
    wire::Writer message;
    message.putText(orEmpty(readstat_variable_get_name(variable)));
    message.putText(orEmpty(readstat_variable_get_label(variable)));
    message.putText(orEmpty(readstat_variable_get_format(variable)));
    message.putText(orEmpty(labelSet));
    message.put(static_cast<uint8_t>(isText ? 1 : 0));
    sender_.send(wire::Kind::kColumn, message);
    return READSTAT_HANDLER_OK;
  }
  const auto found = std::find(order_.columns.begin(), order_.columns.end(), column);
  if (found == order_.columns.end()) {
    // Cases count even when nothing of them is looked at.
    const bool counts = order_.columns.empty() && column == 0;
    return counts ? READSTAT_HANDLER_OK : READSTAT_HANDLER_SKIP_VARIABLE;
  }
  pending_.resize(order_.columns.size());
  slots_.back() = static_cast<int>(found - order_.columns.begin());
  pending_[static_cast<size_t>(slots_.back())].isText = isText;
  lastColumn_ = column;
  return READSTAT_HANDLER_OK;
}

/// False for a missing value that the format does not have.
bool Reading::letterOf(const readstat_value_t& value, char& letter) const {
  const char tag = readstat_value_tag(value);
  letter = tag;
  if (order_.format == StatFormat::kDta) return tag >= 'a' && tag <= 'z';
  if (tag >= 'A' && tag <= 'Z') letter = static_cast<char>(tag - 'A' + 'a');
  return letter == '_' || (letter >= 'a' && letter <= 'z');
}

double Reading::numberOf(const readstat_value_t& value) const {
  switch (readstat_value_type(value)) {
    case READSTAT_TYPE_INT8:
      return value.v.i8_value;
    case READSTAT_TYPE_INT16:
      return readstat_int16_value(value);
    case READSTAT_TYPE_INT32:
      return readstat_int32_value(value);
    case READSTAT_TYPE_FLOAT:
      return static_cast<double>(readstat_float_value(value));
    default:
      return readstat_double_value(value);
  }
}

int Reading::onLabel(const char* labelSet, readstat_value_t value, const char* label) {
  double number = 0.0;
  std::string_view text;
  const bool isText = readstat_value_type_class(value) == READSTAT_TYPE_CLASS_STRING;
  if (isText) {
    text = orEmpty(readstat_string_value(value));
  } else if (readstat_value_is_tagged_missing(value) != 0) {
    char letter = '\0';
    if (!letterOf(value, letter)) return stop(Problem::kUnknownMissing, 0);
    number = wire::missingNumber(letter);
  } else if (readstat_value_is_system_missing(value) != 0) {
    return READSTAT_HANDLER_OK;
  } else {
    number = numberOf(value);
  }
  wire::Writer message;
  message.putText(orEmpty(labelSet));
  message.put(static_cast<uint8_t>(isText ? 1 : 0));
  message.put(number);
  message.putText(text);
  message.putText(orEmpty(label));
  sender_.send(wire::Kind::kLabel, message);
  return READSTAT_HANDLER_OK;
}

int Reading::onValue(readstat_variable_t* variable, const readstat_value_t& value) {
  const auto column = static_cast<size_t>(readstat_variable_get_index(variable));
  if (column >= slots_.size()) return stop(Problem::kDamaged, 0);
  if (slots_[column] >= 0) {
    Pending& into = pending_[static_cast<size_t>(slots_[column])];
    if (into.isText) {
      const std::string_view text = orEmpty(readstat_string_value(value));
      if (text.size() > wire::kLongestText) return stop(Problem::kLongText, column);
      into.lengths.push_back(static_cast<uint32_t>(text.size()));
      into.texts += text;
      pendingBytes_ += text.size() + sizeof(uint32_t);
    } else if (readstat_value_is_tagged_missing(value) != 0) {
      char letter = '\0';
      if (!letterOf(value, letter)) return stop(Problem::kUnknownMissing, column);
      into.numbers.push_back(wire::missingNumber(letter));
    } else {
      const bool missing = readstat_value_is_system_missing(value) != 0;
      into.numbers.push_back(missing ? wire::missingNumber('\0') : numberOf(value));
    }
  }
  return column == lastColumn_ ? endCase() : static_cast<int>(READSTAT_HANDLER_OK);
}

int Reading::endCase() {
  ++cases_;
  ++pendingCases_;
  pendingBytes_ += pending_.size() * sizeof(double);
  // Every case takes at least one byte.
  if (cases_ > order_.size) return stop(Problem::kDamaged, 0);
  if (pendingCases_ < wire::kBlockCases && pendingBytes_ < wire::kBlockBytes) {
    return READSTAT_HANDLER_OK;
  }
  extendTime();
  return flush() ? READSTAT_HANDLER_OK : READSTAT_HANDLER_ABORT;
}

/// False when the columns do not have one value for each case.
bool Reading::flush() {
  if (!order_.cases || pendingCases_ == 0) return true;
  wire::Writer message;
  message.put(static_cast<uint32_t>(pendingCases_));
  message.put(bytes_.readUntil());
  for (Pending& column : pending_) {
    const size_t values = column.isText ? column.lengths.size() : column.numbers.size();
    if (values != pendingCases_) {
      stop(Problem::kDamaged, 0);
      return false;
    }
    message.put(static_cast<uint8_t>(column.isText ? 1 : 0));
    if (column.isText) {
      for (const uint32_t length : column.lengths) message.put(length);
      message.putText(column.texts);
    } else {
      message.putNumbers(column.numbers.data(), column.numbers.size());
    }
    column.numbers.clear();
    column.lengths.clear();
    column.texts.clear();
  }
  sender_.send(wire::Kind::kBlock, message);
  pendingCases_ = 0;
  pendingBytes_ = 0;
  return true;
}

int Reading::stop(Problem problem, size_t column) {
  sendProblem(problem, column, {});
  return READSTAT_HANDLER_ABORT;
}

void Reading::sendProblem(Problem problem, size_t column, std::string_view detail) {
  stopped_ = true;
  wire::Writer message;
  message.put(static_cast<uint8_t>(problem));
  message.put(cases_ + 1);
  message.put(static_cast<uint64_t>(column));
  message.putText(detail);
  sender_.send(wire::Kind::kProblem, message);
}

/// What the library passes over in silence.
std::optional<Problem> Reading::problemAtEnd() const {
  switch (order_.format) {
    case StatFormat::kXport:
      return problemOfTransportFile();
    case StatFormat::kSas7bdat: {
      const uint64_t unread = order_.size - std::min(order_.size, bytes_.readUntil());
      const bool wrapped = order_.cases && order_.size >= kManyCases && unread >= order_.size / 4;
      return wrapped ? std::optional(Problem::kTooManyCases) : std::nullopt;
    }
    case StatFormat::kDta:
      return order_.cases || labelsEndRight() ? std::nullopt : std::optional(Problem::kLabels);
    case StatFormat::kCatalogue:
      break;
  }
  return std::nullopt;
}

/// Cases end where no whole one is left; what is left has to be filling.
std::optional<Problem> Reading::problemOfTransportFile() const {
  if (order_.size % kXportRecord != 0) return Problem::kCutOff;
  if (!order_.cases) return std::nullopt;
  const uint64_t used = dataStart_ + cases_ * caseBytes_;
  const std::string rest = bytes_.tail(used, kXportRecord + static_cast<size_t>(caseBytes_));
  if (rest.find_first_not_of(' ') != std::string::npos) return Problem::kCutOff;
  if (caseBytes_ > 0 && rest.size() >= kXportRecord) return Problem::kBlankCases;
  return std::nullopt;
}

/// The value labels at the end of the file are read until something else comes: the end of their
/// part where the file has such, else the end of the file in place of the length of a table.
bool Reading::labelsEndRight() const {
  constexpr std::string_view kEndOfLabels = "</val";
  if (taggedFile_) return bytes_.lastGot() == kEndOfLabels;
  const bool wasLength = bytes_.lastAsked() == 2 || bytes_.lastAsked() == 4;
  return wasLength && bytes_.lastGot().empty();
}

}  // namespace

void readByLibrary(const ReadingOrder& order, int output) { Reading(order, output).run(); }

}  // namespace workbench
