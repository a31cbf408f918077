// The vocabulary of the LDP wire: message types, TLV types, status codes, FEC
// element types and pseudowire interface parameter sub-TLV types. Enumerator
// names are also the text forms.
#pragma once

#include <cstdint>

#include "zon/Enum.h"

namespace Ldp {

#define LDP_MSG_TYPES(X)                                                                \
   X(LdpNotification, 0x0001)                                                           \
   X(LdpHello, 0x0100)                                                                  \
   X(LdpInit, 0x0200)                                                                   \
   X(LdpKeepAlive, 0x0201)                                                              \
   X(LdpCapability, 0x0202)                                                             \
   X(LdpAddress, 0x0300)                                                                \
   X(LdpAddressWithdraw, 0x0301)                                                        \
   X(LdpLabelMapping, 0x0400)                                                           \
   X(LdpLabelRequest, 0x0401)                                                           \
   X(LdpLabelWithdraw, 0x0402)                                                          \
   X(LdpLabelRelease, 0x0403)                                                           \
   X(LdpLabelAbortReq, 0x0404)

#define LDP_TLV_TYPES(X)                                                                \
   X(fecTlv, 0x0100)                                                                    \
   X(addrListTlv, 0x0101)                                                               \
   X(hopCountTlv, 0x0103)                                                               \
   X(pathVectorTlv, 0x0104)                                                             \
   X(genLabelTlv, 0x0200)                                                               \
   X(atmLabelTlv, 0x0201)                                                               \
   X(frLabelTlv, 0x0202)                                                                \
   X(statusTlv, 0x0300)                                                                 \
   X(extStatusTlv, 0x0301)                                                              \
   X(retPduTlv, 0x0302)                                                                 \
   X(retMsgTlv, 0x0303)                                                                 \
   X(commonHelloTlv, 0x0400)                                                            \
   X(ipv4TransportAddrTlv, 0x0401)                                                      \
   X(configSeqNumTlv, 0x0402)                                                           \
   X(ipv6TransportAddrTlv, 0x0403)                                                      \
   X(commonSessionParamTlv, 0x0500)                                                     \
   X(atmSessionTlv, 0x0501)                                                             \
   X(frSessionTlv, 0x0502)                                                              \
   X(dynamicCapabilityTlv, 0x0506)                                                      \
   X(upstreamLabelAssignmentCapabilityTlv, 0x0507)                                      \
   X(p2mpCapabilityTlv, 0x0508)                                                         \
   X(mp2mpCapabilityTlv, 0x0509)                                                        \
   X(mbbCapabilityTlv, 0x050A)                                                          \
   X(typedWildcardFecCapabilityTlv, 0x050B)                                             \
   X(multiTopologyCapabilityTlv, 0x050C)                                                \
   X(stateAdvertisementControlCapabilityTlv, 0x050D)                                    \
   X(mrtCapabilityTlv, 0x050E)                                                          \
   X(targetedApplicationCapabilityTlv, 0x050F)                                          \
   X(labelReqMsgIdTlv, 0x0600)                                                          \
   X(pwStatusTlv, 0x096A)                                                               \
   X(vendorPrivTlvBegin, 0x3E00)                                                        \
   X(vendorPrivTlvEnd, 0x3EFF)                                                          \
   X(expTlvBegin, 0x3F00)                                                               \
   X(expTlvEnd, 0x3FFF)

#define LDP_STATUS_CODES(X)                                                             \
   X(success, 0)                                                                        \
   X(badLdpId, 1)                                                                       \
   X(badVersion, 2)                                                                     \
   X(badPduLength, 3)                                                                   \
   X(unknownMessageType, 4)                                                             \
   X(badMessageLength, 5)                                                               \
   X(unknownTlv, 6)                                                                     \
   X(badTlvLength, 7)                                                                   \
   X(malformedTlv, 8)                                                                   \
   X(holdTimerExpired, 9)                                                               \
   X(shutdown, 10)                                                                      \
   X(loopDetected, 11)                                                                  \
   X(unknownFec, 12)                                                                    \
   X(noRoute, 13)                                                                       \
   X(noLabelResources, 14)                                                              \
   X(labelResourcesAvailable, 15)                                                       \
   X(rejectNoHello, 16)                                                                 \
   X(rejectParamAdvMode, 17)                                                            \
   X(rejectMaxPduLength, 18)                                                            \
   X(rejectParamLabelRange, 19)                                                         \
   X(keepAliveExpired, 20)                                                              \
   X(labelRequestAborted, 21)                                                           \
   X(missingMessageParams, 22)                                                          \
   X(unsupportedAddressFamily, 23)                                                      \
   X(sessionRejectBadKeepAliveTime, 24)                                                 \
   X(internalError, 25)                                                                 \
   X(illegalCBit, 36)                                                                   \
   X(wrongCBit, 37)                                                                     \
   X(pwStatus, 40)                                                                      \
   X(unknownMessageTypeIgnore, 0x80000004)                                              \
   X(establishingTcpConnection, 0x80000042)                                             \
   X(sessionInitFailed, 0x80000100)                                                     \
   X(sessionRoleChanged, 0x80000101)                                                    \
   X(tcpConnectionClosed, 0x80000102)                                                   \
   X(ipChange, 0x80000103)                                                              \
   X(idChange, 0x80000104)

#define LDP_FEC_ELEMENT_TYPES(X)                                                        \
   X(wildcardElement, 0x01)                                                             \
   X(prefixElement, 0x02)                                                               \
   X(hostAddrElement, 0x03)                                                             \
   X(crLspElement, 0x04)                                                                \
   X(typedWildcardElement, 0x05)                                                        \
   X(p2mpElement, 0x06)                                                                 \
   X(mp2mpUpElement, 0x07)                                                              \
   X(mp2mpDownElement, 0x08)                                                            \
   X(hsmpUpstreamElement, 0x09)                                                         \
   X(pwIdElement, 0x80)                                                                 \
   X(pwGenIdelement, 0x81)                                                              \
   X(pwP2mpUpstreamElement, 0x82)                                                       \
   X(pwProtectionElement, 0x83)                                                         \
   X(pwP2mpDownstreamElement, 0x84)

#define LDP_PW_INTF_PARAM_SUB_TLV_TYPES(X)                                              \
   X(intfMtu, 0x01)                                                                     \
   X(intfDesc, 0x03)                                                                    \
   X(requestedVlanId, 0x06)                                                             \
   X(fragIndicator, 0x09)                                                               \
   X(vccvParam, 0x0C)

enum class LdpMsgType : std::uint16_t { LDP_MSG_TYPES(ZON_ENUMERATOR) };
enum class LdpTlvType : std::uint16_t { LDP_TLV_TYPES(ZON_ENUMERATOR) };
enum class LdpStatusCode : std::uint32_t { LDP_STATUS_CODES(ZON_ENUMERATOR) };
enum class LdpFecElementType : std::uint8_t { LDP_FEC_ELEMENT_TYPES(ZON_ENUMERATOR) };
enum class LdpPwIntfParamSubTlvType : std::uint8_t { LDP_PW_INTF_PARAM_SUB_TLV_TYPES(ZON_ENUMERATOR) };

ZON_ENUM_DECLARE(LdpMsgType);
ZON_ENUM_DECLARE(LdpTlvType);
ZON_ENUM_DECLARE(LdpStatusCode);
ZON_ENUM_DECLARE(LdpFecElementType);
ZON_ENUM_DECLARE(LdpPwIntfParamSubTlvType);

#define LDP_ENUM_CASE(name, value) case value:

// True when the 14-bit TLV type has an enumerator: exactly the 34 values above,
// so only the bounds of the vendor-private and experimental ranges.
constexpr bool isKnownTlvType(std::uint16_t type) noexcept {
   switch (type) {
      LDP_TLV_TYPES(LDP_ENUM_CASE)
      return true;
    default:
      return false;
   }
}

// True for the message types that the receive path knows.
constexpr bool isKnownMsgType(std::uint16_t type) noexcept {
   switch (type) {
      LDP_MSG_TYPES(LDP_ENUM_CASE)
      return true;
    default:
      return false;
   }
}

#undef LDP_ENUM_CASE

} // namespace Ldp

ZON_ENUM_TRAITS(Ldp::LdpMsgType);
ZON_ENUM_TRAITS(Ldp::LdpTlvType);
ZON_ENUM_TRAITS(Ldp::LdpStatusCode);
ZON_ENUM_TRAITS(Ldp::LdpFecElementType);
ZON_ENUM_TRAITS(Ldp::LdpPwIntfParamSubTlvType);
