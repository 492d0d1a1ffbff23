#include "sample_documents.h"

#include <limits>
#include <sstream>

#include "host/messages.h"

namespace workbench {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr const char* kNotEnough = "Stat miss not enough cases ...";

void addNotes() {
  AddNotes(4, text("Definition of Missing"), text("MISSING is EXCLUDE ..."));
  AddNotes(4, text("Cases Used"), text("Cases used analysiswise ..."));
  AddNotes(0, text("Weight Handling"), text("not applicable"));
}

BpComposite equals(VarIndex variable, double value) {
  return composite("^1 = ^2", BpVariable(variable, 2), BpDataValue(variable, value, 2));
}

BpGroup& intervalGroup(BpDimension& columns, double level) {
  return columns.Group(composite("^1% Confidence Interval", labelNumber(level)), 1, 2);
}

/// Row and column dimensions as the one-sample tables have them.
struct Dimensions {
  BpDimension& types;
  BpDimension& variables;
  BpDimension& columns;
};

Dimensions layOut(BpProcedure& procedure, const char* title, const char* types) {
  BpPivotTable& table = pivot(procedure, title);
  return {dimensionAt(table, text(types), 0, 1), dimensionAt(table, text("Variables"), 0, 2),
          dimensionAt(table, text("Statistics"), 1)};
}

void writeInterval(const Dimensions& at, double x, double n, double lower, double upper) {
  SampleBench::writeCells(at.columns, {{"Observed|Successes", count(x)},
                                       {"Observed|Trials", count(n)},
                                       {"Observed|Proportion", statistic(x / n)},
                                       {"Asymptotic Standard Error", statistic(0.0479)}});
  BpGroup& interval = intervalGroup(at.columns, 99.9);
  for (const auto& [label, bound] : {std::pair("Lower", lower), std::pair("Upper", upper)}) {
    BpCategory& category = interval.Category(text(label));
    category.Cell(statistic(bound));
    if (bound != kSystemMissing) continue;
    BpCellNote note;
    note.text = BpCellText::Replicate(text(kNotEnough));
    category.CellNote(note);
  }
}

/// Intervals and tests of two variables, with what cannot be computed.
void makeOneSample(SampleBench& bench) {
  const VarIndex smoker = bench.data.addNumber("smoker", "Current smoker", {{1, "Yes"}});
  const VarIndex drinker = bench.data.addNumber("drinker");
  bench.document.beginProcedure("", "PROPORTIONS\n  /ONESAMPLE smoker drinker TESTVAL=0.2.");
  BpProcedure procedure("Proportions", 10);
  addNotes();
  const Dimensions intervals =
      layOut(procedure, "One-Sample Proportions Confidence Intervals", "Interval Type");
  intervals.variables.Category(equals(smoker, 1));
  intervals.types.Category(text("Clopper-Pearson Exact ..."));
  writeInterval(intervals, 37, 100, 0.289355, 0.456566);
  intervals.types.Category(text("Wilson Score (Continuity Corrected)"));
  writeInterval(intervals, 37, 100, kNaN, 1);
  intervals.variables.Category(equals(drinker, 0));
  intervals.types.Category(text("Clopper-Pearson Exact ..."));
  writeInterval(intervals, 1234567, 123456789, 0.0099, 0.01001);
  intervals.types.Category(text("Logit"));
  writeInterval(intervals, 0, 12, kSystemMissing, kSystemMissing);

  const Dimensions tests = layOut(procedure, "One-Sample Proportions Tests", "Test Type");
  tests.variables.Category(equals(smoker, 1));
  tests.types.Category(text("Exact Binomial"));
  SampleBench::writeCells(tests.columns, {{"Observed - Test Value", statistic(0.17)}});
  tests.columns.Category(text("Observed - Test Value"))
      .Note(composite("Test Value = ^1", labelNumber(0.2)));
  tests.columns.Category(text("Z"));
  SampleBench::writeCells(tests.columns, {{"Significance|One-Sided p", statistic(3.1e-5)},
                                          {"Significance|Two-Sided p", statistic(6.2e-5)}});
  tests.types.Category(text("Wald"));
  SampleBench::writeCells(tests.columns,
                          {{"Observed - Test Value", statistic(-0.0000123)},
                           {"Z", statistic(kSystemMissing), kNotEnough},
                           {"Significance|One-Sided p", statistic(kSystemMissing), kNotEnough},
                           {"Significance|Two-Sided p", statistic(kInfinity)}});
}

/// A dimension of rows with groups, a pair without cases and its warning.
void makePaired(SampleBench& bench) {
  const VarIndex before = bench.data.addNumber("before"), after = bench.data.addNumber("after");
  bench.document.beginProcedure("Proportions", "PROPORTIONS /PAIREDSAMPLES before after late.");
  BpProcedure procedure("Proportions", 10);
  addNotes();
  BpPivotTable& table = pivot(procedure, "Paired-Samples Proportions Statistics");
  BpDimension& rows = dimensionAt(table, text("Variables"), 0);
  BpDimension& columns = dimensionAt(table, text("Statistics"), 1);
  for (const double pair : {1.0, 2.0, 3.0}) {
    BpGroup& group = rows.Group(composite("Pair ^1", count(pair)), 1, 2);
    for (const VarIndex variable : {before, after}) {
      // Of the second pair nothing can be shown but what a success is, of the third not even that.
      group.Category(equals(variable, pair == 3 ? kSystemMissing : 1));
      if (pair != 1) continue;
      SampleBench::writeCells(columns, {{"Successes", count(4 + variable)},
                                        {"Trials", count(10)},
                                        {"Proportion", statistic(0.4)}});
    }
  }
  BpError(composite("Not enough valid cases pair ^1 var ^2 ^3 ...", count(2), BpVariable(before, 2),
                    BpVariable(after, 2)),
          2, 2);
}

void writeSplitRows(BpProcedure& procedure, VarIndex variable, double value) {
  const Dimensions at =
      layOut(procedure, "One-Sample Proportions Confidence Intervals", "Interval Type");
  at.variables.Category(equals(variable, kSystemMissing));
  at.variables.Category(equals(variable, value));
  for (const char* method : {"Agresti-Coull", "Jeffreys"}) {
    at.types.Category(text(method));
    writeInterval(at, 1, 3, 0.1, 0.9);
  }
}

/// Three nested split variables as rows.
void makeSplitRows(SampleBench& bench) {
  NamedVariables& data = bench.data;
  const VarIndex x = data.addNumber("x");
  data.splitVariablesNow = {data.addString("country"), data.addString("region", "Region"),
                            data.addNumber("year")};
  bench.document.beginProcedure("Proportions", "PROPORTIONS /ONESAMPLE x.");
  BpProcedure procedure("Proportions", 10);
  addNotes();
  const std::vector<std::vector<SplitValue>> groups{{"", "north", 2000.0},
                                                    {"Austria", "north", 2000.0},
                                                    {"Austria", "north", 2001.0},
                                                    {"Austria", "south", kSystemMissing},
                                                    {"Belgium", "north", 2000.0}};
  for (const auto& group : groups) {
    data.splitNow = group;
    procedure.SplitChange();
    writeSplitRows(procedure, x, 1);
  }
}

BpComposite withSplitList(const char* form) {
  BpComposite label(form);
  label.Sublist();
  label.SplitList();
  label.EndSublist();
  label.Finish();
  return label;
}

/// Tables of their own for each group, and a group without cases.
void makeSplitTables(SampleBench& bench) {
  NamedVariables& data = bench.data;
  const VarIndex x = data.addNumber("x");
  data.splitVariablesNow = {data.addString("region", "", {{"n", "North"}})};
  data.separate = true;
  bench.document.beginProcedure("Proportions", "PROPORTIONS /ONESAMPLE x.");
  BpProcedure procedure("Proportions", 10);
  addNotes();
  for (const char* region : {"n", "s", "w"}) {
    data.splitNow = {std::string(region)};
    procedure.SplitChange();
    if (region[0] == 's') {
      BpError(withSplitList("Not enough valid cases for split [%1 = %2:,^1 = ^2:]1 ..."), 2, 2);
    } else {
      writeSplitRows(procedure, x, region[0] == 'n' ? 1 : 0);
    }
  }
}

/// Names and values that would break a careless renderer.
void makeNastyLabels(SampleBench& bench) {
  const VarIndex x = bench.data.addNumber(
      "x", "a|b *bold* _it_ <b>&amp; `code` [l](u) $m$ ~s~ \\ #1",
      {{1, "\x1B[31mred\x07"},
       {2, "two\nlines\tand a tab"},
       {3, "=SUM(A1)"},
       {4, "\xF0\x9F\x98\x80 \xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E e\xCC\x81"},
       {5, "\xD7\xA2\xD7\x91\xD7\xA8\xD7\x99\xD7\xAA \xE2\x80\xAE evil"},
       {6, "broken \xC3\xFF"},
       {7, "a label that is so long that it has to be broken into several lines to be read at all"},
       {8, "anunbrokenwordofmanymanymanymanymanymanymanymanyletters"},
       {9, ""},
       {10, "\"quoted\", with comma"}});
  const VarIndex grouping = bench.data.addNumber("Variables", "");
  bench.document.beginProcedure("Proportions", "# ``` fence\n\x1B]0;title\x07");
  BpProcedure procedure("Proportions", 10);
  BpPivotTable& table = pivot(procedure, "A title | with *signs*");
  BpDimension& groups = dimensionAt(table, BpVariable(grouping, 2), 0, 1);
  BpDimension& rows = dimensionAt(table, text("Variables"), 0, 2);
  BpDimension& columns = dimensionAt(table, text("Statistics"), 1);
  groups.Category(composite("= ^1", BpDataValue(grouping, -1.0, 2)));
  for (int value = 1; value <= 10; ++value) {
    rows.Category(composite("^1", BpDataValue(x, value, 2)));
    columns.Category(composite("^1", BpVariable(x, 2))).Cell(statistic(-value));
    if (value == 4) columns.Category(text("日本語")).Cell(count(4));
  }
  ParserMessage().GenericWarning("- 1. <^1> ...", "\x1B[2J*");
  report(Severity::kError, "Line 1:\n    ^1\n       ^", {"/ONESAMPL x"});
}

/// Labels of several lines over many rows, over few, and in two columns at once.
void makeLongLabels(SampleBench& bench) {
  const VarIndex before = bench.data.addNumber(
      "before",
      "Hyper-responsive before the transplantation of stem cells, as the clinic found it");
  const VarIndex after = bench.data.addNumber(
      "after", "Hyper-responsive after the transplantation of stem cells, as the clinic found it",
      {{1, "a value whose label takes more than one line, too"}});
  bench.document.beginProcedure("Proportions", "PROPORTIONS /ONESAMPLE before after.");
  BpProcedure procedure("Proportions", 10);
  const Dimensions at = layOut(procedure, "A table", "Interval Type");
  const std::vector<const char*> methods{"Agresti-Coull", "Jeffreys", "Logit", "Wilson Score",
                                         "A method with such a long name that it takes two lines"};
  at.variables.Category(equals(before, 1));
  for (const char* method : methods) {
    at.types.Category(text(method));
    writeInterval(at, 1, 3, 0.1, 0.9);
  }
  at.variables.Category(equals(after, 1));
  for (const char* method : {"Agresti-Coull", "Jeffreys"}) {
    at.types.Category(text(method));
    writeInterval(at, 1, 3, 0.1, 0.9);
  }
}

/// Pairs whose labels take several lines: each pair stands apart, each label begins at the margin.
void makeLongPairs(SampleBench& bench) {
  const std::string question =
      "How often did you take part in sports or other physical activities outside of your home, "
      "question ";
  std::vector<VarIndex> variables;
  for (const char* number : {"1", "2", "3"}) {
    variables.push_back(bench.data.addNumber(std::string("q") + number, question + number,
                                             {{1, "yes, at least once a month"}}));
  }
  bench.document.beginProcedure("Proportions", "PROPORTIONS /PAIREDSAMPLES q1 WITH q2 q3.");
  BpProcedure procedure("Proportions", 10);
  BpPivotTable& table = pivot(procedure, "Paired-Samples Proportions Statistics");
  BpDimension& rows = dimensionAt(table, text("Variables"), 0);
  BpDimension& columns = dimensionAt(table, text("Statistics"), 1);
  for (const size_t pair : {size_t{1}, size_t{2}}) {
    BpGroup& group = rows.Group(composite("Pair ^1", count(static_cast<double>(pair))), 1, 2);
    for (const size_t member : {size_t{0}, pair}) {
      group.Category(equals(variables[member], 1));
      SampleBench::writeCells(columns, {{"Successes", count(4)}, {"Trials", count(10)}});
    }
  }
}

/// Two commands, one of them refused.
void makeSeveral(SampleBench& bench) {
  bench.document.beginProcedure("Proportions", "PROPORTIONS /PAIREDSAMPLES a a.");
  ParserMessage().GenericWarning("Subcom ^1, duplicate var names ...", "PAIREDSAMPLES");
  ParserMessage().GenericError("Need two dist vars ...");
  bench.document.finishProcedure(&bench.data);
  makeOneSample(bench);
}

void makeNothing(SampleBench& bench) { bench.document.beginProcedure("Proportions", ""); }

}  // namespace

