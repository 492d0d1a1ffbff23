/// What the module writes for its developers. All off; nothing in the module sets them. A debugger
/// or a test that links the module's objects may.
#pragma once

namespace proportions {

struct DiagnosticSwitches {
  static bool dumpSpecification;
  static bool dumpAnalysis;
  static bool probeNoncentrality;
};

}  // namespace proportions
