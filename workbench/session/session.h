/// What the host application has open while a command runs. Host objects made by a procedure attach
/// to the session of their thread; nothing of a session survives it.
#pragma once

#include <cstdio>

namespace workbench {

class ActiveDataset;
class CaseObserver;
class Catalogue;
struct CommandFacts;
class CommandTokens;
class OutputDocument;

/// All members are borrowed from whoever opened the session and outlive it.
struct Session {
  ActiveDataset* dataset = nullptr;
  const CommandTokens* command = nullptr;  ///< the command that is running
  OutputDocument* document = nullptr;
  const Catalogue* catalogue = nullptr;
  CommandFacts* facts = nullptr;     ///< filled when the command was parsed; may be null
  CaseObserver* observer = nullptr;  ///< sees the next pass over the cases, and no other
  bool oneMethod = false;            ///< one test and one interval do for what is wanted of a run
  std::FILE* display = stdout;       ///< where the plain text display writes
};

/// The session of the calling thread. Throws std::logic_error when none is open.
Session& currentSession();

/// Opens a session for the calling thread for as long as it lives. Throws std::logic_error when one
/// is open.
class SessionScope {
 public:
  explicit SessionScope(Session& session);
  ~SessionScope();
  SessionScope(const SessionScope&) = delete;
  SessionScope& operator=(const SessionScope&) = delete;
};

}  // namespace workbench
