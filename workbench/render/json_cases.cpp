#include <fmt/format.h>

#include <string>

#include "workbench/render/json_text.h"

namespace workbench {
namespace {

void writeTotals(const CaseReport& report, const CaseTotals& totals, Writer& out) {
  out << fmt::format("\"read\":{},\"droppedByWeight\":{}", totals.read, totals.droppedByWeight);
  if (report.weighted) {
    out << ",\"weight\":" << jsonNumber(totals.weight)
        << ",\"roundedWeight\":" << jsonNumber(totals.roundedWeight);
  }
  out << fmt::format(",\"complete\":{},\"variables\":[", totals.complete);
  for (size_t i = 0; i < totals.variables.size(); ++i) {
    const VariableCases& cases = totals.variables[i];
    out << (i == 0 ? "" : ",") << "{\"name\":" << jsonString(report.variables[i])
        << fmt::format(",\"valid\":{},\"userMissing\":{},\"systemMissing\":{}}}", cases.valid,
                       cases.userMissing, cases.systemMissing);
  }
  out << ']';
}

}  // namespace

void writeJsonCases(const CaseReport& report, Writer& out) {
  out << '{';
  writeTotals(report, report.all, out);
  if (!report.splitVariables.empty()) {
    out << ",\"groups\":[";
    for (size_t g = 0; g < report.groups.size(); ++g) {
      ShownSplit split;
      for (size_t i = 0; i < report.splitVariables.size(); ++i) {
        split.emplace_back(report.splitVariables[i], report.groups[g].split[i]);
      }
      out << (g == 0 ? "\n" : ",\n") << "{\"split\":" << splitObject(split) << ',';
      writeTotals(report, report.groups[g].cases, out);
      out << '}';
    }
    out << ']';
  }
  out << '}';
}

void writeJsonAdvice(const Advice& advice, Writer& out) {
  out << "{\"code\":" << jsonString(advice.code);
  if (!advice.variable.empty()) out << ",\"variable\":" << jsonString(advice.variable);
  out << ",\"text\":" << jsonString(advice.text) << '}';
}

}  // namespace workbench
