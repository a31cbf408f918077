// Splits a run of consecutive type-length-value items (the messages of a PDU body,
// or the TLVs of a message body) into the offsets at which the items begin. Only
// the framing is checked: each item's total size is its 16-bit length field plus 4,
// and the items must fill the group exactly.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "ldp/parser/LdpParseFault.h"
#include "vorin/Pkt.h"
#include "zon/BlockPool.h"
#include "zon/Ptr.h"
#include "zon/String.h"

namespace Ldp {

class LdpTlvGroupParser : public Zon::PtrInterface, public Zon::PoolAllocated {
 public:
   using Ptr = Zon::Ptr<LdpTlvGroupParser>;
   // An item index and its offset. Left uninitialised until stored: only the
   // first tlvNum() entries are ever read.
   struct Entry {
      std::uint32_t index;
      std::uint32_t offset;
   };

   // Written out, so that makePtr's value-initialisation does not zero the
   // whole object (the inline entries are left unset on purpose).
   LdpTlvGroupParser() noexcept {}
   explicit LdpTlvGroupParser(Zon::String8 name) : name_(std::move(name)) {}

   Zon::String8 const & name() const noexcept { return name_; }
   Zon::Ptr<Vorin::Pkt> const & pkt() const noexcept { return pkt_; }
   void pktIs(Zon::Ptr<Vorin::Pkt> pkt) noexcept { pkt_ = std::move(pkt); }
   std::uint32_t offset() const noexcept { return offset_; }
   void offsetIs(std::uint32_t o) noexcept { offset_ = o; }
   std::uint32_t size() const noexcept { return size_; }
   void sizeIs(std::uint32_t s) noexcept { size_ = s; }

   LdpStatusCode statusCode() const noexcept { return result_.statusCode(); }
   void statusCodeIs(LdpStatusCode c) noexcept { result_.statusCodeIs(c); }
   Zon::String8 const & reason() const noexcept { return result_.reason(); }
   void reasonIs(Zon::String8 r) { result_.reasonIs(std::move(r)); }
   bool valid() const noexcept { return result_.ok(); }

   // The ordered collection item index -> offset.
   std::uint32_t tlvNum() const noexcept { return count_; }
   // Offset of item `index`; 0 when there is no such entry.
   std::uint32_t tlvOffset(std::uint32_t index) const noexcept {
      Entry const * e = entries();
      if (index < count_ && e[index].index == index) { // the usual dense case
         return e[index].offset;
      }
      return sparseTlvOffset(index);
   }
   void tlvOffsetIs(std::uint32_t index, std::uint32_t offset) {
      // The split appends in index order: no search, no move.
      if (count_ == 0 || entries()[count_ - 1].index < index) {
         if (!heap_.empty()) {
            heap_.push_back(Entry{index, offset});
            ++count_;
            return;
         }
         if (count_ < inlineEntries) {
            inline_[count_++] = Entry{index, offset};
            return;
         }
      }
      insertTlvOffset(index, offset);
   }
   void tlvOffsetDel(std::uint32_t index) noexcept;
   void tlvOffsetDelAll() noexcept;
   // Splits the group; always returns true, the outcome is in statusCode/reason.
   bool parseTlvGroup();

 private:
   static constexpr std::uint32_t inlineEntries = 8;
   std::uint32_t sparseTlvOffset(std::uint32_t index) const noexcept;
   void insertTlvOffset(std::uint32_t index, std::uint32_t offset);
   Entry * entries() noexcept { return heap_.empty() ? inline_ : heap_.data(); }
   Entry const * entries() const noexcept { return heap_.empty() ? inline_ : heap_.data(); }

   Zon::String8 name_;
   Zon::Ptr<Vorin::Pkt> pkt_;
   std::uint32_t offset_ = 0;
   std::uint32_t size_ = 0;
   LdpParseFault result_;
   // Most groups hold a few items: they live inline, larger ones move to the heap.
   std::uint32_t count_ = 0;
   Entry inline_[inlineEntries];
   std::vector<Entry> heap_;
};

Zon::Ptr<LdpTlvGroupParser> ldpTlvGroupParserFactory(Zon::String8 const & name);

} // namespace Ldp
