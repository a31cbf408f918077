// The outcome of a parse: a status code and a reason text. A fault is recorded
// where it is detected, code and reason in one call, and the first one sticks:
// later checks cannot overwrite it.
#pragma once

#include "ldp/trace/LdpTrace.h"
#include "ldp/wire/LdpWireEnums.h"
#include "zon/String.h"

namespace Ldp {

class LdpParseFault {
 public:
   LdpStatusCode statusCode() const noexcept { return statusCode_; }
   Zon::String8 const & reason() const noexcept { return reason_; }
   bool ok() const noexcept { return statusCode_ == LdpStatusCode::success; }

   // Records the fault unless one is recorded already and writes the reason to
   // the trace at error level. Returns false, so a check can end with
   // `return fault(...)`.
   bool fault(LdpStatusCode code, Zon::String8 reason, Trace::Source const & trace) {
      if (ok()) {
         statusCode_ = code;
         reason_ = std::move(reason);
         TRACE(trace, traceError, reason_);
      }
      return false;
   }

   // Records a fault that a parser built by this one detected and traced
   // already, unless one is recorded: each fault is traced once, where found.
   bool faultFrom(LdpStatusCode code, Zon::String8 const & reason) {
      if (ok()) {
         statusCode_ = code;
         reason_ = reason;
      }
      return false;
   }

   // Plain setters of the status code and the reason, for the owners that set
   // them directly.
   void statusCodeIs(LdpStatusCode code) noexcept { statusCode_ = code; }
   void reasonIs(Zon::String8 reason) { reason_ = std::move(reason); }

 private:
   LdpStatusCode statusCode_ = LdpStatusCode::success;
   Zon::String8 reason_;
};

} // namespace Ldp
