// Generated output documents, with labels of any bytes: every format can be written, JSON is well
// formed, and nothing that a terminal would obey gets through.
#include <limits>
#include <vector>

#include "host/messages.h"
#include "host/output.h"
#include "tests/fuzz/target.h"
#include "tests/fuzz/workbench_run.h"
#include "workbench/session/session.h"

namespace {

using fuzz::Choices;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNumbers[] = {0,     1,      0.5,  -0.25, 1e-300,    1e300,
                               12345, 0.0004, 1e16, 95,    kInfinity, kSystemMissing};
/// Of cells: any label may be that of a bound or a p value, and those lie between -1 and 1.
constexpr double kCells[] = {0,
                             1,
                             0.5,
                             -0.25,
                             -1,
                             1e-300,
                             0.0004,
                             kInfinity,
                             -kInfinity,
                             kSystemMissing,
                             std::numeric_limits<double>::quiet_NaN()};
constexpr const char* kTexts[] = {
    "Wald",     "Observed",  "Statistics", "",      "a|b",          "=1+1",
    "\x1B[31m", "tab\there", "\xC3\xA9",   "\xFF",  "<b>&amp;",     "\xE4\xB8\xAD\xE6\x96\x87",
    "a\r\nb",   "**b** `c`", "\"quoted\"", "Lower", "\xE2\x80\xAE", "Two-Sided p"};
constexpr const char* kTitles[] = {"One-Sample Proportions Confidence Intervals",
                                   "One-Sample Proportions Tests",
                                   "Paired-Samples Proportions Statistics",
                                   "Paired-Samples Proportions Tests",
                                   "Independent-Samples Proportions Group Statistics",
                                   "Another table",
                                   "Independent-Samples Proportions Confidence Intervals"};
constexpr const char* kTemplates[] = {"^1 = ^2",
                                      "^1% Confidence Interval",
                                      "Pair ^1 vars ^2 ^3 ...",
                                      "^1 = [%1:, ^1:]2",
                                      "^9 ^",
                                      "[%1:",
                                      "no item"};

/// One of the texts, or some bytes of the input.
std::string textOf(Choices& choices) {
  if (choices.below(3) != 2) return choices.of(kTexts);
  std::string text;
  for (size_t left = choices.below(24); left > 0; --left) {
    const auto letter = static_cast<char>(choices.byte());
    if (letter != '\0') text += letter;
  }
  return text;
}

VarIndex variableOf(Choices& choices) { return static_cast<VarIndex>(choices.below(3)); }

BpDataValue valueOf(Choices& choices) {
  const int preference = choices.flag() ? 2 : 0;
  const VarIndex variable = variableOf(choices);
  if (variable == 2) return {variable, textOf(choices), preference};
  return {variable, choices.of(kNumbers), preference};
}

BpFormatSpec formatOf(Choices& choices, const BpProcedure& procedure, double number) {
  switch (choices.below(3)) {
    case 0:
      return procedure.Count();
    case 1:
      return procedure.SigDigit(number);
    default:
      return procedure.GeneralStat();
  }
}

BpNumber numberOf(Choices& choices, const BpProcedure& procedure) {
  const double number = choices.of(kNumbers);
  return {number, formatOf(choices, procedure, number)};
}

BpComposite compositeOf(Choices& choices, const BpProcedure& procedure) {
  BpComposite label(choices.of(kTemplates));
  for (size_t left = choices.below(4); left > 0; --left) {
    switch (choices.below(4)) {
      case 0:
        label.Add(BpVariable(variableOf(choices), 2));
        break;
      case 1:
        label.Add(valueOf(choices));
        break;
      case 2:
        label.Add(numberOf(choices, procedure));
        break;
      default:
        label.Sublist();
        for (size_t items = choices.below(4); items > 0; --items) label.Add(valueOf(choices));
        label.EndSublist();
    }
  }
  label.Finish();
  return label;
}

/// Calls `use` with a label of any kind.
template <typename Use>
decltype(auto) withLabel(Choices& choices, const BpProcedure& procedure, const Use& use) {
  const size_t kind = choices.below(4);
  if (kind == 0) return use(BpVariable(variableOf(choices), 2));
  if (kind == 1) return use(compositeOf(choices, procedure));
  return use(BpString(textOf(choices).c_str(), 1));
}

class Writer {
 public:
  Writer(Choices& choices, BpProcedure& procedure) : choices_(choices), procedure_(procedure) {}

