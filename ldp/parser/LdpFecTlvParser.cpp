#include "ldp/parser/LdpFecTlvParser.h"

#include <algorithm>
#include <array>
#include <string>

#include "ldp/trace/LdpTrace.h"
#include "pseudowire/PseudowireTypes.h"
#include "zon/Assert.h"
#include "zon/Exception.h"

namespace Ldp {

namespace {

constexpr auto malformedTlv = LdpStatusCode::malformedTlv;
constexpr auto badTlvLength = LdpStatusCode::badTlvLength;
constexpr auto unknownFec = LdpStatusCode::unknownFec;
constexpr auto unsupportedAddressFamily = LdpStatusCode::unsupportedAddressFamily;

constexpr std::uint32_t fecTlvHdrBytes = LdpTlvHdr::wireBytes;
constexpr std::uint32_t ipElementHdrBytes = LdpFecTlvPrefixElementHdr::wireBytes;
static_assert(LdpFecTlvHostAddressElementHdr::wireBytes == ipElementHdrBytes);
constexpr std::uint32_t pwIdElementHdrBytes = LdpFecTlvPwIdElementHdr::wireBytes;
constexpr std::uint32_t pwIdBytes = LdpFecTlvPwIdElementHdr::pwIdBytes;
constexpr std::uint32_t subTlvHdrBytes = LdpPwIntfParamSubTlv::wireBytes;

constexpr std::uint16_t familyIpv4 = 1;
constexpr std::uint16_t familyIpv6 = 2;
constexpr std::uint32_t ipv4Octets = 4;
constexpr std::uint32_t ipv6Octets = 16;

// "Address Family: 1, PreLen: 24, Prefix: 10.1.0.0/24" and the like, from the
// element object.
std::string elementText(LdpFecTlvElement const & e) {
   switch (e.type()) {
    case LdpFecElementType::wildcardElement:
      return "Wildcard FEC Element";
    case LdpFecElementType::prefixElement: {
      Vorin::IpGenPrefix const & p = e.fwdEqvCls().prefix();
      return "Prefix FEC Element, Address Family: " + std::to_string(unsigned(p.af())) +
             ", PreLen: " + std::to_string(p.length()) + ", Prefix: " + p.stringValue();
    }
    case LdpFecElementType::hostAddrElement: {
      Vorin::IpGenAddr const & a = e.fwdEqvCls().prefix().address();
      return "Host Address FEC Element, Address Family: " + std::to_string(unsigned(a.af())) +
             ", HostAddrLen: " + std::to_string(a.byteLength()) + ", Addr: " + a.stringValue();
    }
    default:
      return e.stringValue();
   }
}

} // namespace

LdpFecTlvParser::LdpFecTlvParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset,
                                 Zon::Ptr<LdpProtoParam const> const & protoParam, LdpPktReader const * bound)
    : pkt_(pkt), offset_(offset), protoParam_(protoParam),
      strict_(!protoParam || protoParam->fecTlvStrictPrefixWildcardOnlyElement()) {
   handleInitialized(bound);
}

void LdpFecTlvParser::handleInitialized(LdpPktReader const * bound) {
   TRACE(ldpGenMsgParserTrace, traceFunction, "LdpFecTlvParser::handleInitialized");
   initialized_ = true;
   parseElements(bound);
}

bool LdpFecTlvParser::fault(LdpStatusCode code, Zon::String8 reason) {
   return result_.fault(code, std::move(reason), ldpGenMsgParserTrace);
}

// ---- the collection --------------------------------------------------------

namespace {

template <typename E>
E * findEntry(E * first, std::uint32_t count, std::uint32_t index) noexcept {
   return std::lower_bound(first, first + count, index, [](E const & a, std::uint32_t i) { return a.index < i; });
}

} // namespace

LdpFecTlvParser::ElementPtr LdpFecTlvParser::fecElement(std::uint32_t index) const noexcept {
   Entry const * e = entries();
   if (index < count_ && e[index].index == index) { // the usual dense case
      return e[index].element;
   }
   Entry const * it = findEntry(e, count_, index);
   return it != e + count_ && it->index == index ? it->element : nullptr;
}

