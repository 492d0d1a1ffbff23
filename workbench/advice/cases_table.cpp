#include "workbench/advice/cases_table.h"

#include <fmt/format.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "workbench/output/distinguish.h"
#include "workbench/output/labels.h"

namespace workbench {
namespace {

constexpr auto kCount = BpFormatSpec::Kind::kCount;

LabelData keyed(const std::string& key) {
  LabelData label;
  label.identity = 'K' + key;
  label.key = key;
  label.text = catalogueText(key);
  return label;
}

LabelData plain(const std::string& text) {
  LabelData label;
  label.identity = 'P' + text;
  label.key = text;
  label.text = text;
  return label;
}

class Builder {
 public:
  explicit Builder(const CaseReport& report)
      : report_(report), table_(std::make_unique<Table>(keyed("Cases"), ShownSplit())) {
    if (!report.groups.empty()) {
      for (const std::string& name : report.splitVariables) {
        splits_.push_back(addDimension(plain(name), 0));
      }
    }
    variables_ = addDimension(keyed("Variables"), 0);
    columns_ = addDimension(keyed("Statistics"), 1);
  }

  std::unique_ptr<Table> build() {
    const bool showGroups = report_.groups.size() <= kMostGroupsInTable;
    if (showGroups) {
      std::set<std::vector<std::string>> named;  // a label may read like another group's value
      for (const CaseReport::Group& group : report_.groups) {
        std::vector<std::string> names = group.split;
        const std::string innermost = names.back();
        for (int twin = 2; !named.insert(names).second; ++twin) {
          names.back() = fmt::format("{} ({})", innermost, twin);
        }
        for (size_t i = 0; i < splits_.size(); ++i) choose(splits_[i], plain(names[i]));
        addRows(group.cases);
      }
    }
    for (const size_t split : splits_) choose(split, keyed("All Cases"));
    addRows(report_.all);
    distinguishLabels(*table_);
    return std::move(table_);
  }

 private:
  size_t addDimension(LabelData label, int axis) {
    const size_t position = table_->addDimension(std::move(label));
    table_->dimension(position).axis = axis;
    table_->dimension(position).level = static_cast<int>(10 - position);
    return position;
  }

  /// Makes the category the current one of its dimension, and adds it when it is new.
  int32_t choose(size_t position, LabelData label) {
    Dimension& dimension = table_->dimension(position);
    int32_t node = dimension.find(0, label.identity, true);
    if (node < 0) node = dimension.add(0, std::move(label), true);
    dimension.makeCurrent(node);
    return dimension.current();
  }

  void set(const char* column, double value, BpFormatSpec::Kind format = kCount) {
    table_->setCell(columns_, choose(columns_, keyed(column)), value, format);
  }

  /// What concerns all variables stands in the row of the first.
  void addRows(const CaseTotals& totals) {
    for (size_t i = 0; i < totals.variables.size(); ++i) {
      choose(variables_, plain(report_.variables[i]));
      if (i == 0) addTotals(totals);
      const VariableCases& cases = totals.variables[i];
      set("Valid", static_cast<double>(cases.valid));
      set("User-Missing", static_cast<double>(cases.userMissing));
      set("System-Missing", static_cast<double>(cases.systemMissing));
    }
  }

  void addTotals(const CaseTotals& totals) {
    set("Cases Read", static_cast<double>(totals.read));
    if (report_.weighted) {
      set("Dropped by Weight", static_cast<double>(totals.droppedByWeight));
      set("Sum of Weights", totals.weight, BpFormatSpec::Kind::kSigDigit);
      set("Rounded Weights", totals.roundedWeight);
    }
    set("Complete Cases", static_cast<double>(totals.complete));
  }

  const CaseReport& report_;
  std::unique_ptr<Table> table_;
  std::vector<size_t> splits_;
  size_t variables_ = 0;
  size_t columns_ = 0;
};

}  // namespace

std::unique_ptr<Table> casesTable(const CaseReport& report) { return Builder(report).build(); }

}  // namespace workbench
