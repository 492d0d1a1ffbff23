#include "workbench/output/output_document.h"

#include <algorithm>
#include <stdexcept>

#include "workbench/output/distinguish.h"
#include "workbench/output/handles.h"
#include "workbench/text/utf8.h"

namespace workbench {
namespace {

constexpr int kByLabel = 2;

LabelPart partOf(VarIndex variable, const SplitValue& value) {
  if (const auto* number = std::get_if<double>(&value)) {
    return LabelPart(BpDataValue(variable, *number, kByLabel));
  }
  return LabelPart(BpDataValue(variable, std::get<std::string>(value), kByLabel));
}

SplitPlace describePlace(VarIndex variable, const SplitValue& value, std::string name) {
  LabelData dimension = describe(BpVariable(variable, 2));
  // Never the same as a dimension that a table names by this variable.
  dimension.identity.insert(0, "split ");
  return {variable, partOf(variable, value), std::move(dimension),
          describeSplitValue(variable, value), std::move(name)};
}

ShownSplit shownPlaces(const std::vector<SplitPlace>& places) {
  std::vector<LabelData> names;
  for (const SplitPlace& place : places) names.push_back(place.dimension);
  std::vector<LabelData*> alike;
  for (LabelData& name : names) alike.push_back(&name);
  distinguish(alike);
  ShownSplit shown;
  for (size_t i = 0; i < places.size(); ++i) {
    shown.emplace_back(names[i].text, places[i].name);
  }
  return shown;
}

}  // namespace

OutputDocument::OutputDocument() = default;
OutputDocument::~OutputDocument() = default;

void OutputDocument::forget() {
  errors_ = 0;
  separateSplits_ = false;
  split_.clear();
  group_.clear();
  shownSplit_.clear();
  splitNames_ = {};
  groupMessages_.clear();
}

void OutputDocument::beginProcedure(const std::string& title, const std::string& command) {
  auto procedure = std::make_unique<DocumentProcedure>();
  procedure->title = validUtf8(title);
  procedure->command = validUtf8(command);
  auto handles = std::make_unique<ProcedureHandles>();
  procedures_.push_back(std::move(procedure));
  handles_ = std::move(handles);
  forget();
}

DocumentProcedure& OutputDocument::current() {
  if (!isOpen()) throw std::logic_error("no procedure runs that could put something out");
  return *procedures_.back();
}

ProcedureHandles& OutputDocument::handles() {
  current();
  return *handles_;
}

void OutputDocument::addMessage(DocumentMessage message) {
  const bool isError = message.severity == Severity::kError;
  current().messages.push_back(std::move(message));
  if (isError) ++errors_;
}

void OutputDocument::addGroupMessage(DocumentMessage message) {
  message.split = shownSplit_;
  GroupMessage& remembered = groupMessages_.emplace_back();
  remembered.position = current().messages.size();
  remembered.group = group_;
  addMessage(std::move(message));
}

void OutputDocument::nameGroupsOfMessages() {
  for (const GroupMessage& each : groupMessages_) {
    ShownSplit& shown = current().messages[each.position].split;
    for (size_t i = 0; i < shown.size(); ++i) {
      const auto& [variable, value] = each.group[i];
      if (const std::string* name = splitNames_.toldApart(variable, value)) shown[i].second = *name;
    }
  }
}

void OutputDocument::setSplit(const ActiveDataset& dataset) {
  const std::vector<VarIndex>& variables = dataset.splitVariables();
  const std::vector<SplitValue>& values = dataset.currentSplit();
  std::vector<SplitPlace> places;
  std::vector<std::pair<VarIndex, SplitValue>> group;
  for (size_t i = 0; i < std::min(variables.size(), values.size()); ++i) {
    splitNames_.note(variables[i], values[i]);
    group.emplace_back(variables[i], values[i]);
    places.push_back(
        describePlace(variables[i], values[i], splitNames_.text(variables[i], values[i])));
  }
  ShownSplit shown = shownPlaces(places);
  split_ = std::move(places);
  group_ = std::move(group);
  shownSplit_ = std::move(shown);
  separateSplits_ = dataset.separateSplitLayout();
}

void OutputDocument::finishProcedure(const ActiveDataset* dataset) {
  DocumentProcedure& procedure = current();
  std::vector<std::string> splitVariables;
  if (dataset != nullptr) {
    for (const VarIndex variable : dataset->splitVariables()) {
      splitVariables.push_back(validUtf8(dataset->declaration(variable).name));
    }
  }
  if (dataset != nullptr && dataset->failed()) procedure.tables.clear();
  procedure.tables.erase(std::remove_if(procedure.tables.begin(), procedure.tables.end(),
                                        [](const auto& table) { return table->cellCount() == 0; }),
                         procedure.tables.end());
  for (const auto& table : procedure.tables) distinguishLabels(*table);
  nameGroupsOfMessages();
  // The last that may fail, so that a repetition does not say it again.
  if (dataset != nullptr && dataset->failed()) {
    report(Severity::kError, "Data could not be read ^1", {dataset->failure()});
  }
  procedure.splitVariables = std::move(splitVariables);
  procedure.failed = errors_ > 0;
  handles_.reset();
}

}  // namespace workbench
