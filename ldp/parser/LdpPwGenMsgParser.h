// The Notification message parser and the parser of the PW Status TLV, one
// header each.
#pragma once

#include "ldp/parser/LdpNotificationMsgParser.h"
#include "ldp/parser/LdpPwStatusTlvParser.h"
