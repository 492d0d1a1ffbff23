#include "workbench/bootstrap/bootstrap_tables.h"

#include <array>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "host/constants.h"
#include "workbench/dataset/active_dataset.h"
#include "workbench/output/output_document.h"
#include "workbench/output/report.h"
#include "workbench/output/table_builder.h"

namespace workbench {
namespace {

constexpr auto kGeneral = BpFormatSpec::Kind::kGeneralStat;

constexpr const char* kTitle = "Bootstrap";
constexpr const char* kSamplesNote = "Bootstrap samples ^1 seed ^2 ...";
constexpr const char* kFailedNote = "Bootstrap samples ^1 seed ^2 failed ^3 ...";
constexpr const char* kNoBcaNote = "BCa takes too many cases ...";
constexpr const char* kOutsideNote = "BCa statistic outside samples ...";
constexpr const char* kMessages = "Bootstrap messages ^1 ...";

const char* nameOf(Quantity quantity) {
  switch (quantity) {
    case Quantity::kProportion:
      return "Proportion";
    case Quantity::kDifference:
      return "Difference";
    default:
      return "Std. Error";
  }
}

std::vector<LabelData> quantityPath(const SampledResult& result) {
  std::vector<LabelData> path{keyedLabel(nameOf(result.quantity))};
  if (result.about.member) path.push_back(*result.about.member);
  return path;
}

LabelData levelLabel(const char* key, double level) {
  LabelData label = keyedLabel(key);
  label.number = level;
  return label;
}

/// One table; its columns, once.
class BootstrapTable {
 public:
  BootstrapTable(const std::vector<LabelData>& splits, ShownSplit shown, double level,
                 const BootstrapFindings& findings)
      : builder_(keyedLabel(kTitle), std::move(shown)), findings_(findings), level_(level) {
    for (const LabelData& split : splits) splits_.push_back(builder_.addSplit(split));
    variables_ = builder_.addRows(keyedLabel("Variables"));
    quantities_ = builder_.addRows(keyedLabel("Quantity"));
    columns_ = builder_.addColumns(keyedLabel("Statistics"));
  }

  void add(const SampledResult& result, const std::vector<LeftOut>* leftOut) {
    for (size_t i = 0; i < splits_.size(); ++i) builder_.choose(splits_[i], {result.split[i]});
    builder_.choose(variables_, {result.about.subject});
    builder_.choose(quantities_, quantityPath(result));
    const std::vector<double> samples(result.values.begin() + 1, result.values.end());
    BootstrapSummary summary =
        summarizeBootstrap(result.values.front(), samples,
                           leftOut == nullptr ? std::vector<LeftOut>() : *leftOut, level_);
    const bool noAcceleration = leftOut == nullptr;
    if (noAcceleration) summary.bcaLower = summary.bcaUpper = kSystemMissing;
    set("Statistic", summary.statistic);
    builder_.note(samplesNote(findings_.samples - summary.computed));
    set("Bias", summary.bias);
    set("Std. Error", summary.standardError);
    setBounds("Percentile", summary.percentileLower, summary.percentileUpper, nullptr);
    const char* reason = noAcceleration ? kNoBcaNote : kOutsideNote;
    setBounds("BCa", summary.bcaLower, summary.bcaUpper, summary.computed < 2 ? nullptr : reason);
  }

  std::unique_ptr<Table> take() { return builder_.take(); }

 private:
  void set(const char* column, double value) {
    builder_.set(columns_, {keyedLabel(column)}, value, kGeneral);
  }

  void setBounds(const char* group, double lower, double upper, const char* whyMissing) {
    const std::array<std::pair<const char*, double>, 2> bounds{
        {{"Lower", lower}, {"Upper", upper}}};
    for (const auto& [name, bound] : bounds) {
      builder_.set(columns_, {levelLabel(group, level_), keyedLabel(name)}, bound, kGeneral);
      if (whyMissing != nullptr && IsSystemMissing(bound)) {
        builder_.note({whyMissing, keyedLabel(whyMissing).text});
      }
    }
  }

  CellNoteText samplesNote(int64_t failed) const {
    std::vector<std::string> arguments{std::to_string(findings_.samples),
                                       std::to_string(findings_.seed)};
    if (failed > 0) arguments.push_back(std::to_string(failed));
    const char* key = failed > 0 ? kFailedNote : kSamplesNote;
    return {key, keyedLabel(key, arguments).text};
  }

  TableBuilder builder_;
  const BootstrapFindings& findings_;
  double level_;
  std::vector<size_t> splits_;
  size_t variables_ = 0;
  size_t quantities_ = 0;
  size_t columns_ = 0;
};

ShownSplit shownSplit(const std::vector<LabelData>& variables, const SampledResult& result) {
  ShownSplit shown;
  for (size_t i = 0; i < variables.size(); ++i) {
    shown.emplace_back(variables[i].text, result.split[i].text);
  }
  return shown;
}

}  // namespace

void addBootstrapTables(Session& session, double level, const BootstrapFindings& findings) {
  const std::vector<LabelData>& variables = findings.results.splitDimensions();
  const bool separate = session.dataset->separateSplitLayout() && !variables.empty();
  std::vector<std::unique_ptr<BootstrapTable>> tables;
  std::map<ShownSplit, BootstrapTable*> byGroup;
  const std::vector<SampledResult>& results = findings.results.results();
  for (size_t i = 0; i < results.size(); ++i) {
    const ShownSplit shown = separate ? shownSplit(variables, results[i]) : ShownSplit();
    BootstrapTable*& table = byGroup[shown];
    if (table == nullptr) {
      tables.push_back(std::make_unique<BootstrapTable>(
          separate ? std::vector<LabelData>() : variables, shown, level, findings));
      table = tables.back().get();
    }
    table->add(results[i], findings.leftOut ? &(*findings.leftOut)[i] : nullptr);
  }
  DocumentProcedure& procedure = session.document->current();
  for (const auto& table : tables) procedure.tables.push_back(table->take());
  if (findings.messages > 0) {
    report(Severity::kWarning, kMessages, {std::to_string(findings.messages)});
  }
}

}  // namespace workbench
