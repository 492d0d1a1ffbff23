#include "workbench/delimited/text_stream.h"

#define ZLIB_CONST  // input that the library only reads
#include <fmt/format.h>
#include <unicode/ucnv.h>
#include <zlib.h>
#include <zstd.h>

#include <algorithm>
#include <array>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

#include "workbench/values/data_error.h"

namespace workbench {
namespace {

constexpr size_t kBlock = size_t{1} << 18U;

class RawStream final : public TextStream {
 public:
  explicit RawStream(ByteInput& input) : input_(input) {}
  size_t read(char* to, size_t most) override {
    const size_t count = input_.readAt(position_, to, most);
    position_ += count;
    return count;
  }
  uint64_t position() const override { return position_; }

 private:
  ByteInput& input_;
  uint64_t position_ = 0;
};

/// What decompressors and converters share: a stream below, read block by block.
class FilterStream : public TextStream {
 public:
  FilterStream(std::unique_ptr<TextStream> below, std::string label)
      : below_(std::move(below)), label_(std::move(label)), block_(kBlock, '\0') {}
  uint64_t position() const override { return below_->position(); }

 protected:
  /// False at the end of the stream below.
  bool refill() {
    const size_t count = below_->read(block_.data(), block_.size());
    unread_ = std::string_view(block_).substr(0, count);
    return count > 0;
  }
  [[noreturn]] void refuseDamaged(const char* reason) const {
    throw DataError(
        fmt::format("{}: cannot be decompressed ({}). Compress the data again, or give the file "
                    "its right ending.",
                    label_, reason));
  }
  [[noreturn]] void refuseCutOff() const {
    throw DataError(
        fmt::format("{}: the compressed file is cut off. Copy or download it again.", label_));
  }
  const std::string& label() const { return label_; }

  std::string_view unread_;

 private:
  std::unique_ptr<TextStream> below_;
  std::string label_;
  std::string block_;
};

class GzipStream final : public FilterStream {
 public:
  GzipStream(std::unique_ptr<TextStream> below, const std::string& label)
      : FilterStream(std::move(below), label) {
    constexpr int kGzipOnly = 16 + MAX_WBITS;
    if (inflateInit2(&stream_, kGzipOnly) != Z_OK) throw std::bad_alloc();
  }
  ~GzipStream() override { inflateEnd(&stream_); }
  GzipStream(const GzipStream&) = delete;
  GzipStream& operator=(const GzipStream&) = delete;

  size_t read(char* to, size_t most) override {
    for (;;) {
      if (unread_.empty() && !refill()) {
        if (!memberEnded_) refuseCutOff();
        return 0;
      }
      // A file may hold several members, one after the other.
      if (memberEnded_) inflateReset(&stream_);
      if (const size_t count = inflateSome(to, most); count > 0) return count;
    }
  }

 private:
  size_t inflateSome(char* to, size_t most) {
    stream_.next_in = reinterpret_cast<const Bytef*>(unread_.data());
    stream_.avail_in = static_cast<uInt>(unread_.size());
    stream_.next_out = reinterpret_cast<Bytef*>(to);
    stream_.avail_out = static_cast<uInt>(most);
    const int state = inflate(&stream_, Z_NO_FLUSH);
    if (state == Z_MEM_ERROR) throw std::bad_alloc();
    if (state == Z_DATA_ERROR || state == Z_NEED_DICT || state == Z_STREAM_ERROR) {
      refuseDamaged(stream_.msg != nullptr ? stream_.msg : "damaged");
    }
    memberEnded_ = state == Z_STREAM_END;
    unread_.remove_prefix(unread_.size() - stream_.avail_in);
    return most - stream_.avail_out;
  }

  z_stream stream_{};
  bool memberEnded_ = false;
};

class ZstdStream final : public FilterStream {
 public:
  ZstdStream(std::unique_ptr<TextStream> below, const std::string& label)
      : FilterStream(std::move(below), label), context_(ZSTD_createDCtx()) {
    if (!context_) throw std::bad_alloc();
  }

  size_t read(char* to, size_t most) override {
    for (;;) {
      if (unread_.empty() && !pending_ && !refill()) {
        if (expected_ != 0) refuseCutOff();
        return 0;
      }
      ZSTD_inBuffer input{unread_.data(), unread_.size(), 0};
      ZSTD_outBuffer output{to, most, 0};
      expected_ = ZSTD_decompressStream(context_.get(), &output, &input);
      if (ZSTD_isError(expected_) != 0) refuseDamaged(ZSTD_getErrorName(expected_));
      unread_.remove_prefix(input.pos);
      pending_ = output.pos == output.size;
      if (output.pos > 0) return output.pos;
    }
  }

 private:
  struct Free {
    void operator()(ZSTD_DCtx* context) const { ZSTD_freeDCtx(context); }
  };
  std::unique_ptr<ZSTD_DCtx, Free> context_;
  size_t expected_ = 1;   // bytes that the library still wants
  bool pending_ = false;  // it may hold more than it could give
};

struct CloseConverter {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, CloseConverter>;

Converter openConverter(const std::string& name) {
  UErrorCode error = U_ZERO_ERROR;
  Converter converter(ucnv_open(name.c_str(), &error));
  if (U_FAILURE(error) || name.empty()) {
    throw DataError(fmt::format(
        "Encoding \"{}\": no such encoding is known. Give a name like UTF-16, ISO-8859-1, "
        "windows-1252 or Shift_JIS.",
        name));
  }
  return converter;
}

/// Lines as an editor counts them, over any number of pieces of a text.
class LineCounter {
 public:
  void add(std::string_view text) {
    for (const char c : text) {
      if (c == '\r' || (c == '\n' && !afterReturn_)) ++line_;
      afterReturn_ = c == '\r';
    }
  }
  size_t line() const { return line_; }

