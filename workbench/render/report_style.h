/// The style of HTML reports, which report.css holds.
#pragma once

namespace workbench {

extern const char* const kReportStyle;

}  // namespace workbench
