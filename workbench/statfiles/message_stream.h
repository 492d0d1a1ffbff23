/// The messages of the process that reads a file, and what becomes of it.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "workbench/statfiles/stat_file.h"
#include "workbench/statfiles/wire.h"
#include "workbench/statfiles/worker_process.h"

namespace workbench {

class MessageStream {
 public:
  /// Opens the file and starts the process. `nameOf` names a column in messages. The source
  /// outlives the stream. Throws DataError.
  MessageStream(const StatSource& source, bool cases, std::vector<size_t> columns,
                std::function<std::string(size_t)> nameOf);

  /// The next message; its bytes are valid until the one after it. False after kEnd. Throws
  /// DataError when the file could not be read to its end, and Interrupted.
  bool next(wire::Kind& kind, std::string_view& message);

  /// For a message that is not what messages are.
  [[noreturn]] void refuseMalformed() const;

 private:
  std::string_view take(size_t count);
  [[noreturn]] void refuseUnended();
  [[noreturn]] void refuseProblem(std::string_view message) const;

  const StatSource& source_;
  std::function<std::string(size_t)> nameOf_;
  std::unique_ptr<WorkerProcess> process_;
  std::string buffer_;
  size_t begin_ = 0;
  size_t end_ = 0;
};

}  // namespace workbench