  void write() {
    for (size_t tables = choices_.below(4); tables > 0; --tables) writeTable();
    for (size_t notes = choices_.below(3); notes > 0; --notes) {
      AddNotes(static_cast<int>(choices_.below(5)), BpString(textOf(choices_).c_str(), 1),
               BpString(textOf(choices_).c_str(), 1));
    }
    if (choices_.flag()) {
      const auto warn = [](const auto& label) { BpError(label, 2, 2); };
      withLabel(choices_, procedure_, warn);
    }
    ParserMessage messages;
    if (choices_.flag()) messages.GenericWarning(textOf(choices_), textOf(choices_));
    if (choices_.below(4) == 3) messages.GenericError(textOf(choices_));
  }

 private:
  void writeTable() {
    const char* title = choices_.of(kTitles);
    BpPivotTable& table = procedure_.Heading().PivotTable(BpString(title, 1), title, 1);
    std::vector<BpDimension*> dimensions;
    for (size_t left = 1 + choices_.below(4); left > 0; --left) {
      dimensions.push_back(&withLabel(choices_, procedure_, [&](const auto& label) -> BpDimension& {
        return table.Dimension(label, 2);
      }));
      const int axis = choices_.flag() ? 1 : 0;
      dimensions.back()->Position(axis, 1 + static_cast<int>(choices_.below(3)), 0, 0);
    }
    for (size_t left = choices_.below(24); left > 0; --left) {
      writeCategory(*dimensions[choices_.below(dimensions.size())]);
    }
  }

  void writeCategory(BpGroup& parent) {
    BpGroup* group = &parent;
    for (size_t depth = choices_.below(3); depth > 0; --depth) {
      group = &withLabel(choices_, procedure_,
                         [&](const auto& label) -> BpGroup& { return group->Group(label, 1, 2); });
    }
    BpCategory& category = withLabel(choices_, procedure_, [&](const auto& label) -> BpCategory& {
      return group->Category(label);
    });
    if (choices_.below(3) == 2) return;
    const double number = choices_.of(kCells);
    category.Cell(BpNumber(number, formatOf(choices_, procedure_, number)));
    if (choices_.below(4) == 3) {
      BpCellNote note;
      note.text = BpCellText::Replicate(BpString(textOf(choices_).c_str(), 1));
      category.CellNote(note);
    }
    if (choices_.below(4) == 3) {
      withLabel(choices_, procedure_, [&](const auto& label) { category.Note(label); });
    }
  }

  Choices& choices_;
  BpProcedure& procedure_;
};

void fill(workbench::MemoryDataset& data, Choices& choices) {
  workbench::Variable coded;
  coded.name = "coded";
  coded.label = textOf(choices);
  coded.numberLabels = {{1, textOf(choices)}, {0, "same"}, {0.5, "same"}};
  data.addNumbers(coded, {1, 0});
  workbench::Variable twin;
  twin.name = "other";
  twin.label = coded.label;
  data.addNumbers(twin, {1, 0});
  data.addStrings("text", {"yes", "no"});
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  Choices choices(bytes, size);
  const workbench::Format format = choices.of(fuzz::kFormats);
  workbench::RenderOptions options;
  options.width = workbench::kNarrowestWidth + choices.below(256);
  const size_t digits = choices.below(workbench::kMostDigits + 2);
  if (digits > 0) options.digits = static_cast<int>(digits) - 1;
  options.percent = choices.flag();
  options.plot = choices.flag();
  options.sentences = choices.flag();
  workbench::MemoryDataset data;
  fill(data, choices);
  workbench::OutputDocument document;
  workbench::Session session;
  session.dataset = &data;
  session.document = &document;
  session.catalogue = &fuzz::english();
  const workbench::SessionScope scope(session);
  document.beginProcedure("Proportions", textOf(choices));
  {
    BpProcedure procedure("Proportions", 10);
    Writer(choices, procedure).write();
  }
  document.finishProcedure(&data);
  fuzz::checkedRendering(document, format, options);
  return 0;
}
