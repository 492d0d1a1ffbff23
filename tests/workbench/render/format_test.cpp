#include <sstream>

#include "sample_documents.h"

namespace workbench {
namespace {

TEST(Format, Names) {
  EXPECT_EQ(formatFromName("text"), Format::kText);
  EXPECT_EQ(formatFromName("Markdown"), Format::kMarkdown);
  EXPECT_EQ(formatFromName("json"), Format::kJson);
  EXPECT_EQ(formatFromName("csv"), Format::kCsv);
  for (const char* name : {"", "md", "txt", "xml", "json "}) {
    EXPECT_EQ(formatFromName(name), std::nullopt) << name;
  }
}

TEST(Format, Endings) {
  EXPECT_EQ(formatFromEnding("out.txt"), Format::kText);
  EXPECT_EQ(formatFromEnding("a/b.c/out.MD"), Format::kMarkdown);
  EXPECT_EQ(formatFromEnding("x.json"), Format::kJson);
  EXPECT_EQ(formatFromEnding("x.tar.csv"), Format::kCsv);
  for (const char* path : {"", "out", ".json", "out.text", "out.markdown", "out.htm", "out.xml",
                           "out.xlsx", "csv", "out.csv.gz", "out.csvx"}) {
    EXPECT_EQ(formatFromEnding(path), std::nullopt) << path;
  }
}

TEST(Format, AStreamThatFailsShowsIt) {
  SampleBench bench;
  sampleDocuments()[0].make(bench);
  bench.document.finishProcedure(&bench.data);
  for (const Format format :
       {Format::kText, Format::kMarkdown, Format::kHtml, Format::kJson, Format::kCsv}) {
    std::ostringstream out;
    out.setstate(std::ios::badbit);
    render(bench.document, format, {}, out);
    EXPECT_FALSE(out.good());
  }
}

}  // namespace
}  // namespace workbench
