#include "workbench/results/method_pages.h"

#include <algorithm>

#include "workbench/manual/manual.h"

namespace workbench {
namespace {

const ManualDesign& manualOf(Design design) { return manualDesigns()[static_cast<size_t>(design)]; }

}  // namespace

std::string_view notationOf(Design design) { return manualOf(design).notation; }

std::string_view describedMethod(const Method& method) {
  const auto& methods = manualOf(method.table.design).methods;
  const bool isInterval = method.table.kind == ResultKind::kIntervals;
  const auto found = std::find_if(methods.begin(), methods.end(), [&](const ManualMethod& entry) {
    return entry.keyword == method.keyword && entry.isInterval == isInterval;
  });
  return found == methods.end() ? std::string_view() : found->text;
}

}  // namespace workbench
