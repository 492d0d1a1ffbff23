#include "workbench/render/html_methods.h"

#include <algorithm>
#include <string>
#include <vector>

#include "workbench/manual/manual.h"
#include "workbench/render/html_text.h"
#include "workbench/results/method_pages.h"

namespace workbench {
namespace {

struct UsedMethod {
  const Method* method;
  std::string label;
};

/// The methods of a table's rows.
void addMethods(const Table& table, std::vector<UsedMethod>& used) {
  const auto kind = tableKindOf(table.title().key);
  if (!kind || kind->kind == ResultKind::kStatistics) return;
  for (const Dimension& dimension : table.dimensions()) {
    if (dimension.isSplit) continue;
    for (const DimensionNode& node : dimension.nodes()) {
      const Method* method = findMethod(*kind, node.label.key);
      const bool isKnown = std::any_of(used.begin(), used.end(), [&](const UsedMethod& entry) {
        return entry.method == method;
      });
      if (method != nullptr && !isKnown) used.push_back({method, node.label.text});
    }
  }
}

}  // namespace

void writeHtmlMethods(const DocumentProcedure& procedure, Writer& out) {
  std::vector<UsedMethod> used;
  for (const auto& table : procedure.tables) addMethods(*table, used);
  if (used.empty()) return;
  out << "<section class=\"methods\">\n<h3>Methods</h3>\n"
      << htmlFromMarkdown(notationOf(used.front().method->table.design))
      << htmlFromMarkdown(sharedNotation()) << "\n<dl>\n";
  for (const auto& [method, label] : used) {
    out << "<dt>" << htmlText(label) << " <code>" << method->keyword << "</code></dt><dd>"
        << htmlFromMarkdown(describedMethod(*method)) << "</dd>\n";
  }
  out << "</dl>\n</section>\n";
}

}  // namespace workbench
