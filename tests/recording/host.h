/// A run of a recording host: open one, run the procedure, read the transcript.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tests/recording/script.h"
#include "tests/recording/transcript.h"

namespace recording {

/// The host's classes, for the names and numbers of their objects.
enum class Kind {
  kProcedureDataSource,
  kIterator,
  kObsVecMap,
  kParamDescriptor,
  kSubComDescriptor,
  kCommandDescriptor,
  kParamObj,
  kSubComObj,
  kCommandSpec,
  kTokenSequence,
  kUniversalParser,
  kVarSpecObj,
  kParserMessage,
  kInputMessage,
  kProcedure,
  kComposite,
  // The rest belong to the output document and live as long as it.
  kCellText,
  kTable,
  kDimension,
  kGroup,
  kCategory,
  kCount
};
const char* nameOf(Kind kind);

/// Names of what a procedure has made and not released yet, "BpComposite x2"; empty when nothing
/// is alive. Counted over all runs of the thread. What the output document owns is not listed.
std::vector<std::string> alive();

/// While one lives, allocations must not be made to fail: the recorder's own bookkeeping, which
/// runs in destructors too.
class FaultPause {
 public:
  FaultPause();
  ~FaultPause();
  FaultPause(const FaultPause&) = delete;
  FaultPause& operator=(const FaultPause&) = delete;
};
bool allocationFaultsPaused();

/// The open host of the calling thread.
class Host {
 public:
  /// Throws std::logic_error when one is open on this thread.
  explicit Host(const Script& script);
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  /// Throws std::logic_error when none is open.
  static Host& current();
  static Host* currentOrNull();

  const Script& script() const { return script_; }
  Transcript& transcript() { return transcript_; }
  bool fatal() const { return fatal_; }
  void raiseFatal() { fatal_ = true; }
  int64_t calls() const { return calls_; }
  /// How many of the script's faults took effect.
  int faultsInjected() const { return faultsInjected_; }
  /// The number of a new object of that class, from 1.
  int nextNumber(Kind kind) { return ++numbers_[static_cast<size_t>(kind)]; }
  /// Counts a case about to be read; false when a fault says that reading ends here.
  bool mayReadCase();

  /// Values of the split variables in the group of the chunk that was delivered last, and those
  /// that the last SplitChange looked up.
  std::vector<Value> liveSplit;
  std::vector<Value> rememberedSplit;
  /// Owned state of the parts of the host.
  std::shared_ptr<void> output;

 private:
  friend class Call;
  friend class Quiet;
  /// Counts a call and carries out the faults that fall on it. Answers the scripted answer, if any.
  const std::string* enter(const std::string& operation, const std::string& text, bool mayThrow);

  Script script_;
  Transcript transcript_;
  std::array<int, static_cast<size_t>(Kind::kCount)> numbers_{};
  std::map<std::string, int64_t> occurrences_;
  int64_t calls_ = 0;
  int64_t casesRead_ = 0;
  int faultsInjected_ = 0;
  int quiet_ = 0;
  bool fatal_ = false;
};

/// While one lives, calls are neither recorded nor counted: the host's own use of its interfaces.
class Quiet {
 public:
  Quiet() { ++Host::current().quiet_; }
  ~Quiet() { --Host::current().quiet_; }
  Quiet(const Quiet&) = delete;
  Quiet& operator=(const Quiet&) = delete;
};

/// The life of one numbered object: a member of every class's state. Its end is recorded.
class Life {
 public:
  explicit Life(Kind kind);
  ~Life();
  Life(const Life&) = delete;
  Life& operator=(const Life&) = delete;
  Kind kind() const { return kind_; }
  std::string name() const;  ///< "BpComposite#3"

 private:
  Kind kind_;
  int number_;
};
inline std::string shown(const Life& life) { return life.name(); }

/// One call of the host: constructed on entry, written to the transcript with its answer.
class Call {
 public:
  enum class May { kThrow, kNotThrow };

  template <class... Args>
  Call(const Life& self, const char* operation, const Args&... args)
      : Call(May::kThrow, &self, operation, args...) {}
  template <class... Args>
  Call(const char* function, May may, const Args&... args)
      : Call(may, nullptr, function, args...) {}

  Call(const Call&) = delete;
  Call& operator=(const Call&) = delete;

  /// What the script wants this call to answer, or null.
  const std::string* answer() const { return answer_; }
  /// Ends a call without an answer.
  void done() { write(""); }
  /// Ends the call with its answer, and gives that back.
  template <class Result>
  Result gives(Result result) {
    const FaultPause pause;
    write(" = " + shown(result));
    return result;
  }
  /// Ends the call with an answer that is shown in words.
  void givesText(const std::string& text) { write(" = " + text); }

 private:
  template <class... Args>
  Call(May may, const Life* self, const char* operation, const Args&... args) {
    const FaultPause pause;
    begin(self, operation, joined({shown(args)...}));
    answer_ = Host::current().enter(operation_, text_, may == May::kThrow);
  }
  void begin(const Life* self, const char* operation, const std::string& arguments);
  static std::string joined(const std::vector<std::string>& parts);
  void write(const std::string& ending);

  std::string operation_;
  std::string text_;
  const std::string* answer_ = nullptr;
};

/// A scripted answer read as a flag, a number or a text; `otherwise` when there is none.
bool flagOr(const Call& call, bool otherwise);
int32_t numberOr(const Call& call, int32_t otherwise);

}  // namespace recording
