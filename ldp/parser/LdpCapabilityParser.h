// The common base of the Initialization and Capability message parsers: picks the
// capability parameter TLVs (types 0x0506..0x050F) out of the message's TLVs,
// checks each one's length and records it by TLV type. The records are views into
// the packet; the state bit and any capability data are read from them by the
// agent.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "ldp/parser/LdpMsgParser.h"
#include "ldp/wire/LdpTlv.h"
#include "ldp/wire/LdpWireEnums.h"

namespace Ldp {

// A small map TLV type -> capability TLV view, ordered by type. A message
// announces a handful of capabilities at most: they live inline, and only an
// unusually long list moves to the heap.
class LdpCapabilityMap {
 public:
   struct Entry {
      LdpTlvType type{};
      LdpCapabilityParameterTlv * tlv = nullptr;
   };

   LdpCapabilityMap() noexcept = default;
   LdpCapabilityMap(LdpCapabilityMap const &) = delete;
   LdpCapabilityMap & operator=(LdpCapabilityMap const &) = delete;

   std::uint32_t size() const noexcept { return count_; }
   // Entries in type order.
   std::span<Entry const> entries() const noexcept { return {data(), count_}; }
   // The view of `type`; null when absent.
   LdpCapabilityParameterTlv * find(LdpTlvType type) const noexcept;
   // Inserts or replaces.
   void set(LdpTlvType type, LdpCapabilityParameterTlv * tlv);
   // Inserts only when `type` is absent; returns the stored view.
   LdpCapabilityParameterTlv * insert(LdpTlvType type, LdpCapabilityParameterTlv * tlv);
   void erase(LdpTlvType type) noexcept;
   void clear() noexcept;

 private:
   static constexpr std::uint32_t inlineEntries = 4;
   Entry * data() noexcept { return heap_.empty() ? inline_ : heap_.data(); }
   Entry const * data() const noexcept { return heap_.empty() ? inline_ : heap_.data(); }
   // Where `type` is or would go.
   Entry * position(LdpTlvType type) noexcept;

   std::uint32_t count_ = 0;
   Entry inline_[inlineEntries] = {};
   std::vector<Entry> heap_;
};

class LdpCapabilityParser : public LdpMsgParser {
 public:
   using Ptr = Zon::Ptr<LdpCapabilityParser>;

   // First and last capability parameter TLV types.
   static constexpr std::uint16_t firstCapabilityType = 0x0506;
   static constexpr std::uint16_t lastCapabilityType = 0x050F;

   // The base constructor only: the subclasses run parseCapabilityTlvs().
   LdpCapabilityParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

   // The collection `capabilities`: TLV type -> view of the TLV in the packet.
   LdpCapabilityParameterTlv * capabilities(LdpTlvType type) const noexcept { return capabilities_.find(type); }
   // Recorded capabilities in type order.
   std::span<LdpCapabilityMap::Entry const> capabilities() const noexcept { return capabilities_.entries(); }
   std::uint32_t capabilitiesNum() const noexcept { return capabilities_.size(); }
   void capabilitiesIs(LdpTlvType type, LdpCapabilityParameterTlv * tlv) { capabilities_.set(type, tlv); }
   // Creates the entry when absent; returns the stored view.
   LdpCapabilityParameterTlv * newCapabilities(LdpTlvType type, LdpCapabilityParameterTlv * tlv) {
      return capabilities_.insert(type, tlv);
   }
   void capabilitiesDel(LdpTlvType type) noexcept { capabilities_.erase(type); }
   void capabilitiesDelAll() noexcept { capabilities_.clear(); }

   // Records every capability TLV of the message whose length suits its type; a
   // wrong length ends the walk with malformedTlv and "<type> TLV is not the right
   // size". Entries recorded before a fault stay. A fault already recorded on the
   // message stands: nothing is examined after it.
   void parseCapabilityTlvs();

   char const * fwkType() const noexcept override { return "Ldp::LdpCapabilityParser"; }

 protected:
   ~LdpCapabilityParser() override = default;

   // "\n   " and the text of each recorded capability, in type order.
   std::string capabilitiesText() const;

 private:
   LdpCapabilityMap capabilities_;
};

} // namespace Ldp
