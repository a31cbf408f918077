// The receive path against LDP payloads taken from public captures made by other
// people (fuzz/corpus/pdu/capture-*, extracted by fuzz/extract_seeds.py): the
// valid session parses with success everywhere, the crafted PDUs end in their
// fault.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "ldp/parser/LdpMsgParserGet.h"
#include "ldp/parser/LdpPduParser.h"

using namespace Ldp;

namespace {

std::filesystem::path const corpus = std::filesystem::path(LDP_SOURCE_DIR) / "fuzz" / "corpus" / "pdu";

std::vector<std::uint8_t> read(std::filesystem::path const & p) {
   std::ifstream in(p, std::ios::binary);
   return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// Outcome of every PDU in one TCP segment or UDP datagram: "code" of each PDU,
// and of each invalid message "code/message index".
std::vector<std::string> parseSegment(std::vector<std::uint8_t> const & bytes, unsigned & messages) {
   auto pkt = Vorin::Pkt::fromBytes(bytes);
   std::vector<std::string> out;
   for (std::uint32_t offset = 0; offset < bytes.size();) {
      auto pdu = ldpPduParserFactory(pkt, offset);
      out.push_back(stringValue(pdu->statusCode()) + ": " + pdu->reason());
      if (!pdu->validLdpPdu()) {
         break;
      }
      for (std::uint32_t i = 0; i < pdu->messageNum(); ++i) {
         auto m = ldpMsgParserGet(pkt, pdu->messageOffset(i));
         ++messages;
         if (!m->validMsg()) {
            out.push_back("message " + std::to_string(i) + " " + stringValue(m->statusCode()) + ": " + m->reason());
         }
      }
      offset += pdu->totalLength();
   }
   return out;
}

TEST(Captures, CommonSessionParsesWithSuccessEverywhere) {
   unsigned segments = 0;
   unsigned messages = 0;
   for (auto const & e : std::filesystem::directory_iterator(corpus)) {
      if (e.path().filename().string().rfind("capture-ldp-common-session-", 0) != 0) {
         continue;
      }
      ++segments;
      for (auto const & outcome : parseSegment(read(e.path()), messages)) {
         EXPECT_EQ(outcome, "success: ") << e.path().filename();
      }
   }
   EXPECT_EQ(segments, 17u); // frames carrying LDP payload
   EXPECT_EQ(messages, 40u); // counted independently by walking the framing
}

TEST(Captures, CraftedPdusEndInTheirFault) {
   struct Case {
      char const * file;
      char const * outcome;
   };
   Case const cases[] = {
       {"capture-ldp-infinite-loop-1", "badPduLength: PDU length field too small, length = 3"},
       {"capture-ldp-infinite-loop-5", "badPduLength: PDU length field too small, length = 3"},
       {"capture-ldp-ldp_tlv_print-oobr-1", "malformedTlv: LDP PDU Messages are malformed"},
       {"capture-ldp_tlv_print-oobr-1", "badPduLength: PDU length field too big, length = 12340"},
       {"capture-mpls-ldp-hello-1", "success: "},
   };
   for (auto const & c : cases) {
      unsigned messages = 0;
      auto out = parseSegment(read(corpus / c.file), messages);
      ASSERT_FALSE(out.empty()) << c.file;
      EXPECT_EQ(out.front(), c.outcome) << c.file;
   }
}

} // namespace
