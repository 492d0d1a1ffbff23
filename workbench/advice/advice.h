/// What a colleague who knows the data would say about a command.
#pragma once

#include <vector>

#include "workbench/advice/case_tally.h"
#include "workbench/dataset/active_dataset.h"
#include "workbench/output/case_report.h"
#include "workbench/parser/command_facts.h"

namespace workbench {

/// All the advice there is, for a complete collector that looked at the values. One piece for each
/// code and variable; docs/advice.md describes the codes. In a session.
std::vector<Advice> adviceOn(const CommandFacts& facts, const ActiveDataset& dataset,
                             const CaseTally& cases);

}  // namespace workbench
