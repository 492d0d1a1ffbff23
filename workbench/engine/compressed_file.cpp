#include "workbench/engine/compressed_file.h"

#define ZLIB_CONST  // input that the library only reads
#include <fmt/format.h>
#include <zlib.h>
#include <zstd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>

#include "workbench/engine/database.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

constexpr size_t kBlock = size_t{1} << 18;

/// One of the two libraries at work: takes blocks of the file, tells what is wrong.
class Decompressor {
 public:
  virtual ~Decompressor() = default;
  /// The problem that a block shows, empty for none.
  virtual std::string problemOf(const std::string& block) = 0;
  /// Whether the blocks so far are complete.
  virtual bool atEnd() const = 0;
};

class Gzip final : public Decompressor {
 public:
  Gzip() {
    constexpr int kGzipOnly = 16 + MAX_WBITS;
    if (inflateInit2(&stream_, kGzipOnly) != Z_OK) throw std::bad_alloc();
  }
  ~Gzip() override { inflateEnd(&stream_); }
  Gzip(const Gzip&) = delete;
  Gzip& operator=(const Gzip&) = delete;

  std::string problemOf(const std::string& block) override {
    stream_.next_in = reinterpret_cast<const Bytef*>(block.data());
    stream_.avail_in = static_cast<uInt>(block.size());
    do {
      // A file may hold several members, one behind the other.
      if (atEnd_ && stream_.avail_in > 0) inflateReset(&stream_);
      stream_.next_out = reinterpret_cast<Bytef*>(output_.data());
      stream_.avail_out = static_cast<uInt>(output_.size());
      const int state = inflate(&stream_, Z_NO_FLUSH);
      atEnd_ = state == Z_STREAM_END;
      if (state == Z_MEM_ERROR) throw std::bad_alloc();
      if (state == Z_DATA_ERROR || state == Z_NEED_DICT || state == Z_STREAM_ERROR) {
        return stream_.msg != nullptr ? stream_.msg : "damaged";
      }
    } while (stream_.avail_in > 0 || stream_.avail_out == 0);
    return {};
  }
  bool atEnd() const override { return atEnd_; }

 private:
  z_stream stream_{};
  std::string output_ = std::string(kBlock, '\0');
  bool atEnd_ = false;
};

class Zstd final : public Decompressor {
 public:
  Zstd() : context_(ZSTD_createDCtx()) {
    if (!context_) throw std::bad_alloc();
  }

  std::string problemOf(const std::string& block) override {
    ZSTD_inBuffer input{block.data(), block.size(), 0};
    ZSTD_outBuffer output{};
    do {
      output = {output_.data(), output_.size(), 0};
      expected_ = ZSTD_decompressStream(context_.get(), &output, &input);
      if (ZSTD_isError(expected_) != 0) return ZSTD_getErrorName(expected_);
    } while (input.pos < input.size || output.pos == output.size);
    return {};
  }
  bool atEnd() const override { return expected_ == 0; }

 private:
  struct Free {
    void operator()(ZSTD_DCtx* context) const { ZSTD_freeDCtx(context); }
  };
  std::unique_ptr<ZSTD_DCtx, Free> context_;
  std::string output_ = std::string(kBlock, '\0');
  size_t expected_ = 1;  // bytes that the library still wants
};

struct Close {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

}  // namespace

void checkCompressedFile(const std::string& file, const std::string& kind, const std::string& label,
                         const std::atomic<bool>* interrupted) {
  const std::unique_ptr<std::FILE, Close> stream(std::fopen(file.c_str(), "rb"));
  if (!stream) throw DataError(fmt::format("{}: {}.", label, std::strerror(errno)));
  std::unique_ptr<Decompressor> decompressor;
  if (kind == "gzip") {
    decompressor = std::make_unique<Gzip>();
  } else {
    decompressor = std::make_unique<Zstd>();
  }
  std::string block;
  do {
    if (interrupted != nullptr && *interrupted) throw Interrupted();
    block.resize(kBlock);
    block.resize(std::fread(block.data(), 1, block.size(), stream.get()));
    if (std::ferror(stream.get()) != 0) {
      throw DataError(fmt::format("{}: cannot be read ({}).", label, std::strerror(errno)));
    }
    const std::string problem = block.empty() ? std::string() : decompressor->problemOf(block);
    if (!problem.empty()) {
      throw DataError(fmt::format(
          "{}: cannot be decompressed ({}). Compress the data again, or give the file its "
          "right ending.",
          label, problem));
    }
  } while (!block.empty());
  if (!decompressor->atEnd()) {
    throw DataError(
        fmt::format("{}: the compressed file is cut off. Copy or download it again.", label));
  }
}

}  // namespace workbench
