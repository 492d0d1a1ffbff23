#include <algorithm>

#include "sample_documents.h"
#include "workbench/render/html_text.h"

namespace workbench {
namespace {

TEST(HtmlText, NothingBecomesMarkup) {
  EXPECT_EQ(htmlText("<a href='x' title=\"y\">&amp;"),
            "&lt;a href=&#39;x&#39; title=&quot;y&quot;&gt;&amp;amp;");
  EXPECT_EQ(htmlText("\x1B[31m"), "\\u001B[31m");
}

TEST(HtmlText, MarkdownOfTheDocuments) {
  EXPECT_EQ(htmlFromMarkdown("One *em* and `a < b`,\nstill **strong**.\n\nTwo\n"),
            "<p>One <em>em</em> and <code>a &lt; b</code>, still <strong>strong</strong>.</p>"
            "<p>Two</p>");
  EXPECT_EQ(htmlFromMarkdown("- one\n  more\n- two\n\nEnd"),
            "<ul><li>one more</li><li>two</li></ul><p>End</p>");
  EXPECT_EQ(htmlFromMarkdown("Let\n\n    a < b,\n    c\n\n- Source: *X*"),
            "<p>Let</p><pre>a &lt; b,\nc\n</pre><ul><li>Source: <em>X</em></li></ul>");
  EXPECT_EQ(htmlFromMarkdown("2 * 3 <b>"), "<p>2 * 3 &lt;b&gt;</p>");
  EXPECT_EQ(htmlFromMarkdown(""), "");
}

class Html : public testing::TestWithParam<SampleDocument> {
 protected:
  std::string html() {
    GetParam().make(bench);
    bench.document.finishProcedure(&bench.data);
    return bench.rendered(Format::kHtml);
  }
  SampleBench bench;
};

size_t countOf(const std::string& text, const std::string& part) {
  size_t count = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

/// Elements that are opened, but for those that have no end.
TEST_P(Html, EveryElementIsClosed) {
  const std::string page = html();
  const std::string body = page.substr(page.find("<body>"));
  std::vector<std::string> open;
  for (size_t at = body.find('<'); at != std::string::npos; at = body.find('<', at + 1)) {
    const size_t end = body.find('>', at);
    const std::string tag = body.substr(at + 1, end - at - 1);
    if (tag.back() == '/' || tag == "/html") continue;
    if (tag[0] == '/') {
      ASSERT_FALSE(open.empty()) << tag;
      EXPECT_EQ(open.back(), tag.substr(1));
      open.pop_back();
    } else {
      open.push_back(tag.substr(0, tag.find(' ')));
    }
  }
  EXPECT_TRUE(open.empty());
}

TEST_P(Html, NothingIsAskedForFromElsewhere) {
  const std::string page = html();
  for (const char* part : {"<script", "<img", "<iframe", "http:", "https:", "url(", "@import"}) {
    EXPECT_EQ(page.find(part), std::string::npos) << part;
  }
  EXPECT_EQ(countOf(page, "Content-Security-Policy"), 1u);
}

TEST_P(Html, FootnotesAreLinkedBothWays) {
  const std::string page = html();
  for (size_t at = page.find("href=\"#"); at != std::string::npos;
       at = page.find("href=\"#", at + 1)) {
    const std::string id = page.substr(at + 7, page.find('"', at + 7) - at - 7);
    EXPECT_EQ(countOf(page, " id=\"" + id + '"'), 1u) << id;
  }
}

TEST_P(Html, EveryHeaderCellSaysWhatItHeads) {
  const std::string page = html();
  EXPECT_EQ(countOf(page, "<th"), countOf(page, "<th scope=\"") + countOf(page, "<thead"));
}

INSTANTIATE_TEST_SUITE_P(Samples, Html, testing::ValuesIn(sampleDocuments()),
                         [](const auto& sample) { return std::string(sample.param.name); });

class LongHtml : public testing::Test {
 protected:
  /// A table of intervals with so many variables.
  std::string page(int variables) {
    bench.document.beginProcedure("", "");
    BpProcedure procedure("Proportions", 10);
    const char* title = "One-Sample Proportions Confidence Intervals";
    for (int i = 0; i < variables; ++i) {
      const VarIndex x = bench.data.addNumber("x" + std::to_string(i));
      BpPivotTable& table = pivot(procedure, title);
      dimensionAt(table, text("Interval Type"), 0, 1).Category(text("Wald"));
      dimensionAt(table, text("Variables"), 0, 2)
          .Category(composite("^1 = ^2", BpVariable(x, 2), BpDataValue(x, 1.0, 2)));
      BpDimension& columns = dimensionAt(table, text("Statistics"), 1);
      SampleBench::writeCells(columns, {{"Observed|Proportion", statistic(0.5)}});
      BpGroup& bounds = columns.Group(composite("^1% Confidence Interval", labelNumber(95)), 1, 2);
      bounds.Category(text("Lower")).Cell(statistic(0.4));
      bounds.Category(text("Upper")).Cell(statistic(0.6));
    }
    bench.document.finishProcedure(&bench.data);
    return bench.rendered(Format::kHtml);
  }
  SampleBench bench;
};

TEST_F(LongHtml, ALongTableIsWrittenInParts) {
  const std::string text = page(401);
  EXPECT_EQ(countOf(text, "<table "), 3u);
  EXPECT_NE(text.find("Rows 401 to 401 of 401"), std::string::npos);
  // Each variable has a row of its own above that of its interval.
  EXPECT_EQ(countOf(text, "<tr>"), 2 * 401u + 3 * 2);
}

TEST_F(LongHtml, TheFirst200IntervalsAreDrawnAndTheRestSaid) {
  const std::string text = page(201);
  EXPECT_EQ(countOf(text, "<circle"), 200u);
  EXPECT_NE(text.find("The first 200 of 201 intervals are drawn"), std::string::npos);
}

TEST_F(LongHtml, AllAreDrawnWhereThereAreNoMore) {
  const std::string text = page(200);
  EXPECT_EQ(countOf(text, "<circle"), 200u);
  EXPECT_EQ(countOf(text, "<table "), 1u);
  EXPECT_EQ(text.find("are drawn"), std::string::npos);
}

}  // namespace
}  // namespace workbench
