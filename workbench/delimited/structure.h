/// Where the characters of delimited text stand that divide it: the part of reading that looks at
/// every byte, with vector instructions where the machine has them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace workbench {

/// What bytes occur in a text.
struct TextSurvey {
  size_t lineFeeds = 0;
  size_t carriageReturns = 0;
  size_t pairs = 0;  ///< carriage returns with a line feed right after them
  bool quotes = false;
  bool zeros = false;
  bool beyondAscii = false;

  /// Lines as an editor counts them: LF, CRLF and CR alike.
  size_t lineEnds() const { return lineFeeds + carriageReturns - pairs; }
};

/// This many bytes past the end of the text may be read, too.
inline constexpr size_t kReadBeyond = 64;

/// One implementation; all of them give the same.
struct StructureFunctions {
  const char* name;
  /// `data[size]` counts as what follows the text.
  TextSurvey (*survey)(const char* data, size_t size);
  /// Writes the positions of delimiters and line ends (LF; CR without LF after it), and of double
  /// quotes when `quotes`, in ascending order, and returns how many there are. `positions` has room
  /// for size + kReadBeyond of them.
  size_t (*find)(const char* data, size_t size, char delimiter, bool quotes, uint32_t* positions);
};

/// The best one that this machine can run.
const StructureFunctions& structureFunctions();

/// All that this machine can run, the best one last.
std::vector<const StructureFunctions*> availableStructureFunctions();

}  // namespace workbench
