/// The intervals of a table as a drawing in an HTML report.
#pragma once

#include <string>

#include "workbench/output/document.h"
#include "workbench/render/render.h"
#include "workbench/render/writer.h"

namespace workbench {

/// Draws the first 200 intervals of a table on one common axis, as SVG that is as wide as the page
/// allows: a point and a bar each, the reference value as a line. Nothing for a table without
/// intervals. `id` is unique in the page.
void writeHtmlPlot(const Table& table, const DocumentProcedure& procedure,
                   const RenderOptions& options, const std::string& id, Writer& out);

}  // namespace workbench
