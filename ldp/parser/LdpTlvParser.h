// The TLV parsers: the untyped LdpTlvParser and the typed template every typed
// parser derives from (LdpTypedTlvParser.h), and each typed parser, one header
// each.
#pragma once

#include "ldp/parser/LdpAddressListTlvParser.h"
#include "ldp/parser/LdpCommonHelloTlvParser.h"
#include "ldp/parser/LdpCommonSessionParamTlvParser.h"
#include "ldp/parser/LdpConfigSeqNumTlvParser.h"
#include "ldp/parser/LdpGenLabelTlvParser.h"
#include "ldp/parser/LdpHopCountTlvParser.h"
#include "ldp/parser/LdpIp6TransportAddrTlvParser.h"
#include "ldp/parser/LdpIpTransportAddrTlvParser.h"
#include "ldp/parser/LdpLabelReqMsgIdTlvParser.h"
#include "ldp/parser/LdpPathVectorTlvParser.h"
#include "ldp/parser/LdpStatusTlvParser.h"
#include "ldp/parser/LdpTypedTlvParser.h"
