// Fuzz harness of the send side: the fuzzer's bytes choose a valid PDU of up to
// four messages of any kind with any field values; the PDU writer writes it, the
// PDU and message parsers read it back, and every field must come back equal.
// A parse fault or a differing field aborts with what differed.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "FuzzTouch.h"
#include "ldp/parser/LdpCapabilityParser.h"
#include "ldp/parser/LdpFecTlvParser.h"
#include "ldp/parser/LdpLabelMsgParser.h"
#include "ldp/parser/LdpPduParser.h"
#include "ldp/parser/LdpPwGenMsgParser.h"
#include "ldp/parser/LdpSessionMsgParser.h"
#include "ldp/parser/LdpTlvParser.h"
#include "ldp/wire/LdpPduWriter.h"
#include "ldp/wire/LdpPwHdr.h"

using namespace Ldp;
using Vorin::IpAddr;
using Vorin::IpGenAddr;
using Vorin::IpGenPrefix;

namespace {

using Pkt = Zon::Ptr<Vorin::Pkt>;

[[noreturn]] void differs(char const * what, unsigned line) {
   std::fprintf(stderr, "round trip differs: %s (line %u)\n", what, line);
   std::abort();
}
#define ROUND_TRIP_CHECK(cond) \
   do {                        \
      if (!(cond)) {           \
         differs(#cond, __LINE__); \
      }                        \
   } while (0)

// The fuzzer's bytes as a source of values; zeros once they run out.
class Source {
 public:
   Source(std::uint8_t const * p, std::size_t n) : p_(p), n_(n) {}
   std::uint8_t u8() { return at_ < n_ ? p_[at_++] : 0; }
   std::uint16_t u16() { return static_cast<std::uint16_t>(u8() << 8 | u8()); }
   std::uint32_t u32() { return std::uint32_t(u16()) << 16 | u16(); }
   bool flag() { return u8() & 1; }
   unsigned below(unsigned n) { return u8() % n; }

 private:
   std::uint8_t const * p_;
   std::size_t n_;
   std::size_t at_ = 0;
};

IpGenAddr randomAddr(Source & s, bool v6) {
   if (!v6) {
      return IpGenAddr(IpAddr(s.u32()));
   }
   std::uint8_t b[16];
   for (auto & x : b) {
      x = s.u8();
   }
   return IpGenAddr(Vorin::Ip6Addr(b));
}

// A prefix with no bits set past its length: the form the parser gives back.
IpGenPrefix randomPrefix(Source & s) {
   bool const v6 = s.flag();
   unsigned const bits = s.below(v6 ? 129 : 33);
   IpGenAddr const a = randomAddr(s, v6);
   std::uint8_t b[16] = {};
   for (unsigned i = 0; i < a.byteLength(); ++i) {
      unsigned const keep = bits > i * 8 ? std::min(8u, bits - i * 8) : 0;
      b[i] = static_cast<std::uint8_t>(a.bytes()[i] & (0xFF00u >> keep));
   }
   IpGenAddr const masked = v6 ? IpGenAddr(Vorin::Ip6Addr(b)) : IpGenAddr(IpAddr(b[0], b[1], b[2], b[3]));
   return IpGenPrefix(masked, bits);
}

// A FEC TLV: IP elements, a lone Wildcard, or one PWid element.
enum class FecKind { ip, wildcard, pw };

struct Fec {
   FecKind kind = FecKind::ip;
   std::vector<std::pair<LdpFecElementType, IpGenPrefix>> ip;
   PwFwdEqvClassInfo pw;
   bool mtu = false, desc = false, vlan = false, frag = false, vccv = false;
};

Fec randomFec(Source & s, bool wildcardOk, bool pwOk, bool pwOnly = false) {
   Fec f;
   unsigned const pick = pwOnly ? 2 : s.below(4);
   if (pick == 1 && wildcardOk) {
      f.kind = FecKind::wildcard;
   } else if (pick == 2 && pwOk) {
      f.kind = FecKind::pw;
      f.pw.pwTypeIs(s.flag() ? Pseudowire::PseudowireType::ethernet : Pseudowire::PseudowireType::ethernetTagged);
      f.pw.controlWordIs(s.flag());
      f.pw.groupIdIs(Pseudowire::GroupId(s.u32()));
      f.pw.pwIdIs(Pseudowire::PseudowireId(s.u32() | 1));
      PwFwdEqvClassParams p;
      p.groupIdIs(f.pw.groupId());
      if ((f.mtu = s.flag())) {
         p.mtuIs(s.u16());
      }
      if ((f.desc = s.flag())) {
         std::string text(s.below(LdpPwIntfDescSubTlv::maxDescriptionChars + 1), 'x');
         for (auto & c : text) {
            c = static_cast<char>(' ' + s.below(95));
         }
         p.intfDescriptionIs(Zon::String8(text));
      }
      if ((f.vlan = s.flag())) {
         p.requestedVlanIdIs(Pseudowire::VlanIdOrNone(s.u16() % (Pseudowire::VlanIdOrNone::max + 1)));
      }
      if ((f.frag = s.flag())) {
         p.fragCapableIs(s.flag());
      }
      if ((f.vccv = s.flag())) {
         p.vccvCcTypesIs(s.u8());
         p.vccvCvTypesIs(s.u8());
      }
      f.pw.paramsIs(p);
   } else {
      unsigned const n = 1 + s.below(3);
      for (unsigned i = 0; i < n; ++i) {
         if (s.flag()) {
            IpGenAddr const a = randomAddr(s, s.flag());
            f.ip.emplace_back(LdpFecElementType::hostAddrElement, IpGenPrefix(a, a.bitLength()));
         } else {
            f.ip.emplace_back(LdpFecElementType::prefixElement, randomPrefix(s));
         }
      }
   }
   return f;
}

void writeFec(LdpPduWriter & w, Fec const & f) {
   w.tlvBegin(LdpTlvType::fecTlv);
   switch (f.kind) {
    case FecKind::wildcard:
      w.wildcardElement();
      break;
    case FecKind::ip:
      for (auto const & [type, prefix] : f.ip) {
         if (type == LdpFecElementType::hostAddrElement) {
            w.hostAddrElement(prefix.address());
         } else {
            w.prefixElement(prefix);
         }
      }
      break;
    case FecKind::pw: {
      auto const & p = f.pw.params();
      w.pwIdElementBegin(f.pw.pwType(), f.pw.controlWord(), f.pw.groupId().value(), f.pw.pwId().value());
      if (f.mtu) {
         w.pwMtuSubTlv(p.mtu());
      }
      if (f.desc) {
         w.pwDescriptionSubTlv(std::string(p.intfDescription()));
      }
      if (f.vlan) {
         w.pwRequestedVlanIdSubTlv(p.requestedVlanId().value());
      }
      if (f.frag) {
         w.pwFragIndicatorSubTlv(p.fragCapable() ? 0x8000 : 0);
      }
      if (f.vccv) {
         w.pwVccvSubTlv(p.vccvCcTypes(), p.vccvCvTypes());
      }
      w.end();
      break;
    }
   }
   w.end();
}

void checkFec(Zon::Ptr<LdpFecTlvParser> const & parser, Fec const & f) {
   ROUND_TRIP_CHECK(parser && parser->valid());
   switch (f.kind) {
    case FecKind::wildcard:
      ROUND_TRIP_CHECK(parser->fecElementNum() == 1 && parser->hasWildcardFecElement());
      ROUND_TRIP_CHECK(parser->fecElement(0)->type() == LdpFecElementType::wildcardElement);
      break;
    case FecKind::ip:
      ROUND_TRIP_CHECK(parser->fecElementNum() == f.ip.size());
      for (std::uint32_t i = 0; i < f.ip.size(); ++i) {
         auto const e = parser->fecElement(i);
         ROUND_TRIP_CHECK(e && e->type() == f.ip[i].first);
         ROUND_TRIP_CHECK(e->fwdEqvCls().prefix() == f.ip[i].second);
      }
      break;
    case FecKind::pw:
      ROUND_TRIP_CHECK(parser->fecElementNum() == 1);
      ROUND_TRIP_CHECK(parser->fecElement(0)->type() == LdpFecElementType::pwIdElement);
      ROUND_TRIP_CHECK(parser->fecElement(0)->pwFwdEqvCls() == f.pw);
      break;
   }
}

template <typename P>
void checkHeader(P const & p, LdpMsgType type, std::uint32_t id) {
   if (!p.validMsg()) {
      std::fprintf(stderr, "%s refused: %s\n", p.fwkType(), std::string(p.reason()).c_str());
   }
   ROUND_TRIP_CHECK(p.validMsg());
   ROUND_TRIP_CHECK(p.msgHdr() && p.msgHdr()->type() == type && p.msgHdr()->msgId() == id);
}

using Check = std::function<void(Pkt const &, std::uint32_t)>;

LdpTlvType const capabilityTypes[] = {
    LdpTlvType::dynamicCapabilityTlv,         LdpTlvType::typedWildcardFecCapabilityTlv,
    LdpTlvType::upstreamLabelAssignmentCapabilityTlv, LdpTlvType::p2mpCapabilityTlv,
    LdpTlvType::mp2mpCapabilityTlv,           LdpTlvType::mbbCapabilityTlv,
    LdpTlvType::stateAdvertisementControlCapabilityTlv,
};

// Distinct capability types in table order, each with its S bit.
std::vector<std::pair<LdpTlvType, bool>> randomCapabilities(Source & s, bool atLeastOne) {
   std::vector<std::pair<LdpTlvType, bool>> caps;
   std::uint8_t const mask = s.u8();
   for (unsigned i = 0; i < std::size(capabilityTypes); ++i) {
      if (mask & (1u << i)) {
         caps.emplace_back(capabilityTypes[i], s.flag());
      }
   }
   if (caps.empty() && atLeastOne) {
      caps.emplace_back(capabilityTypes[0], s.flag());
   }
   return caps;
}

void checkCapabilities(LdpCapabilityParser const & p, std::vector<std::pair<LdpTlvType, bool>> const & caps) {
   ROUND_TRIP_CHECK(p.capabilitiesNum() == caps.size());
   for (auto const & [type, state] : caps) {
      auto const * t = p.capabilities(type);
      ROUND_TRIP_CHECK(t && t->state() == state && t->unknown());
   }
}

LdpStatusCode const statusCodes[] = {LdpStatusCode::shutdown,          LdpStatusCode::noRoute,
                                      LdpStatusCode::keepAliveExpired,  LdpStatusCode::labelRequestAborted,
                                      LdpStatusCode::unknownFec,        LdpStatusCode::holdTimerExpired,
                                      LdpStatusCode::loopDetected,      LdpStatusCode::noLabelResources};

// Writes one message of a kind the bytes choose and returns its check.
Check writeMessage(Source & s, LdpPduWriter & w, std::uint32_t id) {
   switch (s.below(12)) {
    case 0: { // Hello
      std::uint16_t const hold = s.u16();
      bool const targeted = s.flag(), request = s.flag();
      unsigned const transport = s.below(3);
      IpGenAddr const addr = randomAddr(s, transport == 2);
      bool const withSeq = s.flag();
      std::uint32_t const seq = s.u32();
      w.msgBegin(LdpMsgType::LdpHello, id);
      w.commonHelloTlv(hold, targeted, request);
      if (transport == 1) {
         w.ipv4TransportTlv(addr.v4());
      } else if (transport == 2) {
         w.ipv6TransportTlv(addr.v6());
      }
      if (withSeq) {
         w.configSeqNumTlv(seq);
      }
      w.end();
      return [=](Pkt const & pkt, std::uint32_t at) {
         auto p = ldpHelloMsgParserFactory(pkt, at);
         checkHeader(*p, LdpMsgType::LdpHello, id);
         auto const * h = p->msgCommonHelloTlv();
         ROUND_TRIP_CHECK(h && h->holdTime() == hold && h->targetedHello() == targeted &&
                          h->requestSendTargetedHello() == request);
         ROUND_TRIP_CHECK((p->msgIpTransportTlv() != nullptr) == (transport == 1));
         ROUND_TRIP_CHECK((p->msgIp6TransportTlv() != nullptr) == (transport == 2));
         ROUND_TRIP_CHECK(transport != 1 || p->msgIpTransportTlv()->ipAddr() == addr.v4());
         ROUND_TRIP_CHECK(transport != 2 || p->msgIp6TransportTlv()->ip6Addr() == addr.v6());
         ROUND_TRIP_CHECK((p->msgConfigSeqTlv() != nullptr) == withSeq);
         ROUND_TRIP_CHECK(!withSeq || p->msgConfigSeqTlv()->configSeqNum() == seq);
      };
    }
    case 1: { // Initialization
      // Values a peer may propose: a keepalive time above the least one, a
      // maximum PDU length no larger than the largest one.
      auto const keepAlive = static_cast<std::uint16_t>(
          LdpCommonSessionParamTlv::keepAliveTimeRejectMax + 1 +
          s.u16() % (0xFFFF - LdpCommonSessionParamTlv::keepAliveTimeRejectMax));
      auto const maxPdu =
          static_cast<std::uint16_t>(s.u16() % (LdpCommonSessionParamTlv::maxPduLengthLimit + 1));
      LdpIdentifier const receiver(IpAddr(s.u32()), s.u16());
      bool const loop = s.flag(), dod = s.flag();
      std::uint8_t const pvl = s.u8();
      auto const caps = randomCapabilities(s, false);
      w.msgBegin(LdpMsgType::LdpInit, id);
      w.sessionParamTlv(keepAlive, maxPdu, receiver, loop, pvl, dod);
      for (auto const & [type, state] : caps) {
         w.capabilityTlv(type, state);
      }
      w.end();
      return [=](Pkt const & pkt, std::uint32_t at) {
         auto p = ldpInitMsgParserFactory(pkt, at);
         checkHeader(*p, LdpMsgType::LdpInit, id);
         auto const * t = p->msgSessionParamTlv();
         ROUND_TRIP_CHECK(t && t->protocolVersion() == 1 && t->keepAliveTime() == keepAlive &&
                          t->maxPduLength() == maxPdu && t->recvLdpIdentifier() == receiver);
         ROUND_TRIP_CHECK(t->loopDetect() == loop && t->advDiscipline() == dod && t->pathVecLim() == pvl);
         checkCapabilities(*p, caps);
      };
    }
    case 2: // Keepalive
      w.msgBegin(LdpMsgType::LdpKeepAlive, id);
      w.end();
      return [=](Pkt const & pkt, std::uint32_t at) {
         auto p = ldpMsgParserFactory(pkt, at);
         checkHeader(*p, LdpMsgType::LdpKeepAlive, id);
      };
    case 3: { // Capability
      auto const caps = randomCapabilities(s, true);
      w.msgBegin(LdpMsgType::LdpCapability, id);
      for (auto const & [type, state] : caps) {
         w.capabilityTlv(type, state);
      }
      w.end();
      return [=](Pkt const & pkt, std::uint32_t at) {
         auto p = ldpCapabilityMsgParserFactory(pkt, at);
         checkHeader(*p, LdpMsgType::LdpCapability, id);
         checkCapabilities(*p, caps);
      };
    }
    case 4:
    case 5: { // Address, Address Withdraw
      bool const withdraw = s.flag();
      LdpMsgType const type = withdraw ? LdpMsgType::LdpAddressWithdraw : LdpMsgType::LdpAddress;
      bool const v6 = s.flag();
      std::vector<IpGenAddr> addrs(1 + s.below(8));
      for (auto & a : addrs) {
         a = randomAddr(s, v6);
      }
      w.msgBegin(type, id);
      w.addressListTlv(addrs);
      w.end();
      return [=](Pkt const & pkt, std::uint32_t at) {
         Zon::Ptr<LdpAddressListMsgParser> p;
         if (withdraw) {
            p = ldpAddressWithdrawMsgParserFactory(pkt, at);
         } else {
            p = ldpAddressMsgParserFactory(pkt, at);
         }
         checkHeader(*p, type, id);
         auto const & l = *p->addressListTlv();
         ROUND_TRIP_CHECK(l.family() == (v6 ? Vorin::ipv6_ : Vorin::ipv4_) && l.numAddress() == addrs.size());
         for (unsigned i = 0; i < addrs.size(); ++i) {
            ROUND_TRIP_CHECK(l.address(i) == addrs[i]);
         }
      };
    }
    case 6: { // Label Mapping
      Fec const fec = randomFec(s, false, true);
      std::uint32_t const label = s.u32() & 0xFFFFF;
      bool const withReq = s.flag(), withHops = s.flag(), withPv = withHops && s.flag(), withPw = s.flag();
      std::uint32_t const reqId = s.u32();
      std::uint8_t const hops = s.u8();
      std::vector<IpAddr> pv(1 + s.below(4));
      for (auto & a : pv) {
         a = IpAddr(s.u32());
      }
      std::uint32_t const pwBits = s.u32();
      w.msgBegin(LdpMsgType::LdpLabelMapping, id);
      writeFec(w, fec);
      w.genLabelTlv(label);
      if (withReq) {
         w.labelReqMsgIdTlv(reqId);
      }
      if (withHops) {
         w.hopCountTlv(hops);
      }
      if (withPv) {
         w.pathVectorTlv(pv);
      }
      if (withPw) {
         w.pwStatusTlv(pwBits);
      }
      w.end();
      return [=](Pkt const & pkt, std::uint32_t at) {
         auto p = ldpLabelMappingMsgParserFactory(pkt, at);
         checkHeader(*p, LdpMsgType::LdpLabelMapping, id);
         checkFec(p->ldpFecTlvParser(), fec);
         ROUND_TRIP_CHECK(p->msgGenLabelTlv() && p->msgGenLabelTlv()->label().value() == label);
         ROUND_TRIP_CHECK((p->msgReqMsgIdTlv() != nullptr) == withReq);
         ROUND_TRIP_CHECK(!withReq || p->msgReqMsgIdTlv()->reqMsgId() == reqId);
         ROUND_TRIP_CHECK((p->msgHopCountTlv() != nullptr) == withHops);
         ROUND_TRIP_CHECK(!withHops || p->msgHopCountTlv()->hopCount() == hops);
         ROUND_TRIP_CHECK((p->msgPathVectorTlv() != nullptr) == withPv);
         if (withPv) {
            ROUND_TRIP_CHECK(p->msgPathVectorTlv()->lsrIdNum() == pv.size());
            for (unsigned i = 0; i < pv.size(); ++i) {
               ROUND_TRIP_CHECK(p->msgPathVectorTlv()->lsrId(i) == pv[i]);
            }
         }
         ROUND_TRIP_CHECK((p->msgPwStatusTlv() != nullptr) == withPw);
         ROUND_TRIP_CHECK(!withPw || p->msgPwStatusTlv()->status() == pwBits);
      };
    }
    case 7: { // Label Request
      Fec const fec = randomFec(s, false, false);
      bool const withHops = s.flag();
      std::uint8_t const hops = s.u8();
      w.msgBegin(LdpMsgType::LdpLabelRequest, id);
      writeFec(w, fec);
      if (withHops) {
         w.hopCountTlv(hops);
      }
      w.end();
      return [=](Pkt const & pkt, std::uint32_t at) {
         auto p = ldpLabelRequestMsgParserFactory(pkt, at);
         checkHeader(*p, LdpMsgType::LdpLabelRequest, id);
         checkFec(p->ldpFecTlvParser(), fec);
         ROUND_TRIP_CHECK((p->msgHopCountTlv() != nullptr) == withHops);
         ROUND_TRIP_CHECK(!withHops || p->msgHopCountTlv()->hopCount() == hops);
      };
    }
    case 8:
    case 9: { // Label Withdraw, Label Release
      bool const release = s.flag();
      LdpMsgType const type = release ? LdpMsgType::LdpLabelRelease : LdpMsgType::LdpLabelWithdraw;
      Fec const fec = randomFec(s, true, true);
      bool const withLabel = s.flag(), withStatus = s.flag();
      std::uint32_t const label = s.u32() & 0xFFFFF;
      LdpStatusCode const code = statusCodes[s.below(std::size(statusCodes))];
      std::uint32_t const about = s.u32();
      w.msgBegin(type, id);
      writeFec(w, fec);
      if (withLabel) {
         w.genLabelTlv(label);
      }
      if (withStatus) {
         w.statusTlv(code, false, false, about, 0);
      }
      w.end();
      return [=](Pkt const & pkt, std::uint32_t at) {
         Zon::Ptr<LdpLabelWithdrawReleaseMsgParser> p;
         if (release) {
            p = ldpLabelReleaseMsgParserFactory(pkt, at);
         } else {
            p = ldpLabelWithdrawMsgParserFactory(pkt, at);
         }
         checkHeader(*p, type, id);
         checkFec(p->ldpFecTlvParser(), fec);
         ROUND_TRIP_CHECK((p->msgGenLabelTlv() != nullptr) == withLabel);
         ROUND_TRIP_CHECK(!withLabel || p->msgGenLabelTlv()->label().value() == label);
         ROUND_TRIP_CHECK((p->msgStatusTlv() != nullptr) == withStatus);
         ROUND_TRIP_CHECK(!withStatus || (p->msgStatusTlv()->statusData() == code &&
                                          p->msgStatusTlv()->msgId() == about));
      };
    }
    case 10: { // Label Abort Request
      Fec const fec = randomFec(s, false, false);
      std::uint32_t const reqId = s.u32();
      w.msgBegin(LdpMsgType::LdpLabelAbortReq, id);
      writeFec(w, fec);
      w.labelReqMsgIdTlv(reqId);
      w.end();
      return [=](Pkt const & pkt, std::uint32_t at) {
         auto p = ldpLabelAbortReqMsgParserFactory(pkt, at);
         checkHeader(*p, LdpMsgType::LdpLabelAbortReq, id);
         checkFec(p->ldpFecTlvParser(), fec);
         ROUND_TRIP_CHECK(p->msgReqMsgIdTlv() && p->msgReqMsgIdTlv()->reqMsgId() == reqId);
      };
    }
    default: { // Notification, of a status or of a PW status
      bool const pw = s.flag();
      LdpStatusCode const code = pw ? LdpStatusCode::pwStatus : statusCodes[s.below(std::size(statusCodes))];
      bool const fatal = s.flag(), forward = s.flag();
      std::uint32_t const about = s.u32();
      LdpMsgType const aboutType = s.flag() ? LdpMsgType::LdpLabelMapping : LdpMsgType::LdpLabelRequest;
      std::uint32_t const pwBits = s.u32();
      // A PW status notification carries the PW's FEC.
      Fec const fec = pw ? randomFec(s, false, true, true) : Fec();
      bool const pwFec = pw;
      w.msgBegin(LdpMsgType::LdpNotification, id);
      w.statusTlv(code, fatal, forward, about, static_cast<std::uint16_t>(aboutType));
      if (pw) {
         w.pwStatusTlv(pwBits);
         if (pwFec) {
            writeFec(w, fec);
         }
      }
      w.end();
      return [=](Pkt const & pkt, std::uint32_t at) {
         auto p = ldpNotificationMsgParserFactory(pkt, at);
         checkHeader(*p, LdpMsgType::LdpNotification, id);
         auto const * t = p->msgStatusTlv();
         ROUND_TRIP_CHECK(t && t->statusData() == code && t->statusError() == fatal &&
                          t->statusForwardUnknown() == forward && t->msgId() == about && t->msgType() == aboutType);
         ROUND_TRIP_CHECK((p->msgPwStatusTlv() != nullptr) == pw);
         ROUND_TRIP_CHECK(!pw || p->msgPwStatusTlv()->status() == pwBits);
         if (pwFec) {
            checkFec(p->ldpFecTlvParser(), fec);
         }
      };
    }
   }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size) {
   Source s(data, size);
   LdpIdentifier const id(IpAddr(s.u32()), s.u16());
   unsigned const messages = 1 + s.below(4);

   std::vector<std::uint8_t> buf(LdpPduParser::maxPduSize);
   LdpPduWriter w(buf);
   std::vector<Check> checks;
   w.pduBegin(id);
   for (unsigned i = 0; i < messages; ++i) {
      checks.push_back(writeMessage(s, w, s.u32()));
   }
   w.end();
   ROUND_TRIP_CHECK(w.ok() && w.depth() == 0);

   // Exactly the written bytes, so that a read past them is seen.
   auto pkt = Vorin::Pkt::fromBytes(w.bytes());
   auto pdu = ldpPduParserFactory(pkt, 0);
   FuzzTouch::pdu(*pdu);
   ROUND_TRIP_CHECK(pdu->validLdpPdu());
   ROUND_TRIP_CHECK(pdu->ldpIdentifier() == id && pdu->version() == 1 && pdu->totalLength() == w.size());
   ROUND_TRIP_CHECK(pdu->messageNum() == messages);
   for (unsigned i = 0; i < messages; ++i) {
      checks[i](pkt, pdu->messageOffset(i));
      FuzzTouch::message(pkt, pdu->messageOffset(i));
   }
   return 0;
}
