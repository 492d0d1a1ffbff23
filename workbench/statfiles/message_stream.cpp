#include "workbench/statfiles/message_stream.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

#include "workbench/values/data_error.h"
#include "workbench/values/excerpt.h"

namespace workbench {
namespace {

using wire::Problem;

constexpr size_t kPiece = size_t{1} << 18;
/// Seconds of processor time that reading may take without progress in the file, and how many bytes
/// of it allow another one: to sort or search all of a large file takes longer.
constexpr uint64_t kPatience = 2;
constexpr uint64_t kBytesOfASecond = uint64_t{64} << 20;
constexpr const char* kDamaged =
    "the file is damaged, or not what its ending says. Copy or export it again";

/// What is wrong, as the end of a sentence; {0} stands for the case and {1} for the column.
const char* textOf(Problem problem) {
  switch (problem) {
    case Problem::kDamaged:
      return kDamaged;
    case Problem::kCutOff:
      return "the file is cut off or damaged. Copy or export it again";
    case Problem::kCaseCount:
      return "the file holds another number of cases than it says. Copy or export it again";
    case Problem::kTooManyCases:
      return "the file holds more cases than can be read, or is damaged. Export it in parts, or as "
             "Parquet or CSV";
    case Problem::kCompression:
      return "the file is compressed in a way that is not read. Save it with COMPRESS=CHAR or "
             "without compression";
    case Problem::kVersion:
      return "the file is of a version that is not read, or is damaged. Save it in a newer one";
    case Problem::kMemory:
      return "the file is damaged, or reading it takes more memory than there may be";
    case Problem::kSeveralDataSets:
      return "the file holds several data sets. Export each into a file of its own";
    case Problem::kBlankCases:
      return "the file ends in cases that are blank in every column, which this format does not "
             "tell from its filling. Leave them out, or export the data in another format";
    case Problem::kLongText:
      return "case {0}: {1}: the text is too long; a string holds up to 32767 bytes";
    case Problem::kUnknownMissing:
      return "case {0}: {1}: the value is neither a number nor a missing value that the format "
             "has. Correct it, or export the file again";
    case Problem::kLabels:
      return "the value labels at its end cannot be read: the file is cut off or damaged, or of a "
             "version whose labels are laid out in another way. Copy it again, or save it in a "
             "newer version";
  }
  return kDamaged;
}

/// Closed when it is no longer wanted here; the process has its own.
class OpenFile {
 public:
  explicit OpenFile(const StatSource& source)
      : descriptor_(::open(source.path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
    if (descriptor_ < 0) {
      throw DataError(fmt::format("{}: {}.", source.label, std::strerror(errno)));
    }
    struct stat status {};
    if (::fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) {
      ::close(descriptor_);
      throw DataError(
          fmt::format("{}: only a regular file can be read in this format.", source.label));
    }
    size_ = static_cast<uint64_t>(status.st_size);
  }
  ~OpenFile() { ::close(descriptor_); }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  int descriptor() const { return descriptor_; }
  uint64_t size() const { return size_; }

 private:
  int descriptor_;
  uint64_t size_ = 0;
};

}  // namespace

std::unique_ptr<WorkerProcess> startReading(const StatSource& source, bool cases,
                                            std::vector<size_t> columns) {
  const OpenFile file(source);
  if (file.size() == 0) throw DataError(fmt::format("{}: the file is empty.", source.label));
  const ReadingOrder order{source.format, file.descriptor(), file.size(), cases,
                           std::move(columns)};
  const auto patience = static_cast<unsigned>(kPatience + file.size() / kBytesOfASecond);
  try {
    return std::make_unique<WorkerProcess>([&order](int output) { readByLibrary(order, output); },
                                           patience);
  } catch (const std::system_error& error) {
    throw DataError(fmt::format("{}: the process that is to read it cannot be started ({}).",
                                source.label, error.code().message()));
  }
}

MessageStream::MessageStream(const StatSource& source, const StatHead* head,
                             std::unique_ptr<WorkerProcess> process)
    : source_(source), head_(head), process_(std::move(process)), buffer_(kPiece, '\0') {}

/// The next `count` bytes of the stream.
std::string_view MessageStream::take(size_t count) {
  if (end_ - begin_ < count) {
    std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
    if (buffer_.size() < count) buffer_.resize(std::max(count, 2 * buffer_.size()));
  }
  while (end_ - begin_ < count) {
    const size_t got =
        process_->read(buffer_.data() + end_, buffer_.size() - end_, source_.interrupted);
    if (got == 0) refuseUnended();
    end_ += got;
  }
  begin_ += count;
  return std::string_view(buffer_).substr(begin_ - count, count);
}

bool MessageStream::next(wire::Kind& kind, std::string_view& message) {
  wire::Header header;
  std::memcpy(&header, take(sizeof header).data(), sizeof header);
  if (header.size > wire::kLargestMessage) refuseMalformed();
  message = take(header.size);
  kind = static_cast<wire::Kind>(header.kind);
  if (kind == wire::Kind::kProblem) refuseProblem(message);
  return kind != wire::Kind::kEnd;
}

void MessageStream::refuseMalformed() const {
  throw DataError(fmt::format("{}: {}.", source_.label, kDamaged));
}

void MessageStream::refuseUnended() {
  switch (process_->wait()) {
    case WorkerProcess::Ending::kEndless:
      throw DataError(
          fmt::format("{}: the file is damaged: reading it comes to no end. Copy or export it "
                      "again.",
                      source_.label));
    case WorkerProcess::Ending::kOutOfMemory:
      throw DataError(fmt::format("{}: {}.", source_.label, textOf(Problem::kMemory)));
    default:
      refuseMalformed();
  }
}

void MessageStream::refuseProblem(std::string_view bytes) const {
  uint8_t code = 0;
  uint64_t number = 0;
  uint64_t column = 0;
  std::string detail;
  try {
    wire::Reader reader(bytes);
    code = reader.get<uint8_t>();
    number = reader.get<uint64_t>();
    column = reader.get<uint64_t>();
    detail = excerpt(reader.getText());
    reader.end();
  } catch (const wire::Malformed&) {
    refuseMalformed();
  }
  if (code >= wire::kProblems) refuseMalformed();
  const bool isColumn = head_ != nullptr && column < head_->columns.size();
  const std::string name = isColumn ? head_->columns[column].name : "a value label";
  const std::string text =
      fmt::format(fmt::runtime(textOf(static_cast<Problem>(code))), number, name);
  throw DataError(detail.empty() ? fmt::format("{}: {}.", source_.label, text)
                                 : fmt::format("{}: {} ({}).", source_.label, text, detail));
}

}  // namespace workbench
