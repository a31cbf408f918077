// The FEC TLV parser: splits the value of one FEC TLV (type 0x0100) into its FEC
// elements, checks each against its layout and keeps them, in wire order, as
// element objects keyed by their index. Like the message parsers it never throws
// on received bytes: a fault ends as a status code and a reason, the first one
// wins, and the elements parsed before it stay in the collection.
//
// Every read goes through a reader bounded by the TLV's value (which must lie in
// the message that holds it), and a PWid
// element's interface parameters through a reader bounded by its PW information,
// so an element can never run into the next TLV, nor a sub-TLV into the next
// element.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "ldp/wire/LdpProtoParam.h"
#include "ldp/parser/LdpParseFault.h"
#include "ldp/parser/LdpPktReader.h"
#include "ldp/wire/LdpFecElement.h"
#include "ldp/wire/LdpPwHdr.h"
#include "ldp/wire/LdpWireEnums.h"
#include "vorin/Pkt.h"
#include "zon/BlockPool.h"
#include "zon/Ptr.h"
#include "zon/String.h"

namespace Ldp {

class LdpFecTlvParser : public Zon::PtrInterface, public Zon::PoolAllocated {
 public:
   using Ptr = Zon::Ptr<LdpFecTlvParser>;
   using ElementPtr = Zon::Ptr<LdpFecTlvElement const>;
   struct Entry {
      std::uint32_t index = 0;
      ElementPtr element;
   };

   // Parses the FEC TLV whose header lies at `offset`. Under the strict rule a
   // Wildcard element must be the only element of the TLV; without it a Wildcard
   // is accepted at any place. The rule is strict without protocol parameters
   // (the message parsers pass none) and when their
   // fecTlvStrictPrefixWildcardOnlyElement is set.
   // The TLV must lie in `*bound`, the reader of the item that holds it (a
   // message parser passes its message's); without one, in the packet's front
   // bytes. The bound is read while the parser is built, not kept.
   LdpFecTlvParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset,
                   Zon::Ptr<LdpProtoParam const> const & protoParam, LdpPktReader const * bound = nullptr);

   Zon::Ptr<Vorin::Pkt> const & pkt() const noexcept { return pkt_; }
   std::uint32_t offset() const noexcept { return offset_; }
   Zon::Ptr<LdpProtoParam const> const & protoParam() const noexcept { return protoParam_; }
   // Whether the strict Wildcard rule applied to this parse.
   bool strict() const noexcept { return strict_; }
   LdpStatusCode statusCode() const noexcept { return result_.statusCode(); }
   Zon::String8 const & reason() const noexcept { return result_.reason(); }
   bool valid() const noexcept { return result_.ok(); }
   bool hasWildcardFecElement() const noexcept { return hasWildcardFecElement_; }
   bool initialized() const noexcept { return initialized_; }

   void statusCodeIs(LdpStatusCode c) noexcept { result_.statusCodeIs(c); }
   void reasonIs(Zon::String8 r) { result_.reasonIs(std::move(r)); }
   void hasWildcardFecElementIs(bool v) noexcept { hasWildcardFecElement_ = v; }

   // The collection element index -> element. Most FEC TLVs hold one element: it
   // is stored inline, a second one moves the entries to the heap.
   std::uint32_t fecElementNum() const noexcept { return count_; }
   // The element stored under `index`; null when there is none.
   ElementPtr fecElement(std::uint32_t index) const noexcept;
   // Inserts or replaces.
   void fecElementIs(std::uint32_t index, ElementPtr element);
   // Inserts when `index` is free; returns the element stored under it (the
   // existing one when the index was taken).
   ElementPtr newFecElement(std::uint32_t index, ElementPtr element);
   void fecElementDel(std::uint32_t index) noexcept;
   void fecElementDelAll() noexcept;

   // The elements, one after the other, separated by "; ":
   //    "Wildcard FEC Element"
   //    "Prefix FEC Element, Address Family: 1, PreLen: 24, Prefix: 10.1.0.0/24"
   //    "Host Address FEC Element, Address Family: 1, HostAddrLen: 4, Addr: 10.0.0.1"
   //    a PWid element's own text form
   // An invalid parser gives "Error FEC TLV: " and its reason.
   Zon::String8 stringValue() const;

   // The steps of the parse, run from the constructor. parseFecTlvPwIdElement
   // parses the PWid element at `currOffset` (moved past it on success) whose FEC
   // TLV value ends at `endOffset`, and fills `element`; parsePwIntfParamSubTlv
   // parses the interface parameter sub-TLV at `currOffset` (moved past it), read
   // through `params`, the reader of the element's PW information. Both record
   // their fault in this parser and return its status code.
   void parseElements(LdpPktReader const * bound);
   LdpStatusCode parseFecTlvPwIdElement(std::uint32_t & currOffset, std::uint32_t endOffset,
                                        LdpFecTlvPwIdElement & element);
   LdpStatusCode parsePwIntfParamSubTlv(LdpPktReader const & params, std::uint32_t & currOffset,
                                        LdpPwIntfParamFlags & flags, PwFwdEqvClassParams & fecParams);

 protected:
   ~LdpFecTlvParser() override = default;

 private:
   void handleInitialized(LdpPktReader const * bound);
   bool fault(LdpStatusCode code, Zon::String8 reason);
   // The element parsers of the IP elements; true when the element was accepted.
   bool parseWildcardElement(std::uint32_t & currOffset, std::uint32_t valueOffset, std::uint32_t endOffset);
   bool parsePrefixElement(std::uint32_t & currOffset, std::uint32_t endOffset);
   bool parseHostAddrElement(std::uint32_t & currOffset, std::uint32_t endOffset);
   // A known interface parameter sub-TLV of value type T at `offset` whose length
   // octet is `length`: its view when every octet it claims is in the PW
   // information and its validate() passes; else null after a fault whose reason
   // names it by `what`.
   template <typename T>
   T const * knownSubTlv(LdpPktReader const & params, std::uint32_t offset, std::uint8_t length, char const * what);
   // The value fault of a known sub-TLV named `what`; returns its code.
   LdpStatusCode subTlvRefused(LdpStatusCode code, char const * what);
   // Stores `element` under the next index.
   void appendElement(ElementPtr element);

   Entry * entries() noexcept { return heap_.empty() ? &inline_ : heap_.data(); }
   Entry const * entries() const noexcept { return heap_.empty() ? &inline_ : heap_.data(); }

   Zon::Ptr<Vorin::Pkt> pkt_;
   std::uint32_t offset_;
   Zon::Ptr<LdpProtoParam const> protoParam_;
   bool strict_;
   bool hasWildcardFecElement_ = false;
   bool initialized_ = false;
   LdpParseFault result_;
   // The reader of the FEC TLV's value.
   LdpPktReader value_;
   std::uint32_t count_ = 0;
   Entry inline_;
   std::vector<Entry> heap_;
};

Zon::Ptr<LdpFecTlvParser> ldpFecTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset,
                                                 Zon::Ptr<LdpProtoParam const> const & protoParam = nullptr);

} // namespace Ldp
