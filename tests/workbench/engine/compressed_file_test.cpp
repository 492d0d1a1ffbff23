#include "workbench/engine/compressed_file.h"

#include <gtest/gtest.h>
#include <zlib.h>
#include <zstd.h>

#include <ostream>

#include "tests/workbench/dataset/data_folder.h"
#include "workbench/engine/database.h"

namespace workbench {
namespace {

/// 3 MB that hardly compress, so that files take many blocks.
std::string longText() {
  std::string text;
  uint32_t state = 1;
  while (text.size() < 3000000) {
    state = state * 1664525 + 1013904223;
    text += std::to_string(state) + '\n';
  }
  return text;
}

std::string gzipped(const std::string& text) {
  z_stream stream{};
  EXPECT_EQ(deflateInit2(&stream, 6, Z_DEFLATED, 16 + MAX_WBITS, 8, Z_DEFAULT_STRATEGY), Z_OK);
  std::string copy = text, result(deflateBound(&stream, text.size()), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(copy.data());
  stream.avail_in = static_cast<uInt>(copy.size());
  stream.next_out = reinterpret_cast<Bytef*>(result.data());
  stream.avail_out = static_cast<uInt>(result.size());
  EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
  result.resize(stream.total_out);
  deflateEnd(&stream);
  return result;
}

std::string zstandard(const std::string& text) {
  ZSTD_CCtx* context = ZSTD_createCCtx();
  ZSTD_CCtx_setParameter(context, ZSTD_c_checksumFlag, 1);
  std::string result(ZSTD_compressBound(text.size()), '\0');
  result.resize(ZSTD_compress2(context, result.data(), result.size(), text.data(), text.size()));
  ZSTD_freeCCtx(context);
  return result;
}

/// What is said of a file; nothing of one that is whole.
std::string said(const std::string& kind, const std::string& content) {
  const testing::DataFolder folder;
  try {
    checkCompressedFile(folder.write("f", content), kind, "data.csv.gz", nullptr);
  } catch (const DataError& error) {
    return error.what();
  }
  return {};
}

struct Kind {
  const char* name;
  std::string (*compress)(const std::string&);
};

/// Names a kind in the list of tests.
void PrintTo(const Kind& kind, std::ostream* out) { *out << kind.name; }

class CompressedFile : public ::testing::TestWithParam<Kind> {
 protected:
  std::string saidOf(const std::string& content) const { return said(GetParam().name, content); }
};

TEST_P(CompressedFile, WholeOnesPass) {
  for (const std::string& text : {std::string(), std::string("x\n1\n"), longText()}) {
    const std::string whole = GetParam().compress(text);
    EXPECT_EQ(saidOf(whole), "");
    EXPECT_EQ(saidOf(whole + whole), "") << "a file may hold several parts";
  }
}

TEST_P(CompressedFile, OnesCutOffAnywhereAreRefused) {
  const std::string small = GetParam().compress("x\n1\n0\n");
  for (size_t size = 0; size < small.size(); ++size) {
    EXPECT_EQ(saidOf(small.substr(0, size)),
              "data.csv.gz: the compressed file is cut off. Copy or download it again.")
        << size;
  }
  const std::string large = GetParam().compress(longText());
  for (const size_t size : {size_t{1} << 18, size_t{1} << 19, large.size() - 1}) {
    EXPECT_NE(saidOf(large.substr(0, size)), "") << size;
    EXPECT_NE(saidOf(large + large.substr(0, size)), "") << size;
  }
}

TEST_P(CompressedFile, DamagedOnesAreRefused) {
  std::string content = GetParam().compress(longText());
  content[content.size() / 2] = static_cast<char>(content[content.size() / 2] ^ 0x55);
  EXPECT_NE(saidOf(content).find("data.csv.gz: cannot be decompressed ("), std::string::npos);
  EXPECT_NE(saidOf("x\n1\n").find("cannot be decompressed"), std::string::npos);
  EXPECT_NE(saidOf(GetParam().compress("x\n") + "more").find("cannot"), std::string::npos);
}

TEST_P(CompressedFile, CanBeInterrupted) {
  const testing::DataFolder folder;
  const std::string file = folder.write("f", GetParam().compress("x\n"));
  const std::atomic<bool> interrupted = true;
  EXPECT_THROW(checkCompressedFile(file, GetParam().name, "f", &interrupted), Interrupted);
}

INSTANTIATE_TEST_SUITE_P(Kinds, CompressedFile,
                         ::testing::Values(Kind{"gzip", gzipped}, Kind{"zstd", zstandard}),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(CompressedFile, OneThatIsGoneIsRefused) {
  EXPECT_THROW(checkCompressedFile("no/such/file", "gzip", "f", nullptr), DataError);
}

}  // namespace
}  // namespace workbench
