// Pseudowire value types: the 15-bit PW type, the group and PW identifiers, the
// VLAN id that a pseudowire may request, the key of a pseudowire's LDP request,
// the state of its local connector and the PW status bits signalled to the peer.
#pragma once

#include <compare>
#include <cstdint>
#include <functional>

#include "vorin/IpAddr.h"
#include "zon/Enum.h"
#include "zon/String.h"

namespace Pseudowire {

// PW types of the IANA registry; values without an enumerator are kept as numbers.
#define PSEUDOWIRE_TYPES(X)                                                             \
   X(pwTypeUnknown, 0x0000)                                                             \
   X(frameRelayDlci, 0x0001)                                                            \
   X(atmAal5Sdu, 0x0002)                                                                \
   X(atmTransparent, 0x0003)                                                            \
   X(ethernetTagged, 0x0004)                                                            \
   X(ethernet, 0x0005)                                                                  \
   X(hdlc, 0x0006)                                                                      \
   X(ppp, 0x0007)

enum class PseudowireType : std::uint16_t { PSEUDOWIRE_TYPES(ZON_ENUMERATOR) };
ZON_ENUM_DECLARE(PseudowireType);

// The state of the attachment circuit side of a pseudowire, as the pseudowire
// manager reports it; 0 until it has reported.
#define PSEUDOWIRE_CONNECTOR_STATUSES(X)                                                \
   X(connectorStatusUnknown, 0)                                                         \
   X(connectorUp, 1)                                                                    \
   X(connectorDown, 2)                                                                  \
   X(connectorAdminDown, 3)

enum class PseudowireConnectorStatus : std::uint8_t { PSEUDOWIRE_CONNECTOR_STATUSES(ZON_ENUMERATOR) };
ZON_ENUM_DECLARE(PseudowireConnectorStatus);

class GroupId {
 public:
   constexpr GroupId() noexcept = default;
   constexpr explicit GroupId(std::uint32_t v) noexcept : value_(v) {}
   constexpr std::uint32_t value() const noexcept { return value_; }
   Zon::String8 stringValue() const;
   constexpr auto operator<=>(GroupId const &) const noexcept = default;

 private:
   std::uint32_t value_ = 0;
};

class PseudowireId {
 public:
   constexpr PseudowireId() noexcept = default;
   constexpr explicit PseudowireId(std::uint32_t v) noexcept : value_(v) {}
   constexpr std::uint32_t value() const noexcept { return value_; }
   Zon::String8 stringValue() const;
   constexpr auto operator<=>(PseudowireId const &) const noexcept = default;

 private:
   std::uint32_t value_ = 0;
};

// A VLAN id from 0 to 4094; RangeException "VlanIdOrNone::value > 4094 not allowed"
// above that.
class VlanIdOrNone {
 public:
   static constexpr std::uint16_t max = 4094;
   constexpr VlanIdOrNone() noexcept = default;
   explicit VlanIdOrNone(std::uint32_t v);
   constexpr std::uint16_t value() const noexcept { return value_; }
   Zon::String8 stringValue() const;
   constexpr auto operator<=>(VlanIdOrNone const &) const noexcept = default;

 private:
   std::uint16_t value_ = 0;
};

// The status bits that the PW status TLV carries: 0 means forwarding.
// Bits without a name are kept. Text: eight hex digits, "0x00000003".
class PseudowireLdpStatusFlags {
 public:
   static constexpr unsigned bitPwNotForwarding = 0;
   static constexpr unsigned bitLocalAcRxFault = 1;  // attachment circuit, ingress
   static constexpr unsigned bitLocalAcTxFault = 2;  // attachment circuit, egress
   static constexpr unsigned bitLocalPsnRxFault = 3; // PSN-facing side, ingress
   static constexpr unsigned bitLocalPsnTxFault = 4; // PSN-facing side, egress

