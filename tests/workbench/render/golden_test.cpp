// Every sample document in every format, compared with the files in golden/. To write the files
// anew, run this test with WRITE_GOLDEN set; it then fails, so that it cannot pass by accident.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "sample_documents.h"

namespace workbench {
namespace {

constexpr std::pair<Format, const char*> kEndings[] = {{Format::kText, ".txt"},
                                                       {Format::kMarkdown, ".md"},
                                                       {Format::kJson, ".json"},
                                                       {Format::kCsv, ".csv"}};

class GoldenTest : public testing::TestWithParam<SampleDocument> {};

TEST_P(GoldenTest, looksAsItDid) {
  SampleBench bench;
  GetParam().make(bench);
  bench.document.finishProcedure(&bench.data);
  for (const auto& [format, ending] : kEndings) {
    const std::filesystem::path file =
        std::filesystem::path(GOLDEN_FOLDER) / (std::string(GetParam().name) + ending);
    const std::string now = bench.rendered(format);
    if (std::getenv("WRITE_GOLDEN") != nullptr) {
      std::ofstream(file, std::ios::binary) << now;
      ADD_FAILURE() << "written: " << file;
      continue;
    }
    std::ifstream stream(file, std::ios::binary);
    ASSERT_TRUE(stream.good()) << file;
    const std::string then{std::istreambuf_iterator<char>(stream), {}};
    EXPECT_EQ(now, then) << file;
  }
}

INSTANTIATE_TEST_SUITE_P(Samples, GoldenTest, testing::ValuesIn(sampleDocuments()),
                         [](const auto& sample) { return std::string(sample.param.name); });

}  // namespace
}  // namespace workbench