void LdpFecTlvParser::fecElementIs(std::uint32_t index, ElementPtr element) {
   Entry * e = entries();
   Entry * it = findEntry(e, count_, index);
   if (it != e + count_ && it->index == index) {
      it->element = std::move(element);
      return;
   }
   if (heap_.empty() && count_ == 0) {
      inline_ = Entry{index, std::move(element)};
   } else {
      auto const pos = it - e;
      if (heap_.empty()) {
         heap_.reserve(4);
         heap_.push_back(std::move(inline_));
         inline_ = Entry();
      }
      heap_.insert(heap_.begin() + pos, Entry{index, std::move(element)});
   }
   ++count_;
}

LdpFecTlvParser::ElementPtr LdpFecTlvParser::newFecElement(std::uint32_t index, ElementPtr element) {
   if (ElementPtr existing = fecElement(index)) {
      return existing;
   }
   fecElementIs(index, element);
   return element;
}

void LdpFecTlvParser::fecElementDel(std::uint32_t index) noexcept {
   Entry * e = entries();
   Entry * it = findEntry(e, count_, index);
   if (it == e + count_ || it->index != index) {
      return;
   }
   if (heap_.empty()) {
      inline_ = Entry();
   } else {
      heap_.erase(heap_.begin() + (it - e));
   }
   --count_;
}

void LdpFecTlvParser::fecElementDelAll() noexcept {
   inline_ = Entry();
   heap_.clear();
   count_ = 0;
}

void LdpFecTlvParser::appendElement(ElementPtr element) {
   TRACE(ldpGenMsgParserTrace, traceDetail, "   FEC element " << count_ << ": " << elementText(*element));
   fecElementIs(count_, std::move(element));
}

// ---- parsing ---------------------------------------------------------------

void LdpFecTlvParser::parseElements(LdpPktReader const * bound) {
   ZON_ASSERT(pkt_);
   LdpPktReader front;
   if (!bound) {
      front = LdpPktReader(*pkt_);
      bound = &front;
   }
   TRACE(ldpGenMsgParserTrace, traceDetail,
         "   Parse FEC TLV frontBytes: " << pkt_->frontBytes() << ", offset: " << offset_);
   // The value's length comes from the TLV header; a header that is not in the
   // bound leaves nothing to read, and the TLV is too small like one whose value
   // was cut or runs into the next message. The size reported is the front
   // bytes'.
   LdpTlvHdr const * hdr = bound->view<LdpTlvHdr const>(offset_);
   if (!hdr || !bound->contains(offset_, fecTlvHdrBytes + hdr->length())) {
      fault(badTlvLength, Zon::format("FEC TLV is too small, size: %d", int(pkt_->frontBytes())));
      return;
   }
   std::uint32_t const begin = offset_ + fecTlvHdrBytes;
   std::uint32_t const end = begin + hdr->length();
   value_ = bound->child(begin, hdr->length());

   std::uint32_t pos = begin;
   while (pos < end) {
      // Present: pos lies inside the value.
      std::uint8_t const typeOctet = value_.u8(pos).value_or(0);
      switch (LdpFecElementType(typeOctet)) {
       case LdpFecElementType::wildcardElement:
         if (!parseWildcardElement(pos, begin, end)) {
            return;
         }
         break;
       case LdpFecElementType::prefixElement:
         if (!parsePrefixElement(pos, end)) {
            return;
         }
         break;
       case LdpFecElementType::hostAddrElement:
         if (!parseHostAddrElement(pos, end)) {
            return;
         }
         break;
       case LdpFecElementType::pwIdElement: {
         Zon::Ptr<LdpFecTlvPwIdElement> element = ldpFecTlvPwIdElementFactory();
         LdpStatusCode const code = parseFecTlvPwIdElement(pos, end, *element);
         statusCodeIs(code);
         if (code != LdpStatusCode::success) {
            return;
         }
         appendElement(std::move(element));
         break;
       }
       default:
         fault(unknownFec, Zon::format("Unhandled FEC TLV Element type 0x%02hhx", typeOctet));
         return;
      }
   }
   statusCodeIs(LdpStatusCode::success);
   TRACE(ldpGenMsgParserTrace, traceDetail, "FEC TLV parsed " << count_ << " elements");
}

