/// The fields of a row that tell what it is about.
#pragma once

#include <string>
#include <string_view>

#include "workbench/render/writer.h"
#include "workbench/results/known_labels.h"
#include "workbench/results/result_rows.h"

namespace workbench {

/// What a label says of its variable: the values, and how they are compared.
std::string csvCondition(const LabelData& label);

/// The name of a design.
std::string_view csvNameOf(Design design);

/// Writes the fields from `variable` to `method`, a comma before each. `grouping` is the name of
/// the grouping variable, empty without one.
void writeCsvSubject(const ResultSubject& subject, const std::string& grouping, Writer& out);

}  // namespace workbench
