// The parsers of the messages that set up and keep a session and its address
// bindings: Hello, Initialization, Capability, Address and Address Withdraw, one
// header each.
#pragma once

#include "ldp/parser/LdpAddressListMsgParser.h"
#include "ldp/parser/LdpAddressMsgParser.h"
#include "ldp/parser/LdpAddressWithdrawMsgParser.h"
#include "ldp/parser/LdpCapabilityMsgParser.h"
#include "ldp/parser/LdpHelloMsgParser.h"
#include "ldp/parser/LdpInitMsgParser.h"