bool LdpFecTlvParser::parseWildcardElement(std::uint32_t & currOffset, std::uint32_t valueOffset,
                                           std::uint32_t endOffset) {
   std::uint32_t const next = currOffset + LdpFecTlvWildcardElementHdr::wireBytes;
   if (strict_ && (currOffset != valueOffset || next != endOffset)) {
      return fault(unknownFec, "FEC TLV Wildcard Element must be the only FEC Element in the FEC TLV");
   }
   hasWildcardFecElement_ = true;
   appendElement(ldpFecTlvWildcardElementFactory());
   currOffset = next;
   return true;
}

bool LdpFecTlvParser::parsePrefixElement(std::uint32_t & currOffset, std::uint32_t endOffset) {
   std::uint32_t const remaining = endOffset - currOffset;
   auto const * h = remaining >= ipElementHdrBytes ? value_.view<LdpFecTlvPrefixElementHdr const>(currOffset) : nullptr;
   if (!h) {
      return fault(malformedTlv, "Invalid FEC Prefix Element: TLV value is too small");
   }
   std::uint32_t const octets = static_cast<std::uint32_t>(h->prefixOctets());
   if (ipElementHdrBytes + octets > remaining) {
      return fault(malformedTlv, Zon::format("Invalid FEC Prefix Element: prefix bits: %d, remaining packet octets: %u",
                                             int(h->prefixBits()), unsigned(remaining)));
   }
   Vorin::AddressFamily af;
   switch (h->family()) {
    case familyIpv4:
      if (octets > ipv4Octets) {
         return fault(malformedTlv,
                      Zon::format("Invalid FEC Prefix Element: PreLen %d is too large for IPv4", int(h->prefixBits())));
      }
      af = Vorin::ipv4_;
      break;
    case familyIpv6:
      if (octets > ipv6Octets) {
         return fault(malformedTlv,
                      Zon::format("Invalid FEC Prefix Element: PreLen %d is too large for IPv6", int(h->prefixBits())));
      }
      af = Vorin::ipv6_;
      break;
    default:
      return fault(unsupportedAddressFamily,
                   Zon::format("Invalid FEC Prefix Element address family 0x%hx", h->family()));
   }
   // The prefix octets, most significant first, in a zeroed address of the family.
   std::array<std::uint8_t, ipv6Octets> addr{};
   if (octets > 0) {
      std::uint8_t const * bytes = value_.view<std::uint8_t const>(currOffset + ipElementHdrBytes, octets);
      std::copy(bytes, bytes + octets, addr.begin());
   }
   appendElement(ldpFecTlvPrefixElementFactory(Vorin::IpGenPrefix(Vorin::IpGenAddr(af, addr.data()), h->prefixBits())));
   currOffset += ipElementHdrBytes + octets;
   return true;
}

bool LdpFecTlvParser::parseHostAddrElement(std::uint32_t & currOffset, std::uint32_t endOffset) {
   std::uint32_t const remaining = endOffset - currOffset;
   auto const * h =
       remaining >= ipElementHdrBytes ? value_.view<LdpFecTlvHostAddressElementHdr const>(currOffset) : nullptr;
   if (!h) {
      return fault(malformedTlv, "Invalid FEC Host Address Element: TLV value is too small");
   }
   std::uint32_t const octets = h->hostAddrLen();
   if (ipElementHdrBytes + octets > remaining) {
      return fault(malformedTlv,
                   Zon::format("Invalid FEC Host Address Element: hostAddrLen: %d, remaining packet octets: %u",
                               int(octets), unsigned(remaining)));
   }
   Vorin::AddressFamily af;
   switch (h->family()) {
    case familyIpv4:
      if (octets != ipv4Octets) {
         return fault(malformedTlv, Zon::format("Invalid FEC Host Addr Element: hostAddrLen %d is not valid IPv4 size",
                                                int(octets)));
      }
      af = Vorin::ipv4_;
      break;
    case familyIpv6:
      if (octets != ipv6Octets) {
         return fault(malformedTlv, Zon::format("Invalid FEC Host Addr Element: hostAddrLen %d is not valid IPv6 size",
                                                int(octets)));
      }
      af = Vorin::ipv6_;
      break;
    default:
      return fault(unsupportedAddressFamily,
                   Zon::format("Invalid FEC Host Address Element address family 0x%hx", h->family()));
   }
   std::uint8_t const * bytes = value_.view<std::uint8_t const>(currOffset + ipElementHdrBytes, octets);
   appendElement(ldpFecTlvHostAddrElementFactory(Vorin::IpGenAddr(af, bytes)));
   currOffset += ipElementHdrBytes + octets;
   return true;
}

