/// Rows of the tables that the host adds to a procedure's: bootstrap and pooled imputations.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/output/output_document.h"
#include "workbench/render/writer.h"

namespace workbench {

/// True for a table that writeEstimates can write.
bool isEstimateTable(const Table& table);

/// The columns that the document's tables of this kind need besides all others; none without any.
std::vector<std::string_view> estimateColumns(const OutputDocument& document);

/// Writes the rows of a table: of each the fields of `command` to `upper`, then `columns`, then the
/// note. There are `splitCount` columns of split variables.
void writeEstimates(const Table& table, const DocumentProcedure& procedure,
                    const std::string& command, size_t splitCount, const std::string& grouping,
                    const std::vector<std::string_view>& columns, Writer& out);

}  // namespace workbench
