#include "workbench/statfiles/stat_file.h"

#include <fmt/format.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

#include "workbench/statfiles/message_stream.h"
#include "workbench/statfiles/wire.h"
#include "workbench/values/data_error.h"
#include "workbench/values/excerpt.h"
#include "workbench/values/extended_missing.h"

namespace workbench {
namespace {

/// Of all names and labels; each counts with what holds it. A small file can have many, all of them
/// in the same place.
constexpr size_t kMostBytes = size_t{128} << 20;
constexpr size_t kBytesOfAText = 48;

/// What a file says of itself, put together from messages.
class HeadReader {
 public:
  HeadReader(const StatSource& source, MessageStream& messages)
      : source_(source), messages_(messages) {}

  StatHead read() {
    wire::Kind kind = wire::Kind::kEnd;
    std::string_view message;
    try {
      while (messages_.next(kind, message)) take(kind, message);
    } catch (const wire::Malformed&) {
      messages_.refuseMalformed();
    }
    return std::move(head_);
  }

 private:
  void take(wire::Kind kind, std::string_view message) {
    wire::Reader reader(message);
    if (kind == wire::Kind::kHead) {
      head_.encoding = source_.encoding.empty() ? std::string(reader.getText()) : source_.encoding;
      if (!source_.encoding.empty()) reader.getText();
      head_.cases = reader.get<int64_t>();
    } else if (kind == wire::Kind::kColumn) {
      takeColumn(reader);
    } else if (kind == wire::Kind::kLabel) {
      takeLabel(reader);
    } else {
      throw wire::Malformed();
    }
    reader.end();
  }

  void takeColumn(wire::Reader& reader) {
    StatColumn& column = head_.columns.emplace_back();
    column.name = text(reader);
    column.label = text(reader);
    const std::string format = text(reader);
    column.labelSet = text(reader);
    column.isText = reader.get<uint8_t>() != 0;
    if (!column.isText) column.unit = unitOf(source_.format, format);
    if (source_.format != StatFormat::kDta) column.labelSet = catalogueName(column.labelSet);
  }

  void takeLabel(wire::Reader& reader) {
    std::string set = text(reader);
    if (source_.format == StatFormat::kCatalogue) set = catalogueName(set);
    StatValueLabel label;
    label.isText = reader.get<uint8_t>() != 0;
    label.number = reader.get<double>();
    if (std::isnan(label.number)) {
      label.number = extendedMissing(wire::missingLetter(label.number)).value_or(label.number);
    }
    label.text = text(reader);
    label.label = text(reader);
    head_.labels[set].push_back(std::move(label));
  }

  std::string text(wire::Reader& reader) {
    // Columns and labels come after the head, which names the encoding.
    if (!decoder_) decoder_.emplace(head_.encoding, source_.label);
    const std::string_view bytes = reader.getText();
    std::string_view decoded;
    if (!decoder_->decode(bytes, scratch_, decoded)) {
      throw DataError(fmt::format(
          "{}: a name or a label is not text in {}: '{}'. Name the right encoding with "
          "--encoding.",
          source_.label, head_.encoding.empty() ? "UTF-8" : head_.encoding, excerpt(bytes)));
    }
    bytes_ += decoded.size() + kBytesOfAText;
    if (bytes_ > kMostBytes) {
      throw DataError(
          fmt::format("{}: its names and labels take more memory than they may: the file is "
                      "damaged, or has to be exported without labels.",
                      source_.label));
    }
    return std::string(decoded);
  }

