// Every sample document in every format, and as text in several widths, compared with the files in
// golden/. To write the files anew, run these tests with WRITE_GOLDEN set; they then fail, so that
// they cannot pass by accident.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "sample_documents.h"

namespace workbench {
namespace {

constexpr std::pair<Format, const char*> kEndings[] = {{Format::kText, ".txt"},
                                                       {Format::kMarkdown, ".md"},
                                                       {Format::kHtml, ".html"},
                                                       {Format::kJson, ".json"},
                                                       {Format::kCsv, ".csv"}};

class Golden : public testing::TestWithParam<SampleDocument> {
 protected:
  Golden() {
    GetParam().make(bench);
    bench.document.finishProcedure(&bench.data);
  }

  static void compare(const std::string& now, const std::string& ending) {
    const std::filesystem::path file =
        std::filesystem::path(GOLDEN_FOLDER) / (std::string(GetParam().name) + ending);
    if (std::getenv("WRITE_GOLDEN") != nullptr) {
      std::ofstream(file, std::ios::binary) << now;
      ADD_FAILURE() << "written: " << file;
      return;
    }
    std::ifstream stream(file, std::ios::binary);
    ASSERT_TRUE(stream.good()) << file;
    const std::string then{std::istreambuf_iterator<char>(stream), {}};
    EXPECT_EQ(now, then) << file;
  }

  SampleBench bench;
};

TEST_P(Golden, LooksAsItDid) {
  for (const auto& [format, ending] : kEndings) compare(bench.rendered(format), ending);
}

TEST_P(Golden, LooksAsItDidInOtherWidths) {
  for (const size_t width : {size_t{60}, size_t{80}, size_t{160}}) {
    RenderOptions options;
    options.width = width;
    compare(bench.rendered(Format::kText, options), "." + std::to_string(width) + ".txt");
  }
}

TEST_P(Golden, LooksAsItDidWithAllThatMayBeAsked) {
  RenderOptions options;
  options.width = 80;
  options.digits = 2;
  options.percent = options.plot = options.sentences = true;
  compare(bench.rendered(Format::kText, options), ".all.txt");
  compare(bench.rendered(Format::kMarkdown, options), ".all.md");
}

INSTANTIATE_TEST_SUITE_P(Samples, Golden, testing::ValuesIn(sampleDocuments()),
                         [](const auto& sample) { return std::string(sample.param.name); });

}  // namespace
}  // namespace workbench
