/// Compressed files, checked as a whole before the engine reads them: it would take one that was
/// cut off for a shorter one.
#pragma once

#include <atomic>
#include <string>

namespace workbench {

/// Decompresses a file to its end and forgets what it holds. `kind` is "gzip" or "zstd"; `label`
/// names the file in messages. Throws DataError when the file is damaged, cut off or not of its
/// kind, Interrupted when `*interrupted` becomes true.
void checkCompressedFile(const std::string& file, const std::string& kind, const std::string& label,
                         const std::atomic<bool>* interrupted);

}  // namespace workbench