LdpStatusCode LdpFecTlvParser::parseFecTlvPwIdElement(std::uint32_t & currOffset, std::uint32_t endOffset,
                                                      LdpFecTlvPwIdElement & element) {
   ZON_ASSERT(currOffset <= endOffset);
   std::uint32_t const remaining = endOffset - currOffset;
   auto const * h =
       remaining >= pwIdElementHdrBytes ? value_.view<LdpFecTlvPwIdElementHdr const>(currOffset) : nullptr;
   if (!h) {
      fault(malformedTlv, "Invalid FEC PW ID Element: TLV is too small");
      return statusCode();
   }
   bool const controlWord = h->controlWord();
   Pseudowire::PseudowireType const pwType = h->pwType();
   Pseudowire::GroupId const groupId = h->groupId();
   if (pwType != Pseudowire::PseudowireType::ethernetTagged && pwType != Pseudowire::PseudowireType::ethernet) {
      fault(unknownFec, Zon::format("Invalid FEC PW ID Element: Unknown PW type 0x%.4x", unsigned(pwType)));
      return statusCode();
   }
   std::uint32_t const pwInfoLen = h->pwInfoLen();
   if (pwInfoLen + pwIdElementHdrBytes > remaining) {
      fault(malformedTlv, "Invalid FEC PW ID Element: TLV value is too small");
      return statusCode();
   }
   if (pwInfoLen != 0 && pwInfoLen < pwIdBytes) {
      fault(badTlvLength, "Invalid FEC PW ID Element: TLV value length must be 0 or >= 4");
      return statusCode();
   }
   std::uint32_t const infoOffset = currOffset + pwIdElementHdrBytes;
   std::uint32_t consumed = 0;
   Pseudowire::PseudowireId pwId;
   LdpPwIntfParamFlags flags;
   PwFwdEqvClassParams params;
   params.groupIdIs(groupId);
   if (pwInfoLen >= pwIdBytes) {
      pwId = Pseudowire::PseudowireId(value_.u32(infoOffset).value_or(0));
      if (pwId.value() == 0) {
         fault(malformedTlv, "Invalid FEC PW ID Element: PW ID cannot be 0");
         return statusCode();
      }
      consumed = pwIdBytes;
      // The sub-TLVs are read through a reader of the PW information alone.
      LdpPktReader const info = value_.child(infoOffset, pwInfoLen);
      std::uint32_t pos = infoOffset + pwIdBytes;
      while (pos < info.end()) {
         if (LdpStatusCode const code = parsePwIntfParamSubTlv(info, pos, flags, params);
             code != LdpStatusCode::success) {
            return code;
         }
      }
      // An unrecognized sub-TLV is skipped by its own length, which may claim
      // more than the PW information holds.
      consumed = pos - infoOffset;
   }
   if (consumed != pwInfoLen) {
      fault(malformedTlv, Zon::format("Invalid FEC PW ID Element: TLV value length mismatch. Expected %d octets but "
                                      "found %d octets.",
                                      int(pwInfoLen), int(consumed)));
      return statusCode();
   }
   PwFwdEqvClassInfo info;
   info.pwTypeIs(pwType);
   info.controlWordIs(controlWord);
   info.groupIdIs(groupId);
   info.pwIdIs(pwId);
   info.paramsIs(params);
   element.pwFwdEqvClsIs(info);
   TRACE(ldpGenMsgParserTrace, traceDetail, "   PW intf params " << flags.stringValue());
   currOffset = infoOffset + pwInfoLen;
   return LdpStatusCode::success;
}

LdpStatusCode LdpFecTlvParser::subTlvRefused(LdpStatusCode code, char const * what) {
   fault(code, Zon::String8(std::string("Invalid PW Intf param element: ") + what + " validation failure"));
   return statusCode();
}

template <typename T>
T const * LdpFecTlvParser::knownSubTlv(LdpPktReader const & params, std::uint32_t offset, std::uint8_t length,
                                       char const * what) {
   // Its fixed part and, when its length octet says more, every octet it claims.
   T const * t = params.view<T const>(offset, std::max<std::uint32_t>(T::wireBytes, length));
   if (!t) {
      fault(malformedTlv, "Invalid PW Intf param element: TLV value is too small");
      return nullptr;
   }
   if (LdpStatusCode const code = t->validate(); code != LdpStatusCode::success) {
      subTlvRefused(code, what);
      return nullptr;
   }
   return t;
}