SampleBench::SampleBench() {
  session_.dataset = &data;
  session_.document = &document;
  session_.catalogue = &catalogue;
}

void SampleBench::writeCells(BpDimension& columns, const std::vector<CellAt>& cells) {
  for (const CellAt& cell : cells) {
    const std::string name = cell.column;
    const size_t bar = name.find('|');
    BpGroup& parent =
        bar == std::string::npos ? columns : columns.Group(text(name.substr(0, bar).c_str()), 1, 2);
    BpCategory& category =
        parent.Category(text(bar == std::string::npos ? cell.column : cell.column + bar + 1));
    category.Cell(cell.number);
    if (cell.note == nullptr) continue;
    BpCellNote note;
    note.text = BpCellText::Replicate(text(cell.note));
    category.CellNote(note);
  }
}

std::string SampleBench::rendered(Format format, const RenderOptions& options) const {
  std::ostringstream out;
  render(document, format, options, out);
  return out.str();
}

const std::vector<SampleDocument>& sampleDocuments() {
  static const std::vector<SampleDocument> samples{
      {"one_sample", makeOneSample},     {"paired", makePaired},
      {"split_rows", makeSplitRows},     {"split_tables", makeSplitTables},
      {"nasty_labels", makeNastyLabels}, {"long_labels", makeLongLabels},
      {"long_pairs", makeLongPairs},     {"several_commands", makeSeveral},
      {"nothing", makeNothing},
  };
  return samples;
}

}  // namespace workbench
