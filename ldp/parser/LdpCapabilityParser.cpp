#include "ldp/parser/LdpCapabilityParser.h"

#include <algorithm>

namespace Ldp {

// ---- LdpCapabilityMap ------------------------------------------------------

LdpCapabilityMap::Entry * LdpCapabilityMap::position(LdpTlvType type) noexcept {
   Entry * e = data();
   return std::lower_bound(e, e + count_, type, [](Entry const & a, LdpTlvType t) { return a.type < t; });
}

LdpCapabilityParameterTlv * LdpCapabilityMap::find(LdpTlvType type) const noexcept {
   for (Entry const & e : entries()) {
      if (e.type == type) {
         return e.tlv;
      }
   }
   return nullptr;
}

void LdpCapabilityMap::set(LdpTlvType type, LdpCapabilityParameterTlv * tlv) {
   Entry * it = position(type);
   if (it != data() + count_ && it->type == type) {
      it->tlv = tlv;
      return;
   }
   auto const pos = static_cast<std::size_t>(it - data());
   if (heap_.empty() && count_ < inlineEntries) {
      std::move_backward(inline_ + pos, inline_ + count_, inline_ + count_ + 1);
      inline_[pos] = {type, tlv};
   } else {
      if (heap_.empty()) {
         heap_.assign(inline_, inline_ + count_);
      }
      heap_.insert(heap_.begin() + static_cast<std::ptrdiff_t>(pos), Entry{type, tlv});
   }
   ++count_;
}

LdpCapabilityParameterTlv * LdpCapabilityMap::insert(LdpTlvType type, LdpCapabilityParameterTlv * tlv) {
   if (Entry * it = position(type); it != data() + count_ && it->type == type) {
      return it->tlv;
   }
   set(type, tlv);
   return tlv;
}

void LdpCapabilityMap::erase(LdpTlvType type) noexcept {
   Entry * it = position(type);
   if (it == data() + count_ || it->type != type) {
      return;
   }
   if (heap_.empty()) {
      std::move(it + 1, inline_ + count_, it);
   } else {
      heap_.erase(heap_.begin() + (it - heap_.data()));
   }
   --count_;
}

void LdpCapabilityMap::clear() noexcept {
   heap_.clear();
   count_ = 0;
}

// ---- LdpCapabilityParser ---------------------------------------------------

namespace {

// The capability TLV types whose length must be exactly 1 (the state octet
// alone); the others carry data and need at least 1.
bool stateOctetOnly(LdpTlvType type) noexcept {
   switch (type) {
    case LdpTlvType::multiTopologyCapabilityTlv:
    case LdpTlvType::stateAdvertisementControlCapabilityTlv:
    case LdpTlvType::targetedApplicationCapabilityTlv:
      return false;
    default:
      return true;
   }
}

} // namespace

LdpCapabilityParser::LdpCapabilityParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset)
    : LdpMsgParser(pkt, offset) {}

void LdpCapabilityParser::parseCapabilityTlvs() {
   if (!tlvGroupParser()->valid()) {
      faultFrom(*tlvGroupParser());
      return;
   }
   if (!validMsg()) {
      return;
   }
   for (std::uint32_t i = 0; i < tlvNum(); ++i) {
      LdpTlvHdr const h = tlvHdrAt(i);
      auto const code = static_cast<std::uint16_t>(h.type());
      if (code < firstCapabilityType || code > lastCapabilityType) {
         continue;
      }
      LdpTlvType const type = h.type();
      // A view exists only when the TLV's whole extent was received and holds the
      // state octet; a length near 0xFFFF that the group parser's 16-bit sizes
      // wrapped is refused with the other wrong lengths.
      auto * tlv = tlvAs<LdpCapabilityParameterTlv>(i);
      bool const rightSize = stateOctetOnly(type) ? h.length() == 1 : h.length() >= 1;
      if (!tlv || !rightSize) {
         fault(LdpStatusCode::malformedTlv, Zon::String8(Ldp::stringValue(type) + " TLV is not the right size"));
         return;
      }
      capabilitiesIs(type, tlv);
   }
}

std::string LdpCapabilityParser::capabilitiesText() const {
   std::string s;
   for (auto const & [type, tlv] : capabilities()) {
      s += "\n   ";
      s += tlv ? tlv->stringValue() : Ldp::stringValue(type);
   }
   return s;
}

} // namespace Ldp
