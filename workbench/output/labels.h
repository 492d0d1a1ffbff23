/// Turns what a procedure passes into label data.
#pragma once

#include <string>
#include <vector>

#include "host/output.h"
#include "workbench/output/document.h"

namespace workbench {

/// One filled placeholder; a list is one item.
struct LabelItem {
  LabelData data;
  bool isList = false;
  bool isSplitList = false;
  /// Elements of a list, each with its parts (%1, %2).
  std::vector<std::vector<LabelData>> elements;
};

/// Fills a template: ^n with item n, [F:R:]n with a run over the elements of list n. What names no
/// item is left as it is.
std::string fillTemplate(const std::string& text, const std::vector<LabelItem>& items);

/// The same with plain texts.
std::string fillTemplate(const std::string& text, const std::vector<std::string>& arguments);

LabelData describe(const BpLabel& label);
LabelData describe(const BpVariable& variable);
LabelData describe(const BpDataValue& value);
LabelData describe(const BpNumber& number);
LabelData describeKey(const std::string& key);

/// Items of a composite; empty for other labels.
const std::vector<LabelItem>& itemsOf(const BpLabel& label);

/// The catalogue's text for a key, or the key.
std::string catalogueText(const std::string& key);

}  // namespace workbench

/// Host side of the composite label.
struct BpComposite::Impl {
  std::string templateText;
  std::vector<workbench::LabelItem> items;
  bool inList = false;

  void add(workbench::LabelData item);
};
