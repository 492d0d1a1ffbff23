#include "workbench/session/session.h"

#include <stdexcept>

namespace workbench {
namespace {

thread_local Session* openSession = nullptr;

}  // namespace

Session& currentSession() {
  if (openSession == nullptr) throw std::logic_error("no session is open on this thread");
  return *openSession;
}

SessionScope::SessionScope(Session& session) {
  if (openSession != nullptr) throw std::logic_error("a session is already open on this thread");
  openSession = &session;
}

SessionScope::~SessionScope() { openSession = nullptr; }

}  // namespace workbench
