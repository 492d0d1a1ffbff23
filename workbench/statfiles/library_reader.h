/// The one place that calls the library which knows the formats.
///
/// It is to be used in a process of its own (worker_process.h): the library trusts its files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace workbench {

enum class StatFormat : uint8_t {
  kDta,       ///< .dta
  kSas7bdat,  ///< .sas7bdat
  kXport,     ///< .xpt
  kCatalogue  ///< .sas7bcat: value labels alone
};

/// What is wanted of a file.
struct ReadingOrder {
  StatFormat format = StatFormat::kDta;
  int descriptor = -1;  ///< of a regular file
  uint64_t size = 0;    ///< its bytes
  bool cases = false;   ///< the cases; else what the file says of its columns, and value labels
  std::vector<size_t> columns = {};  ///< of the cases
};

/// Reads and writes messages (wire.h) to `output`. The last one is kEnd or kProblem.
void readByLibrary(const ReadingOrder& order, int output);

}  // namespace workbench
