/// The intervals of a table as bars of characters.
#pragma once

#include "workbench/output/document.h"
#include "workbench/render/render.h"
#include "workbench/render/writer.h"

namespace workbench {

/// Writes every interval of a table on one common axis, with the reference value as a line. Nothing
/// for a table without intervals. No line is wider than options.width.
void writeTextPlot(const Table& table, const DocumentProcedure& procedure,
                   const RenderOptions& options, Writer& out);

}  // namespace workbench
