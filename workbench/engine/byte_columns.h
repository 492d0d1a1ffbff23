/// Columns of files that hold nothing but small whole numbers.
#pragma once

#include <cstddef>
#include <vector>

#include "workbench/engine/relation.h"

namespace workbench {

/// Of each of these columns (positions in the relation's), whether all its values fit a byte, -128
/// to 127, as far as the statistics of its files tell; they may be wrong, and of hundreds of
/// columns they are not asked. Throws EngineError.
std::vector<bool> fitBytes(Relation& relation, const std::vector<size_t>& columns);

}  // namespace workbench
