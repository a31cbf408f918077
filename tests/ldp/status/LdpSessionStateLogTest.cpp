// The session state log: the duplicate rule, eviction at ten, key continuity
// across evictions, dequeues and an emptied log, what its observers hear, the
// raw enqueue on a full ring, and the size invariant.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "ldp/status/LdpSession.h"
#include "support/DeathText.h"
#include "zon/Exception.h"
#include "zon/Reflect.h"

namespace {

using namespace Ldp;
using Records = std::vector<std::string>;

// Distinct transitions by letter. 'a' and 'b' differ only in the state, 'a' and
// 'c' only in the code, 'a' and 'd' only in the reason; 'z' is the all-zero entry.
LdpSessionStateLogEntry entry(char letter, double when = 1.0) {
   switch (letter) {
    case 'a':
      return LdpSessionStateLogEntry(when, SessionState::stateOpenSent, LdpStatusCode::success, "a");
    case 'b':
      return LdpSessionStateLogEntry(when, SessionState::stateOperational, LdpStatusCode::success, "a");
    case 'c':
      return LdpSessionStateLogEntry(when, SessionState::stateOpenSent, LdpStatusCode::shutdown, "a");
    case 'd':
      return LdpSessionStateLogEntry(when, SessionState::stateOpenSent, LdpStatusCode::success, "d");
    case 'z':
      return LdpSessionStateLogEntry();
    default:
      return LdpSessionStateLogEntry(when, SessionState::stateNonExist, LdpStatusCode::holdTimerExpired,
                                     std::string(1, letter));
   }
}

// The log as "key:reason" items, oldest first; the zero entry shows as "key:".
std::vector<std::string> contents(LdpSessionStateLogEntryColl const & log) {
   std::vector<std::string> out;
   for (auto const & [key, e] : log.sessionStateLogEntry()) {
      std::string item = std::to_string(key) + ":" + e.reason();
      if (e.reason() == "a" && e.sessionState() == SessionState::stateOperational) {
         item += "/b";
      } else if (e.reason() == "a" && e.code() == LdpStatusCode::shutdown) {
         item += "/c";
      }
      out.push_back(item);
   }
   return out;
}

// One step: '-' dequeues; 'x' deletes the newest key by the raw operation; '!'
// empties the log; any other letter adds that entry (time stamp = step number)
// through addSessionStateLogEntry.
void run(LdpSessionStateLogEntryColl & log, std::string const & steps) {
   double when = 0.0;
   for (char s : steps) {
      when += 1.0;
      if (s == '-') {
         log.sessionStateLogEntryDeq();
      } else if (s == 'x') {
         log.sessionStateLogEntryDel(*log.sessionStateLogEntry().tailKey());
      } else if (s == '!') {
         log.sessionStateLogEntryDelAll();
      } else {
         log.addSessionStateLogEntry(entry(s, when));
      }
   }
}

TEST(LdpSessionStateLog, AddSequences) {
   using Items = std::vector<std::string>;
   struct Row {
      char const * what;
      char const * steps;
      Items expected;
   };
   Row const rows[] = {
      {"empty log", "", {}},
      {"repeat of the newest is logged once", "aa", {"0:a"}},
      {"the time stamp is not compared", "aaaa", {"0:a"}},
      {"A-B-A is three entries", "aba", {"0:a", "1:a/b", "2:a"}},
      {"the code counts", "ac", {"0:a", "1:a/c"}},
      {"the reason counts", "ad", {"0:a", "1:d"}},
      {"only the newest is compared", "abab", {"0:a", "1:a/b", "2:a", "3:a/b"}},
      {"ten fit", "efghijklmn", {"0:e", "1:f", "2:g", "3:h", "4:i", "5:j", "6:k", "7:l", "8:m", "9:n"}},
      {"the eleventh evicts the first, keys go on at 10", "efghijklmno",
       {"1:f", "2:g", "3:h", "4:i", "5:j", "6:k", "7:l", "8:m", "9:n", "10:o"}},
      {"twelve alternating", "abababababab",
       {"2:a", "3:a/b", "4:a", "5:a/b", "6:a", "7:a/b", "8:a", "9:a/b", "10:a", "11:a/b"}},
      {"a duplicate of the newest does not evict", "efghijklmnn",
       {"0:e", "1:f", "2:g", "3:h", "4:i", "5:j", "6:k", "7:l", "8:m", "9:n"}},
      {"dequeue from empty changes nothing", "--a", {"0:a"}},
      {"dequeue takes the oldest", "abe-", {"1:a/b", "2:e"}},
      {"emptied by dequeues and refilled: keys are not reused", "ab--a", {"2:a"}},
      {"emptied by DelAll and refilled", "abe!e", {"3:e"}},
      {"the newest deleted: compared against the zero entry", "abxb", {"0:a", "2:a/b"}},
      {"the newest deleted: the older entry is not compared", "abxa", {"0:a", "2:a"}},
   };
   for (Row const & r : rows) {
      auto log = Zon::makePtr<LdpSessionStateLogEntryColl>("");
      run(*log, r.steps);
      EXPECT_EQ(contents(*log), r.expected) << r.what << " (" << r.steps << ")";
   }
}

TEST(LdpSessionStateLog, TheZeroEntryIsRefusedAfterTheNewestWasDeleted) {
   auto log = Zon::makePtr<LdpSessionStateLogEntryColl>("");
   run(*log, "ab");
   log->sessionStateLogEntryDel(1);
   EXPECT_FALSE(log->shouldAddSessionStateLogEntry(entry('z')));
   EXPECT_TRUE(log->shouldAddSessionStateLogEntry(entry('a')));
   log->sessionStateLogEntryDelAll();
   EXPECT_TRUE(log->shouldAddSessionStateLogEntry(entry('z'))) << "an empty log takes anything";
}

TEST(LdpSessionStateLog, DequeueReturnsTheEntryOrTheZeroEntry) {
   auto log = Zon::makePtr<LdpSessionStateLogEntryColl>("");
   EXPECT_EQ(log->sessionStateLogEntryDeq(), LdpSessionStateLogEntry());
   log->addSessionStateLogEntry(entry('e', 7.5));
   EXPECT_EQ(log->sessionStateLogEntryDeq(), entry('e', 7.5));
   EXPECT_EQ(log->sessionStateLogEntrys(), 0u);
   EXPECT_EQ(log->sessionStateLogEntryDeq(), LdpSessionStateLogEntry());
}

TEST(LdpSessionStateLog, EntryEqualityAndTextForm) {
   LdpSessionStateLogEntry const e(12.5, SessionState::stateOperational, LdpStatusCode::holdTimerExpired, "hold");
   EXPECT_EQ(e.stringValue(), "Value('Ldp::LdpSessionStateLogEntry', ** {'timeStamp': 12.5, "
                              "'sessionState': stateOperational, 'code': holdTimerExpired, 'reason': 'hold'})");
   EXPECT_EQ(LdpSessionStateLogEntry().stringValue(),
             "Value('Ldp::LdpSessionStateLogEntry', ** {'timeStamp': 0.0, 'sessionState': stateUnknown, "
             "'code': success, 'reason': ''})");
   // Equality compares all four fields, the time stamp included.
   EXPECT_NE(entry('a', 1.0), entry('a', 2.0));
   EXPECT_NE(entry('a'), entry('b'));
   EXPECT_NE(entry('a'), entry('c'));
   EXPECT_NE(entry('a'), entry('d'));
   EXPECT_EQ(entry('a', 3.0), entry('a', 3.0));
}

// What observers of the log hear, step by step on one log: the key of each entry
// added, of the entry evicted by the eleventh, of a dequeued entry; nothing for a
// duplicate, a dequeue from an empty log or a refused raw enqueue.
TEST(LdpSessionStateLog, Notifications) {
   auto log = Zon::makePtr<LdpSessionStateLogEntryColl>("");
   Zon::AttrRecorder r(log.ptr());
   struct Row {
      char const * steps;
      Records heard;
   };
   Row const rows[] = {
      {"a", {"sessionStateLogEntry[0]"}},
      {"a", {}},
      {"bcdefghij", {"sessionStateLogEntry[1]", "sessionStateLogEntry[2]", "sessionStateLogEntry[3]",
                     "sessionStateLogEntry[4]", "sessionStateLogEntry[5]", "sessionStateLogEntry[6]",
                     "sessionStateLogEntry[7]", "sessionStateLogEntry[8]", "sessionStateLogEntry[9]"}},
      {"k", {"sessionStateLogEntry[0]", "sessionStateLogEntry[10]"}}, // the eleventh evicts key 0
      {"k", {}},
      {"-", {"sessionStateLogEntry[1]"}},
      {"x", {"sessionStateLogEntry[10]"}},
      {"!", {"sessionStateLogEntry[2]", "sessionStateLogEntry[3]", "sessionStateLogEntry[4]",
             "sessionStateLogEntry[5]", "sessionStateLogEntry[6]", "sessionStateLogEntry[7]",
             "sessionStateLogEntry[8]", "sessionStateLogEntry[9]"}},
      {"-", {}},
      {"l", {"sessionStateLogEntry[11]"}},
   };
   for (Row const & row : rows) {
      run(*log, row.steps);
      EXPECT_EQ(r.take(), row.heard) << row.steps;
   }
}

// The raw enqueue does not evict; the ring behind the log holds 16 entries, and a
// raw enqueue beyond them is refused with the log left as it was.
TEST(LdpSessionStateLog, RawEnqueueOnAFullRingIsRefused) {
   auto log = Zon::makePtr<LdpSessionStateLogEntryColl>("");
   for (char c = 'e'; c < 'e' + 16; ++c) {
      log->sessionStateLogEntryEnq(entry(c));
   }
   std::vector<std::string> const full = contents(*log);
   ASSERT_EQ(full.size(), 16u);
   EXPECT_EQ(full.front(), "0:e");
   Zon::AttrRecorder r(log.ptr());
   try {
      log->sessionStateLogEntryEnq(entry('a'));
      ADD_FAILURE() << "a seventeenth entry was taken";
   } catch (Zon::RangeException const & e) {
      EXPECT_STREQ(e.what(), "bounded queue full (capacity 16)");
   }
   EXPECT_EQ(contents(*log), full);
   EXPECT_TRUE(r.records().empty());
   log->sessionStateLogEntryDeq();
   EXPECT_EQ(log->sessionStateLogEntryEnq(entry('a')), 16u) << "the refused enqueue took no key";
}

TEST(LdpSessionStateLogDeathTest, MoreThanMaxSizeEntriesIsABrokenInvariant) {
   auto log = Zon::makePtr<LdpSessionStateLogEntryColl>("");
   for (char c = 'e'; c < 'e' + 11; ++c) {
      log->sessionStateLogEntryEnq(entry(c)); // the raw operation does not evict
   }
   EXPECT_DEATH(log->addSessionStateLogEntry(entry('a')),
                "at LdpSession:36" + TestSupport::literal("sessionStateLogEntrys() <= maxSize()"));
}

} // namespace
