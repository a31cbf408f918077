// Hand-written behaviour of the session status: the state log's duplicate rule
// and eviction, and the creation of the log.
#include "ldp/status/LdpSession.h"

#include "zon/Assert.h"

namespace Ldp {

void LdpSessionStatus::checkInit() {
   if (!sessionStateLogEntryColl()) {
      sessionStateLogEntryCollIs(Zon::Name());
   }
}

// The newest entry is the one with the last key handed out. Should it have been
// deleted through the raw queue operations, the entry compared against is the
// all-zero one with an empty reason.
bool LdpSessionStateLogEntryColl::shouldAddSessionStateLogEntry(LdpSessionStateLogEntry const & entry) const {
   auto const & log = sessionStateLogEntry();
   if (log.empty()) {
      return true;
   }
   LdpSessionStateLogEntry const * newest = log.find(static_cast<std::uint32_t>(log.nextKey() - 1));
   if (newest == nullptr) [[unlikely]] {
      static LdpSessionStateLogEntry const none;
      newest = &none;
   }
   // The time stamp is left out: a transition that recurs is logged once.
   return !(newest->sessionState() == entry.sessionState() && newest->code() == entry.code() &&
            newest->reason() == entry.reason());
}

void LdpSessionStateLogEntryColl::internalAddLogEntry_(LdpSessionStateLogEntry const & entry) {
   if (!(sessionStateLogEntrys() <= maxSize())) [[unlikely]] {
      // Reported under the log's own source and line, wherever this code lives.
      Zon::assertionFailed("sessionStateLogEntrys() <= maxSize()", "LdpSession", 36);
   }
   if (sessionStateLogEntrys() == maxSize()) {
      sessionStateLogEntryDrop(); // the dequeue of the oldest, whose entry nobody needs
   }
   sessionStateLogEntryEnq(entry);
}

void LdpSessionStateLogEntryColl::addSessionStateLogEntry(LdpSessionStateLogEntry const & entry) {
   if (shouldAddSessionStateLogEntry(entry)) {
      internalAddLogEntry_(entry);
   }
}

} // namespace Ldp
