#include "workbench/output/output_document.h"

#include <set>
#include <stdexcept>

#include "workbench/dataset/value_text.h"
#include "workbench/output/handles.h"
#include "workbench/output/labels.h"

namespace workbench {
namespace {

LabelData splitLabel(const Variable& variable, const SplitValue& value, size_t position) {
  LabelData data;
  if (const auto* number = std::get_if<double>(&value)) {
    data.text = shownValue(variable, *number);
    data.key = valueText(variable, *number);
    data.identity = describe(BpDataValue(static_cast<VarIndex>(position), *number, 2)).identity;
  } else {
    const auto& text = std::get<std::string>(value);
    data.text = shownValue(variable, std::string_view(text));
    data.key = text;
    data.identity = 's' + text;
  }
  data.variable = variable.name;
  return data;
}

}  // namespace

OutputDocument::OutputDocument() : handles_(std::make_unique<ProcedureHandles>()) {}
OutputDocument::~OutputDocument() = default;

void OutputDocument::beginProcedure(const std::string& title, const std::string& command) {
  auto procedure = std::make_unique<DocumentProcedure>();
  procedure->title = title;
  procedure->command = command;
  procedures_.push_back(std::move(procedure));
  handles_ = std::make_unique<ProcedureHandles>();
  open_ = true;
  errors_ = 0;
  shownSplit_.clear();
  splitLabels_.clear();
  splitVariables_.clear();
}

void OutputDocument::discardProcedure() {
  handles_ = std::make_unique<ProcedureHandles>();
  procedures_.pop_back();
  open_ = false;
}

DocumentProcedure& OutputDocument::current() {
  if (!open_) throw std::logic_error("no procedure is open in the output document");
  return *procedures_.back();
}

void OutputDocument::addMessage(DocumentMessage message) {
  if (message.severity == Severity::kError) ++errors_;
  current().messages.push_back(std::move(message));
}

void OutputDocument::setSplit(ActiveDataset& dataset) {
  const std::vector<VarIndex>& variables = dataset.splitVariables();
  const std::vector<SplitValue>& values = dataset.currentSplit();
  std::vector<LabelData> labels, names;
  ShownSplit shown;
  for (size_t i = 0; i < variables.size() && i < values.size(); ++i) {
    const Variable& variable = dataset.declaration(variables[i]);
    labels.push_back(splitLabel(variable, values[i], static_cast<size_t>(variables[i])));
    LabelData name = describe(BpVariable(variables[i], 2));
    name.identity = "split" + name.identity;
    shown.emplace_back(name.text, labels.back().text);
    names.push_back(std::move(name));
  }
  splitLabels_ = std::move(labels);
  splitVariables_ = std::move(names);
  shownSplit_ = std::move(shown);
  separateSplits_ = dataset.separateSplitLayout();
}

void OutputDocument::finishProcedure(ActiveDataset* dataset) {
  DocumentProcedure& procedure = current();
  if (dataset != nullptr && dataset->failed()) {
    procedure.tables.clear();
    report(Severity::kError, "Data could not be read ^1", {dataset->failure()});
  }
  procedure.failed = errors_ > 0;
  handles_ = std::make_unique<ProcedureHandles>();
  std::erase_if(procedure.tables, [](const auto& table) { return table->cellCount() == 0; });
  for (const auto& table : procedure.tables) disambiguate(*table);
  open_ = false;
}

namespace {

/// Gives labels that read alike different texts. `kept` holds the texts that are taken.
class Distinguisher {
 public:
  explicit Distinguisher(const std::vector<LabelData*>& labels) {
    std::unordered_map<std::string, int> uses;
    for (const LabelData* label : labels) ++uses[label->text];
    for (LabelData* label : labels) {
      if (uses[label->text] > 1 && !label->variable.empty()) {
        label->text += " [" + label->variable + "]";
      }
    }
    for (LabelData* label : labels) number(*label);
  }

 private:
  void number(LabelData& label) {
    const std::string base = label.text;
    for (int i = 2; !taken_.insert(label.text).second; ++i) {
      label.text = base + " (" + std::to_string(i) + ")";
    }
  }
  std::set<std::string> taken_;
};

}  // namespace

void disambiguate(Table& table) {
  std::vector<LabelData*> names;
  for (const int axis : {0, 1}) {
    for (const size_t i : table.displayOrder(axis)) names.push_back(&table.dimensions()[i].label());
  }
  const Distinguisher dimensions(names);
  for (Dimension& dimension : table.dimensions()) {
    for (size_t node = 0; node < dimension.nodes().size(); ++node) {
      std::vector<LabelData*> children;
      for (const int32_t child : dimension.nodes()[node].children) {
        children.push_back(&dimension.node(child).label);
      }
      if (children.size() > 1) const Distinguisher siblings(children);
    }
  }
}

}  // namespace workbench
