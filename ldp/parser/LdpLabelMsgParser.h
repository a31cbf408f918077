// The parsers of the label distribution messages, the ones that carry a FEC TLV:
// Label Mapping, Label Request, Label Withdraw, Label Release and Label Abort
// Request, one header each.
#pragma once

#include "ldp/parser/LdpFecMsgParser.h"
#include "ldp/parser/LdpLabelAbortReqMsgParser.h"
#include "ldp/parser/LdpLabelMappingMsgParser.h"
#include "ldp/parser/LdpLabelReleaseMsgParser.h"
#include "ldp/parser/LdpLabelRequestMsgParser.h"
#include "ldp/parser/LdpLabelWithdrawMsgParser.h"
#include "ldp/parser/LdpLabelWithdrawReleaseMsgParser.h"
