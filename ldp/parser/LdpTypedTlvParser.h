// TLV parsers: one TLV of a received buffer, addressed by offset and read in place.
// LdpTlvParser reads the common header; each typed parser sees the same bytes as
// its TLV value type (header2()) and answers that type's fields, validate() and
// text form.
//
// Nothing here reads outside the TLV's bound: the received bytes, or the item that
// holds the TLV (a message parser bounds the TLV parsers it builds by the
// message). The header view exists only when the TLV's four header bytes lie in
// the bound, header2() only when the TLV's bytes, as far as its own length field
// says, lie in it and cover the value type. Without a view every accessor answers
// 0 (false, or the empty string for stringValue()), with one exception:
// validate() of a TLV whose header was received but that does not lie wholly in
// its bound is badTlvLength. A TLV
// received whole but shorter than its value type still validates and prints as
// its value type says (its header alone decides that).
#pragma once

#include <cstdint>
#include <utility>

#include "ldp/parser/LdpPktReader.h"
#include "ldp/wire/LdpHdr.h"
#include "ldp/wire/LdpIdentifier.h"
#include "ldp/wire/LdpTlv.h"
#include "ldp/wire/LdpWireEnums.h"
#include "vorin/IpAddr.h"
#include "vorin/Pkt.h"
#include "zon/Ptr.h"
#include "zon/String.h"

namespace Ldp {

class LdpTlvParser : public Zon::PtrInterface {
 public:
   using Ptr = Zon::Ptr<LdpTlvParser>;

   // The TLV at `offset`, bounded by the packet's front bytes, or by `bound`, the
   // reader of the item that holds it.
   LdpTlvParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);
   LdpTlvParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset, LdpPktReader const & bound);

   Zon::Ptr<Vorin::Pkt> const & pkt() const noexcept { return pkt_; }
   std::uint32_t offset() const noexcept { return offset_; }
   // The TLV header; null when its four bytes do not lie in the bound.
   LdpTlvHdr * header() const noexcept { return header_; }

   LdpTlvType type() const noexcept { return header_ ? header_->type() : LdpTlvType(0); }
   bool unknown() const noexcept { return header_ && header_->unknown(); }
   bool forwardUnknown() const noexcept { return header_ && header_->forwardUnknown(); }
   std::uint16_t length() const noexcept { return header_ ? header_->length() : 0; }

 protected:
   ~LdpTlvParser() override = default;

   // True when the whole TLV, header and value as far as its length field says,
   // lies in the bound.
   bool received() const noexcept { return header_ && tlv_.contains(offset_, byteSize()); }
   // True when the header was received but does not lie in the bound (its
   // length wraps the item size that the bound's framing counted).
   bool headerCut() const noexcept { return headerCut_; }
   // The TLV seen as T; null unless the whole TLV lies in the bound and covers T.
   template <typename T>
   T * viewAs() const noexcept {
      return header_ ? tlv_.view<T>(offset_, byteSize()) : nullptr;
   }
   // Header and value as the length field says, without the 16-bit wrap of
   // totalLength(): a length of 0xFFFC claims 65536 bytes, not 0.
   // Needs the header.
   std::uint32_t byteSize() const noexcept {
      return std::uint32_t(header_->length()) + LdpTlvHdr::tlvHdrSizeExclude;
   }

 private:
   void handleHeader(LdpPktReader const & bound);

   Zon::Ptr<Vorin::Pkt> pkt_;
   std::uint32_t offset_;
   LdpTlvHdr * header_ = nullptr;
   // The reader of the TLV itself, cut from its bound.
   LdpPktReader tlv_;
   bool headerCut_ = false;
};

// The part every typed parser shares: header2(), validate() and stringValue() of
// the value type T.
template <typename T>
class LdpTypedTlvParser : public LdpTlvParser {
 public:
   using TlvType = T;

   // The TLV seen as T; null unless its bytes were received and cover T.
   T * header2() const noexcept { return viewAs<T>(); }

   // T's validate(); success (0) without a header, badTlvLength when the TLV
   // runs past its bound.
   LdpStatusCode validate() const;
   // T's text form; empty when the TLV was not received whole.
   Zon::String8 stringValue() const;

 protected:
   using LdpTlvParser::LdpTlvParser;
   ~LdpTypedTlvParser() override = default;

   // The field that `get` reads from header2(), or `none` without the view.
   template <typename F, typename R = decltype(std::declval<F>()(std::declval<T const &>()))>
   R field(F get, R none = R()) const noexcept {
      T const * t = header2();
      return t ? get(*t) : none;
   }

 private:
   // A TLV received whole but shorter than T: its header in an otherwise zeroed T,
   // whose validate() and text form then depend on the header alone.
   bool shortTlv(T & standIn) const noexcept;
};

Zon::Ptr<LdpTlvParser> ldpTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

} // namespace Ldp
