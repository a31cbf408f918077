// Behaviour of the generator's features for the status model (GenFeatures.zon):
// new… that replaces, bounded queues, references to entities owned elsewhere,
// getter constants and unnamed entities, and elements and children whose
// allocation fails.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "support/FailingNothrowNew.h"
#include "support/ModelTables.h"
#include "tests/gen/GenFeatures.h"
#include "zon/Exception.h"

namespace GenTest {

// The constructor hooks that GenFeatures.zon declares.
void Table::constructed() { madeIs(static_cast<std::uint8_t>(made() + 1)); }
void Shelf::constructed() { tableIs("first", 1); }

} // namespace GenTest

namespace {

using GenTest::Board;
using GenTest::Peer;
using LdpTest::expectAttrs;
using LdpTest::Records;

struct Features : ::testing::Test {
   Zon::Ptr<Board> b = Zon::makePtr<Board>("b");
   Zon::AttrRecorder r{b.ptr()};
};

TEST_F(Features, NewReplacesWhereTheCollectionSaysSo) {
   Zon::Ptr<Peer> first = b->newPeer(1, "a");
   first->stateIs(5);
   EXPECT_EQ(b->peerIs(1, "a"), first); // create-or-get keeps it
   Zon::Ptr<Peer> second = b->newPeer(1, "a");
   EXPECT_NE(second, first);
   EXPECT_EQ(b->peer(1), second);
   EXPECT_EQ(second->state(), 0); // a fresh element
   EXPECT_EQ(first->parent(), nullptr);
   EXPECT_EQ(second->parent(), b.ptr());
   // A replacing new does not compare the other parameters.
   EXPECT_EQ(b->newPeer(1, "z")->owner(), "z");
   EXPECT_EQ(r.take(), (Records{"peer[1]", "peer[1]", "peer[1]"}));

   Zon::Ptr<Peer> kept = b->newKeptPeer(2, "a");
   kept->stateIs(3);
   EXPECT_EQ(b->newKeptPeer(2, "a"), kept); // the default: create-or-get
   EXPECT_EQ(kept->state(), 3);
   EXPECT_EQ(r.take(), Records{"keptPeer[2]"});
}

TEST_F(Features, BoundedQueueRefusesWhenFullAndNeverReusesKeys) {
   for (std::uint32_t v = 10; v < 13; ++v) {
      b->historyEnq(v);
   }
   EXPECT_EQ(r.take(), (Records{"history[0]", "history[1]", "history[2]"}));
   // A raw enqueue on a full ring loses nothing: it is refused and nobody hears.
   try {
      b->historyEnq(13);
      ADD_FAILURE() << "a full ring took a fourth element";
   } catch (Zon::RangeException const & e) {
      EXPECT_STREQ(e.what(), "bounded queue full (capacity 3)");
   }
   expectAttrs(*b, {{"history", "{0: 10, 1: 11, 2: 12}"}}, LdpTest::Coverage::some);
   EXPECT_TRUE(r.records().empty());
   b->historyDrop(); // the owner makes room: the oldest goes, its key told
   EXPECT_EQ(b->historyEnq(13), 3u); // the refused enqueue took no key
   EXPECT_EQ(b->historyDeq(), 11u);
   b->historyDel(3);
   b->historyDel(3); // absent: nobody hears
   EXPECT_EQ(b->historyDeq(), 12u);
   EXPECT_EQ(b->historyDeq(), 0u); // empty: the default value, no notification
   b->historyDrop();                 // empty: nobody hears
   EXPECT_EQ(b->history().headKey(), 4u);
   EXPECT_EQ(b->historyEnq(20), 4u); // keys continue after an emptied queue
   b->historyDelAll();
   EXPECT_EQ(b->historyEnq(21), 5u);
   EXPECT_EQ(r.take(), (Records{"history[0]", "history[3]", "history[1]", "history[3]", "history[2]", "history[4]",
                                "history[4]", "history[5]"}));
   EXPECT_EQ(b->history().capacity(), 3u);
   EXPECT_EQ(b->history().dequeues(), 3u); // the drop and two dequeues, not the deletions
}

TEST_F(Features, ReferencesKeepTheirEntitiesAndTheirParents) {
   auto owner = Zon::makePtr<Board>("owner");
   Zon::Ptr<Peer> p = owner->keptPeerIs(7, "o");
   b->watchedIs(p);
   b->watchedIs(p); // the same entity again: nobody hears
   EXPECT_EQ(b->watched(7), p);
   EXPECT_EQ(p->parent(), owner.ptr()); // untouched by the reference
   Zon::Ptr<Peer> other = Zon::makePtr<Peer>(7, "x");
   b->newWatched(other); // another entity with the same key replaces the first
   EXPECT_EQ(b->watched(7), other);
   EXPECT_EQ(other->parent(), nullptr);
   owner->keptPeerDel(7);
   b->watchedDel(7);
   EXPECT_EQ(b->watcheds(), 0u);
   EXPECT_EQ(r.take(), (Records{"watched[7]", "watched[7]", "watched[7]"}));
   try {
      b->watchedIs(nullptr);
      ADD_FAILURE() << "a null reference was stored";
   } catch (Zon::RangeException const & e) {
      EXPECT_STREQ(e.what(), "null _watched parameter to mutator for GenTest::Board::watched not allowed\"");
   }
   EXPECT_THROW(b->sortedIs(nullptr), Zon::RangeException);
   EXPECT_TRUE(r.records().empty());
   // A reference keeps its entity alive after its owner let it go.
   Zon::Ptr<Peer> held = Zon::makePtr<Peer>(8, "h");
   b->sortedIs(held);
   b->sortedIs(Zon::makePtr<Peer>(3, "h"));
   EXPECT_EQ(held->references(), 2u);
   held = nullptr;
   ASSERT_TRUE(b->sorted(8));
   expectAttrs(*b, {{"sorted", "{3, 8}"}}, LdpTest::Coverage::some);
}

TEST(GenFeatures, ChildrenWithParametersAndConstructorHooks) {
   auto shelf = Zon::makePtr<GenTest::Shelf>("shelf");
   Zon::Ptr<GenTest::Table> first = shelf->table(); // made by the hook
   ASSERT_TRUE(first);
   EXPECT_EQ(first->made(), 1);
   EXPECT_EQ(first->parent(), shelf.ptr());
   Zon::AttrRecorder r(shelf.ptr());
   EXPECT_EQ(shelf->tableIs("first", 1), first); // same name and parameters: kept
   Zon::Ptr<GenTest::Table> other = shelf->tableIs("first", 2); // another owner: a fresh child
   EXPECT_NE(other, first);
   EXPECT_EQ(first->parent(), nullptr);
   EXPECT_EQ(other->owner(), 2u);
   Zon::Ptr<GenTest::Table> second = shelf->tableIs("second", 2); // another name: a fresh child
   EXPECT_NE(second, other);
   EXPECT_NE(shelf->newTable("second", 2), second); // new always makes a fresh one
   EXPECT_EQ(r.take(), (Records{"table", "table", "table"}));
   expectAttrs(*shelf->table(), {{"owner", "2"}, {"made", "1"}});
   // Kept by its name alone: another owner returns the child there is.
   Zon::Ptr<GenTest::Table> spare = shelf->spareIs("spare", 1);
   EXPECT_EQ(shelf->spareIs("spare", 2), spare);
   EXPECT_EQ(spare->owner(), 1u);
   Zon::Ptr<GenTest::Table> renamed = shelf->spareIs("other", 1);
   EXPECT_NE(renamed, spare);
   EXPECT_EQ(spare->parent(), nullptr);
   EXPECT_EQ(r.take(), (Records{"spare", "spare"}));
}

// Elements and children without a factory are allocated as the factories
// allocate: a heap that has run out gives "null ValidPtr", not std::bad_alloc,
// and leaves the collection and the child as they were, with nobody told.
TEST_F(Features, AFailedAllocationIsNullValidPtrAndChangesNothing) {
   auto shelf = Zon::makePtr<GenTest::Shelf>("shelf");
   Zon::Ptr<GenTest::Table> const table = shelf->table();
   Zon::AttrRecorder onShelf(shelf.ptr());
   std::vector<std::function<void()>> const makers = {
      [&] { b->peerIs(1, "one"); },         [&] { b->newPeer(2, "two"); },
      [&] { b->keptPeerIs(3, "three"); },   [&] { shelf->tableIs("other", 2); },
      [&] { shelf->newTable("first", 1); }, [&] { shelf->spareIs("spare", 1); },
   };
   std::vector<std::string> texts;
   {
      LdpTest::NothrowAllocationFailure failing;
      for (auto const & make : makers) {
         try {
            make();
            texts.emplace_back("made");
         } catch (Zon::RangeException const & e) {
            texts.emplace_back(e.what());
         }
      }
   }
   EXPECT_EQ(texts, std::vector<std::string>(makers.size(), "null ValidPtr"));
   EXPECT_EQ(b->peers(), 0u);
   EXPECT_EQ(b->keptPeers(), 0u);
   EXPECT_EQ(shelf->table(), table);
   EXPECT_EQ(table->parent(), shelf.ptr());
   EXPECT_FALSE(shelf->spare());
   EXPECT_TRUE(r.records().empty());
   EXPECT_TRUE(onShelf.records().empty());
   EXPECT_TRUE(b->peerIs(1, "one")); // the heap is back
}

TEST(GenFeatures, GetterConstantsAndUnnamedEntities) {
   static_assert(Board::maxSize() == 3);
   EXPECT_EQ(Board::homeNs(), Vorin::NamespaceName::defaultNamespace());
   expectAttrs(*Zon::makePtr<Board>("b"), {{"peer", "{}"},
                                          {"keptPeer", "{}"},
                                          {"history", "{}"},
                                          {"watched", "{}"},
                                          {"sorted", "{}"},
                                          {"maxSize", "3"},
                                          {"homeNs", "default"}});
   Zon::Ptr<GenTest::Message> m = Zon::makePtr<GenTest::Message>(5, 10);
   EXPECT_EQ(m->name(), "");
   EXPECT_EQ(m->sender(), 5u);
   expectAttrs(*m, {{"sender", "5"}, {"offset", "10"}, {"priority", "0"}});
}

} // namespace
