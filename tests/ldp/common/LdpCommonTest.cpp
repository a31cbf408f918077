// The message pipes: strict alternation of write and take-out, the full-pipe
// assertion, a message that outlives its pipe and writer, and the pipe
// collections.
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "ldp/common/LdpCommon.h"
#include "support/DeathText.h"

namespace {

using namespace Ldp;

LdpIdentifier const sender(Vorin::IpAddr(10, 0, 0, 1), 0);

Zon::Ptr<LdpMsg> message(std::uint16_t offset, std::vector<std::uint8_t> const & bytes = {0, 1, 2, 3}) {
   return Zon::makePtr<LdpMsg>(sender, Vorin::Pkt::fromBytes(bytes), offset);
}

TEST(LdpMsg, HoldsWhatItWasMadeFrom) {
   auto pkt = Vorin::Pkt::fromBytes(std::vector<std::uint8_t>{1, 2, 3});
   auto m = Zon::makePtr<LdpMsg>(sender, pkt, 2);
   EXPECT_EQ(m->ldpIdentifier(), sender);
   EXPECT_EQ(m->pkt(), pkt);
   EXPECT_EQ(m->offset(), 2);
   EXPECT_EQ(m->srcIpAddr(), Vorin::IpAddr());
   EXPECT_EQ(m->priority(), 0);
   m->srcIpAddrIs(Vorin::IpAddr(192, 0, 2, 1));
   m->priorityIs(6);
   EXPECT_EQ(m->srcIpAddr(), Vorin::IpAddr(192, 0, 2, 1));
   EXPECT_EQ(m->priority(), 6);
}

TEST(LdpMsgPipe, WriterAndReaderAlternate) {
   auto pipe = Zon::makePtr<LdpMsgPipe>("pipe");
   EXPECT_EQ(pipe->readableCount(), 0u);
   EXPECT_FALSE(pipe->msgHolder());
   for (std::uint16_t n = 1; n <= 3; ++n) {
      Zon::Ptr<LdpMsg> m = message(n);
      pipe->txMsgIs(m);
      EXPECT_EQ(pipe->readableCount(), n);
      EXPECT_EQ(pipe->msgHolder(), m);
      EXPECT_EQ(pipe->rxMsg(), m);
      EXPECT_FALSE(pipe->msgHolder());
      EXPECT_EQ(pipe->readableCount(), n) << "taking out does not count";
   }
}

TEST(LdpMsgPipe, TakingFromAnEmptyPipeGivesNull) {
   auto pipe = Zon::makePtr<LdpMsgPipe>("pipe");
   EXPECT_FALSE(pipe->rxMsg());
   pipe->txMsgIs(message(0));
   pipe->rxMsg();
   EXPECT_FALSE(pipe->rxMsg());
   EXPECT_EQ(pipe->readableCount(), 1u);
}

TEST(LdpMsgPipe, CountWrapsAt32Bits) {
   auto pipe = Zon::makePtr<LdpMsgPipe>("pipe");
   pipe->readableCountIs(0xffffffffu);
   pipe->txMsgIs(message(0));
   EXPECT_EQ(pipe->readableCount(), 0u);
}

TEST(LdpMsgPipeDeathTest, WritingIntoAFullPipeIsAnError) {
   auto pipe = Zon::makePtr<LdpMsgPipe>("pipe");
   pipe->txMsgIs(message(0));
   EXPECT_DEATH(pipe->txMsgIs(message(1)), TestSupport::literal("msgHolder_ == __null"));
}

// Run under ASan: the bytes must still be there when only the message holds them.
TEST(LdpMsgPipe, AMessageOutlivesItsPipeAndWriter) {
   Zon::Ptr<LdpMsg> taken;
   {
      auto pipe = Zon::makePtr<LdpMsgPipe>("pipe");
      {
         auto pkt = Vorin::Pkt::fromBytes(std::vector<std::uint8_t>{0xde, 0xad, 0xbe, 0xef});
         pipe->txMsgIs(Zon::makePtr<LdpMsg>(sender, pkt, 1));
      }
      taken = pipe->rxMsg();
   }
   ASSERT_TRUE(taken);
   EXPECT_EQ(taken->references(), 1u);
   EXPECT_EQ(taken->pkt()->references(), 1u);
   EXPECT_EQ(taken->pkt()->front()[taken->offset()], 0xad);
   EXPECT_EQ(taken->pkt()->frontBytes(), 4u);
}

TEST(LdpMsgPipeColl, InsertReplaceLookupDelete) {
   auto coll = Zon::makePtr<LdpSessionMsgPipeColl>("sessionPipes");
   auto a = Zon::makePtr<LdpMsgPipe>("a");
   auto b = Zon::makePtr<LdpMsgPipe>("b");
   LdpSessionId const one(sender);
   LdpSessionId const two(LdpIdentifier(Vorin::IpAddr(10, 0, 0, 2), 0));
   coll->newMsgPipe(one, a);
   coll->msgPipeIs(two, a);
   EXPECT_EQ(coll->msgPipe(one), a);
   EXPECT_EQ(coll->msgPipe(two), a) << "one pipe may stand under several keys";
   EXPECT_EQ(a->parent(), nullptr) << "the collection does not own its pipes";
   coll->msgPipeIs(two, b);
   EXPECT_EQ(coll->msgPipe(two), b);
   coll->msgPipeDel(one);
   EXPECT_FALSE(coll->msgPipe(one));
   EXPECT_EQ(a->references(), 1u) << "the collection let go of its reference";
   coll->msgPipeDelAll();
   EXPECT_EQ(coll->msgPipes(), 0u);
   EXPECT_EQ(b->references(), 1u);
}

// Every pipe collection finds a pipe by its own key.
TEST(LdpMsgPipeColl, EachCollectionByItsKey) {
   auto pipe = Zon::makePtr<LdpMsgPipe>("pipe");
   auto fec = Zon::makePtr<LdpFecMsgPipeColl>("fec");
   Mpls::FwdEqvClass const prefix(Vorin::IpGenPrefix::fromString("10.0.0.0/8"));
   fec->msgPipeIs(prefix, pipe);
   EXPECT_EQ(fec->msgPipe(prefix), pipe);
   EXPECT_FALSE(fec->msgPipe(Mpls::FwdEqvClass(Vorin::IpGenPrefix::fromString("10.0.0.0/9"))));

   auto adj = Zon::makePtr<LdpAdjMsgPipeCollection>("adj");
   LdpAdjId const link(sender, "eth1", Vorin::IpAddr(), LdpAdjKind::LdpLinkAdj);
   adj->msgPipeIs(link, pipe);
   EXPECT_EQ(adj->msgPipe(link), pipe);
   EXPECT_FALSE(adj->msgPipe(LdpAdjId()));

   auto links = Zon::makePtr<LdpLinkMsgPipeCollection>("link");
   links->msgPipeIs(Vorin::IntfId("eth1"), pipe);
   EXPECT_EQ(links->msgPipe(Vorin::IntfId("eth1")), pipe);

   auto targets = Zon::makePtr<LdpTargetMsgPipeCollection>("target");
   targets->msgPipeIs(Vorin::IpAddr(10, 9, 9, 9), pipe);
   EXPECT_EQ(targets->msgPipe(Vorin::IpAddr(10, 9, 9, 9)), pipe);

   auto pw = Zon::makePtr<PwFecSessionMsgPipeColl>("pw");
   PwFecSessionId const id(sender, Pseudowire::PseudowireType::ethernet, Pseudowire::PseudowireId(100));
   pw->localFecSessionMsgPipeIs(id, pipe);
   EXPECT_EQ(pw->localFecSessionMsgPipe(id), pipe);
   EXPECT_FALSE(pw->remoteFecSessionMsgPipe(id)) << "the two attributes are separate";
   pw->newRemoteFecSessionMsgPipe(id, pipe);
   pw->localFecSessionMsgPipeDelAll();
   EXPECT_EQ(pw->remoteFecSessionMsgPipe(id), pipe);
   EXPECT_EQ(pw->localFecSessionMsgPipes(), 0u);
}

} // namespace
