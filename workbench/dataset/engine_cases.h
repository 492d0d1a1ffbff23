/// Cases of tables that the data engine reads.
#pragma once

#include <memory>

#include "workbench/dataset/case_source.h"
#include "workbench/engine/relation.h"
#include "workbench/values/field.h"

namespace workbench {

/// Of the rules only the texts for missing values matter here, and only when they were given.
std::unique_ptr<CaseSource> openEngineCases(std::unique_ptr<Relation> relation,
                                            const FieldRules& rules);

}  // namespace workbench