  const StatSource& source_;
  MessageStream& messages_;
  StatHead head_;
  std::optional<TextDecoder> decoder_;
  std::string scratch_;
  size_t bytes_ = 0;
};

}  // namespace

StatHead takeHead(const StatSource& source, MessageStream& messages) {
  return HeadReader(source, messages).read();
}

StatHead readStatHead(const StatSource& source) {
  MessageStream messages(source, nullptr, startReading(source, false, {}));
  return takeHead(source, messages);
}

StatCaseReader::StatCaseReader(const StatSource& source, const StatHead& head,
                               const std::vector<size_t>& columns)
    : StatCaseReader(
          source, head, columns,
          std::make_unique<MessageStream>(source, &head, startReading(source, true, columns))) {}

StatCaseReader::StatCaseReader(const StatSource& source, const StatHead& head,
                               std::vector<size_t> columns, std::unique_ptr<MessageStream> messages)
    : source_(source),
      head_(head),
      columns_(std::move(columns)),
      decoder_(head.encoding, source.label),
      messages_(std::move(messages)),
      values_(columns_.size()) {}

StatCaseReader::~StatCaseReader() = default;

bool StatCaseReader::next() {
  before_ += cases_;
  cases_ = 0;
  wire::Kind kind = wire::Kind::kEnd;
  std::string_view message;
  try {
    if (!messages_->next(kind, message)) {
      wire::Reader reader(message);
      if (reader.get<uint64_t>() != before_) throw wire::Malformed();
      return false;
    }
    if (kind != wire::Kind::kBlock) throw wire::Malformed();
    takeBlock(message);
  } catch (const wire::Malformed&) {
    messages_->refuseMalformed();
  }
  return true;
}

void StatCaseReader::takeBlock(std::string_view message) {
  wire::Reader reader(message);
  cases_ = reader.get<uint32_t>();
  position_ = reader.get<uint64_t>();
  if (cases_ == 0 || cases_ > wire::kBlockCases) throw wire::Malformed();
  for (size_t place = 0; place < columns_.size(); ++place) {
    const bool isText = reader.get<uint8_t>() != 0;
    if (isText != head_.columns[columns_[place]].isText) throw wire::Malformed();
    if (isText) {
      std::string_view lengths = reader.getBytes(cases_ * sizeof(uint32_t));
      takeTexts(lengths, reader.getText(), place);
    } else {
      takeNumbers(reader.getBytes(cases_ * sizeof(double)), place);
    }
  }
  reader.end();
}

void StatCaseReader::takeNumbers(std::string_view bytes, size_t place) {
  std::vector<double>& numbers = values_[place].numbers;
  numbers.resize(cases_);
  std::memcpy(numbers.data(), bytes.data(), bytes.size());
  for (size_t row = 0; row < cases_; ++row) {
    double& number = numbers[row];
    if (std::isnan(number)) {
      const char letter = wire::missingLetter(number);
      number = std::numeric_limits<double>::quiet_NaN();
      if (letter == '\0') continue;
      const std::optional<double> missing = extendedMissing(letter);
      if (!missing) throw wire::Malformed();
      number = *missing;
    } else if (isExtendedMissing(number) || number == std::numeric_limits<double>::lowest()) {
      throw DataError(fmt::format(
          "{}, case {}: {}: the value {} is too large; numbers that large stand for "
          "missing values. Correct it, or rescale the column.",
          source_.label, before_ + row + 1, head_.columns[columns_[place]].name, number));
    }
  }
}

void StatCaseReader::takeTexts(std::string_view lengths, std::string_view bytes, size_t place) {
  Values& values = values_[place];
  values.texts.clear();
  values.decoded.clear();
  std::vector<size_t> sizes(cases_);
  std::string scratch;
  for (size_t row = 0; row < cases_; ++row) {
    uint32_t length = 0;
    std::memcpy(&length, lengths.data() + row * sizeof length, sizeof length);
    if (length > bytes.size()) throw wire::Malformed();
    const std::string_view raw = bytes.substr(0, length);
    bytes.remove_prefix(length);
    std::string_view text;
    if (!decoder_.decode(raw, scratch, text)) {
      throw DataError(fmt::format(
          "{}, case {}: {}: '{}' is not text in {}. Name the right encoding with --encoding.",
          source_.label, before_ + row + 1, head_.columns[columns_[place]].name, excerpt(raw),
          head_.encoding.empty() ? "UTF-8" : head_.encoding));
    }
    values.decoded += text;
    sizes[row] = text.size();
  }
  if (!bytes.empty()) throw wire::Malformed();
  const std::string_view all = values.decoded;
  size_t at = 0;
  for (const size_t size : sizes) {
    values.texts.push_back(all.substr(at, size));
    at += size;
  }
}

}  // namespace workbench
