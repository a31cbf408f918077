// The message pipe's write and take-out, inline: they run once per received
// message and are as cheap as moving a pointer in and out of the slot.
// LdpCommon.h includes this file after its classes.
#pragma once

#include <utility>

#include "ldp/common/LdpCommon.h"
#include "zon/Assert.h"

namespace Ldp {

// Writing into a full pipe is the writer's error: it must wait for the reader.
// The writer may hand its reference over (std::move) or keep its own.
inline void LdpMsgPipe::txMsgIs(Zon::Ptr<LdpMsg> msg) {
   ZON_ASSERT_TEXT(msgHolder_ == nullptr, "msgHolder_ == __null");
   if (msg) {
      msgHolder_ = std::move(msg);
      notify(Attr::msgHolder);
   }
   readableCountInc(1);
}

inline Zon::Ptr<LdpMsg> LdpMsgPipe::rxMsg() {
   Zon::Ptr<LdpMsg> msg = std::move(msgHolder_);
   if (msg) {
      notify(Attr::msgHolder);
   }
   return msg;
}

} // namespace Ldp