LdpStatusCode LdpFecTlvParser::parsePwIntfParamSubTlv(LdpPktReader const & params, std::uint32_t & currOffset,
                                                      LdpPwIntfParamFlags & flags, PwFwdEqvClassParams & fecParams) {
   auto const typeOctet = params.u8(currOffset);
   auto const length = params.u8(currOffset + 1);
   if (params.remaining(currOffset) < subTlvHdrBytes || !typeOctet || !length) {
      fault(malformedTlv, "Invalid PW Intf param element: TLV is too small");
      return statusCode();
   }
   switch (LdpPwIntfParamSubTlvType(*typeOctet)) {
    case LdpPwIntfParamSubTlvType::intfMtu: {
      auto const * t = knownSubTlv<LdpPwIntfMtuSubTlv>(params, currOffset, *length, "PW MTU");
      if (!t) {
         return statusCode();
      }
      flags.intfMtuIs(true);
      fecParams.mtuIs(t->mtu());
      break;
    }
    case LdpPwIntfParamSubTlvType::intfDesc: {
      auto const * t = knownSubTlv<LdpPwIntfDescSubTlv>(params, currOffset, *length, "PW Description");
      if (!t) {
         return statusCode();
      }
      flags.intfDescIs(true);
      fecParams.intfDescriptionIs(t->description());
      break;
    }
    case LdpPwIntfParamSubTlvType::requestedVlanId: {
      auto const * t = knownSubTlv<LdpPwRequestedVlanIdSubTlv>(params, currOffset, *length, "Requested VLAN Id");
      if (!t) {
         return statusCode();
      }
      // The VLAN value type refuses 4095 and above.
      try {
         fecParams.requestedVlanIdIs(Pseudowire::VlanIdOrNone(t->vlanId()));
      } catch (Zon::RangeException const &) {
         return subTlvRefused(malformedTlv, "Requested VLAN Id");
      }
      flags.requestedVlanIdIs(true);
      break;
    }
    case LdpPwIntfParamSubTlvType::fragIndicator: {
      auto const * t = knownSubTlv<LdpPwFragIndicatorSubTlv>(params, currOffset, *length, "Fragmentation indicator");
      if (!t) {
         return statusCode();
      }
      flags.fragIndicatorIs(true);
      fecParams.fragCapableIs(t->fragCapable());
      break;
    }
    case LdpPwIntfParamSubTlvType::vccvParam: {
      auto const * t = knownSubTlv<LdpPwVccvParamSubTlv>(params, currOffset, *length, "VCCV param");
      if (!t) {
         return statusCode();
      }
      flags.vccvParamIs(true);
      fecParams.vccvCcTypesIs(t->ccTypes());
      fecParams.vccvCvTypesIs(t->cvTypes());
      break;
    }
    default:
      if (*length < subTlvHdrBytes) {
         fault(badTlvLength, "Invalid PW Intf param element: Unrecognized packet invalid length");
         return statusCode();
      }
      TRACE(ldpGenMsgParserTrace, traceDetail,
            Zon::format("Ignoring unrecognized PW intf sub-TLV (code 0x%.2x)", unsigned(*typeOctet)));
      break;
   }
   // A known sub-TLV that validated has a length of at least 2, like an
   // unrecognized one that is skipped: every step makes progress.
   currOffset += *length;
   return LdpStatusCode::success;
}

// ---- text ------------------------------------------------------------------

Zon::String8 LdpFecTlvParser::stringValue() const {
   if (!valid()) {
      return Zon::String8("Error FEC TLV: " + reason());
   }
   std::string s;
   Entry const * e = entries();
   for (std::uint32_t i = 0; i < count_; ++i) {
      if (i != 0) {
         s += "; ";
      }
      s += elementText(*e[i].element);
   }
   return Zon::String8(std::move(s));
}

Zon::Ptr<LdpFecTlvParser> ldpFecTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset,
                                                 Zon::Ptr<LdpProtoParam const> const & protoParam) {
   return Zon::validPtr(Zon::makePtr<LdpFecTlvParser>(pkt, offset, protoParam));
}

} // namespace Ldp
