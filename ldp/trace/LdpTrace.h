// libLdp's trace sources and the levels it writes at. Set levels at run time with
// ZON_TRACE=LdpGenMsgParser=6,LdpHdr=5 (or Trace::source(...).levelIs()).
#pragma once

#include "trace/Trace.h"

namespace Ldp {

// PDU and TLV group parsers, message parsers.
extern Trace::Source & ldpGenMsgParserTrace;
// TLV validation.
extern Trace::Source & ldpHdrTrace;

enum LdpTraceLevel : int {
   traceError = 5,    // error texts
   traceDetail = 6,   // per-item framing
   traceFunction = 8, // function entry
   traceDump = 9,     // header dumps
};

} // namespace Ldp