 private:
  size_t line_ = 1;
  bool afterReturn_ = false;
};

/// Whether the encoding is one of those in which the library makes control characters, or private
/// ones, of bytes that stand for nothing.
bool hasUndefinedBytes(const std::string& encoding) {
  UErrorCode error = U_ZERO_ERROR;
  const uint16_t count = ucnv_countAliases(encoding.c_str(), &error);
  for (uint16_t i = 0; i < count; ++i) {
    const char* alias = ucnv_getAlias(encoding.c_str(), i, &error);
    const std::string_view name = alias == nullptr ? "" : alias;
    if (name.starts_with("windows-125") || name == "windows-874") return true;
  }
  return false;
}

/// Finds what such bytes become, over any number of pieces of a text in UTF-8: U+0080 to U+009F,
/// U+F8C1 to U+F8C8.
class UndefinedBytes {
 public:
  /// Position of the last byte of the first of them in the piece; npos for none.
  size_t find(std::string_view piece) {
    for (size_t i = 0; i < piece.size(); ++i) {
      const auto byte = static_cast<unsigned char>(piece[i]);
      const bool control = before_ == 0xC2 && byte >= 0x80 && byte <= 0x9F;
      const bool isPrivate = beforeThat_ == 0xEF && before_ == 0xA3 && byte >= 0x81 && byte <= 0x88;
      if (control || isPrivate) return i;
      beforeThat_ = std::exchange(before_, byte);
    }
    return std::string_view::npos;
  }

 private:
  unsigned char before_ = 0;
  unsigned char beforeThat_ = 0;
};

class ConvertedStream final : public FilterStream {
 public:
  ConvertedStream(std::unique_ptr<TextStream> below, const std::string& label,
                  const std::string& encoding)
      : FilterStream(std::move(below), label),
        encoding_(encoding),
        hasUndefinedBytes_(hasUndefinedBytes(encoding)),
        from_(openConverter(encoding)),
        to_(openConverter("UTF-8")) {
    UErrorCode error = U_ZERO_ERROR;
    ucnv_setToUCallBack(from_.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
    ucnv_setFromUCallBack(to_.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
    if (U_FAILURE(error)) throw DataError(fmt::format("{}: {}.", label, u_errorName(error)));
  }

  size_t read(char* to, size_t most) override {
    while (!finished_) {
      if (unread_.empty() && !ended_) ended_ = !refill();
      if (const size_t count = convert(to, most); count > 0) return count;
    }
    return 0;
  }

 private:
  size_t convert(char* to, size_t most) {
    char* out = to;
    const char* in = unread_.data();
    UErrorCode error = U_ZERO_ERROR;
    ucnv_convertEx(to_.get(), from_.get(), &out, to + most, &in, unread_.data() + unread_.size(),
                   pivot_.data(), &pivotBegin_, &pivotEnd_, pivot_.data() + pivot_.size(), 0,
                   static_cast<UBool>(ended_), &error);
    unread_.remove_prefix(static_cast<size_t>(in - unread_.data()));
    const auto count = static_cast<size_t>(out - to);
    if (hasUndefinedBytes_) {
      if (const size_t at = undefined_.find({to, count}); at != std::string_view::npos) {
        lines_.add({to, at});
        refuseBytes();
      }
    }
    lines_.add({to, count});
    if (error == U_BUFFER_OVERFLOW_ERROR) return count;
    if (U_FAILURE(error)) {
      // What was understood before the error may not have been given out yet.
      for (const UChar* unit = pivotBegin_; unit < pivotEnd_; ++unit) {
        const char c = *unit < 0x80 ? static_cast<char>(*unit) : ' ';
        lines_.add({&c, 1});
      }
      refuseBytes();
    }
    finished_ = ended_;
    return count;
  }
  [[noreturn]] void refuseBytes() const {
    throw DataError(
        fmt::format("{}, line {}: there are bytes that are not {}. Name the encoding of the file "
                    "with --encoding.",
                    label(), lines_.line(), encoding_));
  }

  std::string encoding_;
  bool hasUndefinedBytes_;
  UndefinedBytes undefined_;
  Converter from_;
  Converter to_;
  LineCounter lines_;
  std::array<UChar, 4096> pivot_{};
  UChar* pivotBegin_ = pivot_.data();
  UChar* pivotEnd_ = pivot_.data();
  bool ended_ = false;
  bool finished_ = false;
};

bool endsWith(const std::string& path, std::string_view ending) {
  if (path.size() < ending.size()) return false;
  return std::equal(ending.rbegin(), ending.rend(), path.rbegin(), [](char a, char b) {
    return a == (b >= 'A' && b <= 'Z' ? static_cast<char>(b + ('a' - 'A')) : b);
  });
}

bool isUtf8(const std::string& encoding) {
  return encoding.empty() || ucnv_compareNames(encoding.c_str(), "UTF-8") == 0;
}

}  // namespace

std::unique_ptr<TextStream> openText(ByteInput& input, const std::string& path,
                                     const std::string& label, const std::string& encoding) {
  std::unique_ptr<TextStream> stream = std::make_unique<RawStream>(input);
  if (endsWith(path, ".gz")) {
    stream = std::make_unique<GzipStream>(std::move(stream), label);
  } else if (endsWith(path, ".zst")) {
    stream = std::make_unique<ZstdStream>(std::move(stream), label);
  }
  if (isUtf8(encoding)) return stream;
  return std::make_unique<ConvertedStream>(std::move(stream), label, encoding);
}

void refuseUnknownEncoding(const std::string& encoding) {
  if (!isUtf8(encoding)) openConverter(encoding);
}

}  // namespace workbench
