/// Turns what a procedure passes into identities, texts and label data.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/output.h"
#include "workbench/dataset/active_dataset.h"
#include "workbench/output/document.h"

namespace workbench {

/// A part of a composite label, as it was added.
struct LabelPart {
  enum class Kind : uint8_t { kVariable, kNumberValue, kStringValue, kNumber, kList };

  explicit LabelPart(Kind partKind) : kind(partKind) {}
  explicit LabelPart(const BpVariable& variable);
  explicit LabelPart(const BpDataValue& value);
  explicit LabelPart(const BpNumber& number);

  Kind kind;
  bool isSplitList = false;  ///< a list that names the split group
  VarIndex variable = -1;
  int code = 0;  ///< show code or value preference
  double number = 0.0;
  std::string text;
  std::vector<LabelPart> elements;  ///< of a list
};

/// Bytes that are equal exactly for labels of the same structure. Cheap: shows nothing.
std::string identityOf(const BpLabel& label);

/// Whether that is the label's identity. A plain text is compared as it stands.
bool hasIdentity(const BpLabel& label, std::string_view identity);

/// All about a label, with its text from the catalogue and the dictionary of the session.
LabelData describe(const BpLabel& label);
/// The same with its identity, which is known already.
LabelData describe(const BpLabel& label, std::string identity);

/// A value of a split variable as a category of that variable's dimension.
LabelData describeSplitValue(VarIndex variable, const SplitValue& value);

/// What a reader sees of a part.
std::string textOf(const LabelPart& part);

/// The parts of a composite; none for other labels.
const std::vector<LabelPart>& partsOf(const BpLabel& label);

/// The catalogue's text for a key, or the key.
std::string catalogueText(const std::string& key);

}  // namespace workbench

/// Host side of the composite label.
struct BpComposite::Impl {
  std::string templateText;
  std::vector<workbench::LabelPart> parts;
  bool inList = false;

  /// Adds to the open list, or as an item of its own.
  void add(workbench::LabelPart part);
};
