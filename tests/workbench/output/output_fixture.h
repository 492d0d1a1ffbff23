/// A session with a made-up data set and an empty document, for tests of what is put out.
#pragma once

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "host/output.h"
#include "workbench/catalogue/catalogue.h"
#include "workbench/dataset/active_dataset.h"
#include "workbench/output/output_document.h"
#include "workbench/session/session.h"

namespace workbench {

/// Variables and a split group, both set by the test; no cases.
class NamedVariables final : public ActiveDataset {
 public:
  VarIndex addNumber(const std::string& name, const std::string& label = "",
                     std::vector<std::pair<double, std::string>> labels = {}) {
    Variable variable;
    variable.name = name;
    variable.label = label;
    variable.numberLabels = std::move(labels);
    variables_.push_back(std::move(variable));
    return variableCount() - 1;
  }
  VarIndex addString(const std::string& name, const std::string& label = "",
                     std::vector<std::pair<std::string, std::string>> labels = {}) {
    Variable variable;
    variable.name = name;
    variable.label = label;
    variable.kind = ValueKind::kString;
    variable.width = 8;
    variable.stringLabels = std::move(labels);
    variables_.push_back(std::move(variable));
    return variableCount() - 1;
  }

  void setKind(VarIndex index, ValueKind kind) {
    variables_.at(static_cast<size_t>(index)).kind = kind;
  }

  int32_t variableCount() const override { return static_cast<int32_t>(variables_.size()); }
  const Variable& variable(VarIndex index) override { return declaration(index); }
  const Variable& declaration(VarIndex index) const override {
    return variables_.at(static_cast<size_t>(index));
  }
  VarIndex find(std::string_view) const override { return -1; }
  const std::vector<VarIndex>& splitVariables() const override { return splitVariablesNow; }
  VarIndex weightVariable() const override { return -1; }
  bool separateSplitLayout() const override { return separate; }
  std::unique_ptr<CaseFeed> openFeed() override { return nullptr; }
  const std::vector<SplitValue>& currentSplit() const override { return splitNow; }
  bool failed() const override { return !failureNow.empty(); }
  const std::string& failure() const override { return failureNow; }
  int64_t caseCount() const override { return 0; }

  std::vector<VarIndex> splitVariablesNow;
  std::vector<SplitValue> splitNow;
  bool separate = false;
  std::string failureNow;

 private:
  std::vector<Variable> variables_;
};

class OutputTest : public testing::Test {
 protected:
  OutputTest() {
    session_.dataset = &data;
    session_.document = &document;
    session_.catalogue = &catalogue;
  }

  void begin(const std::string& command = "PROPORTIONS.") {
    document.beginProcedure("Proportions", command);
  }
  const DocumentProcedure& finish() {
    document.finishProcedure(&data);
    return *document.procedures().back();
  }
  void enterGroup(BpProcedure& procedure, std::vector<SplitValue> values) {
    data.splitNow = std::move(values);
    procedure.SplitChange();
  }

  NamedVariables data;
  Catalogue catalogue = Catalogue::parse("{}");
  OutputDocument document;

 private:
  Session session_;
  SessionScope scope_{session_};
};

inline BpString text(const char* key) { return {key, 1}; }

template <typename... Items>
BpComposite composite(const char* form, const Items&... items) {
  BpComposite label(form);
  (label.Add(items), ...);
  label.Finish();
  return label;
}

inline BpNumber count(double value) { return {value, {BpFormatSpec::Kind::kCount}}; }
inline BpNumber statistic(double value) { return {value, {BpFormatSpec::Kind::kGeneralStat}}; }
inline BpNumber labelNumber(double value) { return {value, {BpFormatSpec::Kind::kSigDigit}}; }

inline BpPivotTable& pivot(BpProcedure& procedure, const char* title) {
  return procedure.Heading().PivotTable(text(title), title, 1);
}

/// A dimension at its place: rows (0) or columns (1), and its level.
inline BpDimension& dimensionAt(BpPivotTable& table, const BpLabel& label, int axis,
                                int level = 1) {
  BpDimension& dimension = table.Dimension(label, 2);
  dimension.Position(axis, level, 1, 0);
  return dimension;
}

/// The labels of a dimension's tree, groups with what is in them in brackets.
inline std::string treeText(const Dimension& dimension, int32_t node = 0) {
  std::string result;
  for (const int32_t child : dimension.node(node).children) {
    if (!result.empty()) result += ", ";
    result += dimension.node(child).label.text;
    if (dimension.node(child).leaf < 0) result += " [" + treeText(dimension, child) + "]";
  }
  return result;
}

/// Each cell of a table on a line: the paths of its place in display order, value, note.
inline std::string cellsText(const Table& table) {
  std::string result;
  for (size_t cell = 0; cell < table.cellCount(); ++cell) {
    for (const int axis : {0, 1}) {
      for (const size_t d : table.displayOrder(axis)) {
        const int32_t leaf = table.leafOf(cell, d);
        if (leaf < 0) result += "(none)";
        for (const std::string_view step :
             leaf < 0 ? std::vector<std::string_view>() : table.dimensions()[d].path(leaf)) {
          result += std::string(step) + '/';
        }
        result += ' ';
      }
    }
    result += std::to_string(table.cell(cell).value).substr(0, 5);
    const int32_t note = table.cell(cell).note;
    if (note >= 0) result += " " + table.notes()[static_cast<size_t>(note)].key;
    result += '\n';
  }
  return result;
}

}  // namespace workbench
