// What text shows whatever the width.
#include <sstream>

#include "sample_documents.h"
#include "workbench/render/cell_texts.h"
#include "workbench/render/wrap.h"

namespace workbench {
namespace {

class PlainText : public testing::TestWithParam<SampleDocument> {
 protected:
  PlainText() {
    GetParam().make(bench);
    bench.document.finishProcedure(&bench.data);
  }
  SampleBench bench;
};

TEST_P(PlainText, NoLineIsWiderThanAsked) {
  for (size_t width = kNarrowestWidth; width <= 200; width += 3) {
    RenderOptions options;
    options.width = width;
    options.plot = options.sentences = true;
    std::istringstream text(bench.rendered(Format::kText, options));
    std::string line;
    while (std::getline(text, line)) EXPECT_LE(widthOf(line), width) << line;
  }
}

/// Every number of every cell, as the table's texts.
std::vector<std::string> cellTexts(const OutputDocument& document) {
  std::vector<std::string> texts;
  for (const auto& procedure : document.procedures()) {
    for (const auto& table : procedure->tables) {
      const CellTexts textOf(*table, {});
      for (size_t cell = 0; cell < table->cellCount(); ++cell) texts.push_back(textOf(cell));
    }
  }
  return texts;
}

TEST_P(PlainText, EveryNumberStandsInEveryWidth) {
  for (const size_t width : {kNarrowestWidth, size_t{60}, size_t{80}, size_t{400}}) {
    RenderOptions options;
    options.width = width;
    const std::string text = bench.rendered(Format::kText, options);
    for (const std::string& number : cellTexts(bench.document)) {
      EXPECT_NE(text.find(number), std::string::npos) << number << " in width " << width;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Samples, PlainText, testing::ValuesIn(sampleDocuments()),
                         [](const auto& sample) { return std::string(sample.param.name); });

}  // namespace
}  // namespace workbench