   constexpr PseudowireLdpStatusFlags() noexcept = default;
   constexpr explicit PseudowireLdpStatusFlags(std::uint32_t v) noexcept : value_(v) {}
   // "0x0000001f" (any case, "0x" optional); ParseException otherwise.
   static PseudowireLdpStatusFlags fromString(std::string_view text);

   constexpr std::uint32_t value() const noexcept { return value_; }
   constexpr bool isForwarding() const noexcept { return value_ == 0; }
   constexpr bool pwNotForwarding() const noexcept { return bit(bitPwNotForwarding); }
   constexpr bool localAcRxFault() const noexcept { return bit(bitLocalAcRxFault); }
   constexpr bool localAcTxFault() const noexcept { return bit(bitLocalAcTxFault); }
   constexpr bool localPsnRxFault() const noexcept { return bit(bitLocalPsnRxFault); }
   constexpr bool localPsnTxFault() const noexcept { return bit(bitLocalPsnTxFault); }
   constexpr void pwNotForwardingIs(bool on) noexcept { bitIs(bitPwNotForwarding, on); }
   constexpr void localAcRxFaultIs(bool on) noexcept { bitIs(bitLocalAcRxFault, on); }
   constexpr void localAcTxFaultIs(bool on) noexcept { bitIs(bitLocalAcTxFault, on); }
   constexpr void localPsnRxFaultIs(bool on) noexcept { bitIs(bitLocalPsnRxFault, on); }
   constexpr void localPsnTxFaultIs(bool on) noexcept { bitIs(bitLocalPsnTxFault, on); }

   Zon::String8 stringValue() const;
   constexpr auto operator<=>(PseudowireLdpStatusFlags const &) const noexcept = default;

 private:
   constexpr bool bit(unsigned b) const noexcept { return (value_ >> b & 1u) != 0; }
   constexpr void bitIs(unsigned b, bool on) noexcept { value_ = on ? value_ | 1u << b : value_ & ~(1u << b); }
   std::uint32_t value_ = 0;
};

// Names one pseudowire that the pseudowire manager asks LDP to signal: the peer's
// address and the PW id. Ordered by peer, then id. Text:
// Value('Pseudowire::PseudowireLdpRequestKey', ** {'peer': 10.0.0.2, 'pwId': 100})
class PseudowireLdpRequestKey {
 public:
   PseudowireLdpRequestKey() noexcept = default;
   PseudowireLdpRequestKey(Vorin::IpGenAddr const & peer, PseudowireId pwId) noexcept : peer_(peer), pwId_(pwId) {}
   static PseudowireLdpRequestKey fromString(std::string_view text);

   Vorin::IpGenAddr const & peer() const noexcept { return peer_; }
   PseudowireId pwId() const noexcept { return pwId_; }

   Zon::String8 stringValue() const;
   bool operator==(PseudowireLdpRequestKey const &) const noexcept = default;
   auto operator<=>(PseudowireLdpRequestKey const &) const noexcept = default;

 private:
   Vorin::IpGenAddr peer_;
   PseudowireId pwId_;
};

} // namespace Pseudowire

ZON_ENUM_TRAITS(Pseudowire::PseudowireType);
ZON_ENUM_TRAITS(Pseudowire::PseudowireConnectorStatus);

template <>
struct std::hash<Pseudowire::PseudowireId> {
   std::size_t operator()(Pseudowire::PseudowireId i) const noexcept { return i.value(); }
};
template <>
struct std::hash<Pseudowire::PseudowireLdpStatusFlags> {
   std::size_t operator()(Pseudowire::PseudowireLdpStatusFlags f) const noexcept { return f.value(); }
};
template <>
struct std::hash<Pseudowire::PseudowireLdpRequestKey> {
   std::size_t operator()(Pseudowire::PseudowireLdpRequestKey const & k) const noexcept {
      return std::hash<Vorin::IpGenAddr>()(k.peer()) * 31u + k.pwId().value();
   }
};
