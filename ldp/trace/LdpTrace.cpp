#include "ldp/trace/LdpTrace.h"

namespace Ldp {

Trace::Source & ldpGenMsgParserTrace = Trace::source("LdpGenMsgParser");
Trace::Source & ldpHdrTrace = Trace::source("LdpHdr");

} // namespace Ldp
