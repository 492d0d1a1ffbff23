/// The messages of the process that reads a file, and what becomes of it.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/statfiles/stat_file.h"
#include "workbench/statfiles/wire.h"
#include "workbench/statfiles/worker_process.h"

namespace workbench {

class MessageStream {
 public:
  /// What the process writes. The source outlives the stream; `head` names columns in messages, may
  /// be null, else it outlives the stream, too.
  MessageStream(const StatSource& source, const StatHead* head,
                std::unique_ptr<WorkerProcess> process);

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
  const StatHead* head_;
  std::unique_ptr<WorkerProcess> process_;
  std::string buffer_;
  size_t begin_ = 0;
  size_t end_ = 0;
};

/// Opens the file and starts a process that reads its head, or the cases of these columns. Throws
/// DataError.
std::unique_ptr<WorkerProcess> startReading(const StatSource& source, bool cases,
                                            std::vector<size_t> columns);

/// Puts the head together. Throws DataError and Interrupted.
StatHead takeHead(const StatSource& source, MessageStream& messages);

}  // namespace workbench
