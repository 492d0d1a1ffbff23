#include "workbench/delimited/block_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>

#include "workbench/text/utf8.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

/// The position after the last line end that is sure to be a whole one; 0 when there is none.
size_t endOfLastLine(const char* text, size_t size) {
  for (size_t at = size; at > 0; --at) {
    const char c = text[at - 1];
    // A CR at the very end may be half of a line end.
    if (c == '\n' || (c == '\r' && at < size)) return at;
  }
  return 0;
}

}  // namespace

char* TextBlock::roomFor(size_t bytes) {
  if (bytes + kReadBeyond > capacity_) {
    capacity_ = bytes + kReadBeyond;
    bytes_.reset();  // so that the old ones and the new ones are never there at once
    bytes_.reset(new char[capacity_]);
  }
  return bytes_.get();
}

std::string_view TextBlock::field(size_t record, size_t column) const {
  const uint32_t* around = index_.positions() + index_.base(record) + column;
  const uint32_t begin = around[0] + 1;
  uint32_t end = around[1];
  const bool last = column + 1 == index_.columns();
  if (last && end > begin && bytes_[end] == '\n' && bytes_[end - 1] == '\r') --end;
  return {bytes_.get() + begin, size_t{end} - begin};
}

BlockReader::BlockReader(const std::vector<OpenPart>& parts, const std::string& encoding,
                         char delimiter, size_t blockBytes, size_t longestRecord,
                         const std::atomic<bool>* interrupted)
    : parts_(parts),
      encoding_(encoding),
      delimiter_(delimiter),
      blockBytes_(std::max<size_t>(blockBytes, 1)),
      longestRecord_(longestRecord),
      interrupted_(interrupted) {}

bool BlockReader::next(TextBlock& block) {
  {
    const std::lock_guard lock(mutex_);
    if (stopped_ || !fetch(block)) return false;
  }
  const OpenPart& part = parts_[block.part];
  if (!block.indexed_) {
    block.index_.indexPlain(block.bytes_.get(), block.size_, delimiter_, part.columns,
                            block.survey_);
  }
  if (const auto& problem = block.index_.problem()) {
    block.problem = messageOf(*problem, part.label, block.firstLine, part.columns, delimiter_);
    block.size_ = block.index_.consumed();
  }
  checkBytes(block);
  if (block.problem) stop();
  return true;
}

bool BlockReader::openNextPart() {
  if (nextPart_ == parts_.size()) return false;
  const OpenPart& part = parts_[nextPart_++];
  stream_ = openText(*part.input, part.path, part.label, encoding_);
  skipHeader(part.head.bytes);
  nextLine_ = 1 + part.head.lines;
  return true;
}

void BlockReader::skipHeader(uint64_t bytes) {
  std::string header;
  header.resize(static_cast<size_t>(bytes));
  fill(header.data(), header.size());
}

size_t BlockReader::fill(char* to, size_t most) {
  size_t size = 0;
  while (size < most) {
    throwIfSet(interrupted_);
    const size_t count = stream_->read(to + size, most - size);
    if (count == 0) break;
    size += count;
  }
  position_ = positionBefore_ + stream_->position();
  return size;
}

bool BlockReader::fetch(TextBlock& block) {
  block.problem.reset();
  for (;;) {
    if (!stream_ && !openNextPart()) return false;
    // As much again as is there already, so that a long record is not looked at too often, but not
    // much more than a record may have.
    const size_t room = longestRecord_ - std::min(longestRecord_, carry_.size());
    const size_t more = std::max(blockBytes_, std::min(carry_.size(), room + 1));
    char* text = block.roomFor(carry_.size() + more + 1);
    std::copy(carry_.begin(), carry_.end(), text);
    size_t size = carry_.size();
    bool final = false;
    try {
      const size_t count = fill(text + size, more);
      size += count;
      final = count < more;
    } catch (const Interrupted&) {
      throw;
    } catch (const DataError& error) {
      // What was read before it comes first.
      block.problem = error.what();
    }
    if (carry_.size() > blockBytes_) {
      carry_ = std::string();  // what one long record took is given back
    } else {
      carry_.clear();
    }
    block.part = static_cast<uint32_t>(nextPart_ - 1);
    block.firstLine = nextLine_;
    const bool whole = cut(block, size, final);
    if (final) {
      positionBefore_ += stream_->position();
      stream_.reset();
      parts_[block.part].input->release();
    }
    if (!whole && !block.problem) continue;
    block.number = nextNumber_++;
    if (block.problem) stop();
    return true;
  }
}

/// Makes a block of the whole records at the beginning of its text and keeps the rest for the next
/// one. False when there is none.
bool BlockReader::cut(TextBlock& block, size_t size, bool final) {
  char* text = block.bytes_.get();
  std::memset(text + size, 0, kReadBeyond);
  // The last line counts with or without its end.
  if (final && size > 0 && text[size - 1] != '\n' && text[size - 1] != '\r') text[size++] = '\n';
  const StructureFunctions& functions = structureFunctions();
  block.survey_ = functions.survey(text, size);
  block.indexed_ = block.survey_.quotes;
  size_t end = size;
  if (block.indexed_) {
    block.index_.indexQuoted(text, size, delimiter_, parts_[block.part].columns, final);
    end = block.index_.consumed();
  } else if (!final) {
    end = endOfLastLine(text, size);
  }
  const bool faulty = block.indexed_ && block.index_.problem().has_value();
  if (!final && !faulty) {
    if (size - end <= longestRecord_) {
      carry_.assign(text + end, size - end);
    } else if (!block.problem) {
      const uint64_t line = nextLine_ + functions.survey(text, end).lineEnds();
      block.problem = longRecordMessage(parts_[block.part].label, line, longestRecord_);
    }
  }
  if (end < size) {
    const TextSurvey rest = functions.survey(text + end, size - end);
    block.survey_.lineFeeds -= rest.lineFeeds;
    block.survey_.carriageReturns -= rest.carriageReturns;
    block.survey_.pairs -= rest.pairs;
    text[end] = '\0';
  }
  block.size_ = end;
  nextLine_ += block.survey_.lineEnds();
  return end > 0 || faulty;
}

void BlockReader::checkBytes(TextBlock& block) const {
  if (!block.survey_.zeros && !block.survey_.beyondAscii) return;
  const std::string_view text = block.text();
  const size_t zero = block.survey_.zeros ? text.find('\0') : std::string_view::npos;
  const size_t invalid =
      block.survey_.beyondAscii ? firstInvalidUtf8(text) : std::string_view::npos;
  if (zero == invalid) return;
  const std::string& label = parts_[block.part].label;
  const uint64_t line = block.firstLine + countLineEnds(text.substr(0, std::min(zero, invalid)));
  block.problem = zero < invalid ? nulMessage(label, line) : encodingMessage(label, line);
  block.index_.dropRecordsFrom(std::min(zero, invalid));
}

}  // namespace workbench
