#include "ldp/parser/LdpTlvGroupParser.h"

#include <algorithm>

#include "ldp/parser/LdpPktReader.h"
#include "zon/Assert.h"

namespace Ldp {

namespace {
constexpr std::uint32_t itemHdrBytes = 4; // type word and length, shared by messages and TLVs
}

std::uint32_t LdpTlvGroupParser::sparseTlvOffset(std::uint32_t index) const noexcept {
   Entry const * e = entries();
   Entry const * it = std::lower_bound(e, e + count_, index,
                                       [](Entry const & a, std::uint32_t i) { return a.index < i; });
   return it != e + count_ && it->index == index ? it->offset : 0;
}

void LdpTlvGroupParser::insertTlvOffset(std::uint32_t index, std::uint32_t offset) {
   Entry * e = entries();
   Entry * it = std::lower_bound(e, e + count_, index,
                                 [](Entry const & a, std::uint32_t i) { return a.index < i; });
   if (it != e + count_ && it->index == index) {
      it->offset = offset;
      return;
   }
   auto const pos = static_cast<std::size_t>(it - e);
   if (heap_.empty() && count_ < inlineEntries) {
      std::move_backward(inline_ + pos, inline_ + count_, inline_ + count_ + 1);
      inline_[pos] = {index, offset};
   } else {
      if (heap_.empty()) {
         // A PDU body of many messages: grow in few steps.
         heap_.reserve(4 * inlineEntries);
         heap_.assign(inline_, inline_ + count_);
      }
      heap_.insert(heap_.begin() + static_cast<std::ptrdiff_t>(pos), Entry{index, offset});
   }
   ++count_;
}

void LdpTlvGroupParser::tlvOffsetDel(std::uint32_t index) noexcept {
   Entry * e = entries();
   Entry * it = std::lower_bound(e, e + count_, index,
                                 [](Entry const & a, std::uint32_t i) { return a.index < i; });
   if (it == e + count_ || it->index != index) {
      return;
   }
   if (heap_.empty()) {
      std::move(it + 1, e + count_, it);
   } else {
      heap_.erase(heap_.begin() + (it - e));
   }
   --count_;
}

void LdpTlvGroupParser::tlvOffsetDelAll() noexcept {
   count_ = 0;
   heap_.clear();
}

bool LdpTlvGroupParser::parseTlvGroup() {
   Trace::Source const & trace = ldpGenMsgParserTrace;
   ZON_ASSERT_TEXT(pkt_ && pkt_->frontBytes() >= offset_, "pkt_->frontBytes() >= offset_");
   TRACE(trace, traceDetail,
         "Parse packet frontBytes: " << pkt_->frontBytes() << ", offset: " << offset_ << ", size " << size_);
   result_ = LdpParseFault();
   if (size_ == 0) {
      return true;
   }
   std::uint32_t const frontBytes = pkt_->frontBytes();
   if (std::uint64_t(offset_) + size_ > frontBytes) {
      result_.fault(LdpStatusCode::badTlvLength, Zon::format("Packet is too small, size: %d", frontBytes), trace);
      return true;
   }
   // The walk reads only through the bounded reader; the per-item trace is
   // decided once.
   LdpPktReader const reader(*pkt_);
   bool const detail = trace.enabled(traceDetail);
   std::uint32_t index = 0;
   std::uint32_t consumed = 0;
   std::uint32_t current = offset_;
   while (true) {
      // The item header's four bytes must have been received (they may lie
      // behind the group: the size check below refuses such an item).
      auto const length = reader.u16(current + 2);
      if (!length) {
         result_.fault(LdpStatusCode::badTlvLength, Zon::String8("Msg/Tlv header is corrupted"), trace);
         return true;
      }
      std::uint16_t const total = static_cast<std::uint16_t>(*length + itemHdrBytes);
      if (detail) {
         TRACE(trace, traceDetail, "   Msg/TLV " << index << ": offset " << current << ", size " << total);
      }
      if (total == 0) {
         // A length field of 0xFFFC wraps the item size to 0: a peer's corrupt
         // header, refused so that the walk always advances.
         result_.fault(LdpStatusCode::badTlvLength, Zon::String8("Msg/Tlv header is corrupted"), trace);
         return true;
      }
      consumed += total;
      if (consumed > size_) {
         result_.fault(LdpStatusCode::badTlvLength, Zon::String8("Msg/Tlv is corrupted/truncated"), trace);
         return true;
      }
      tlvOffsetIs(index, current);
      current += total;
      if (consumed == size_) {
         return true;
      }
      ++index;
   }
}

Zon::Ptr<LdpTlvGroupParser> ldpTlvGroupParserFactory(Zon::String8 const & name) {
   // Every message's parser asks for an unnamed group: no string to copy.
   return Zon::validPtr(name.empty() ? Zon::makePtr<LdpTlvGroupParser>() : Zon::makePtr<LdpTlvGroupParser>(name));
}

} // namespace Ldp
