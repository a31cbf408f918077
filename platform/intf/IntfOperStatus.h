// The operational status of an interface as the interface manager reports it, with
// the numbers the interface manager uses for it. `unknown` (4) is what a consumer
// holds before it has heard anything.
#pragma once

#include <cstdint>

#include "zon/Enum.h"

namespace Interface {

#define INTERFACE_INTF_OPER_STATUS(X)                                                   \
   X(up, 1)                                                                             \
   X(down, 2)                                                                           \
   X(testing, 3)                                                                        \
   X(unknown, 4)                                                                        \
   X(dormant, 5)                                                                        \
   X(notPresent, 6)                                                                     \
   X(lowerLayerDown, 7)

enum class IntfOperStatus : std::uint32_t { INTERFACE_INTF_OPER_STATUS(ZON_ENUMERATOR) };
ZON_ENUM_DECLARE(IntfOperStatus);

} // namespace Interface

ZON_ENUM_TRAITS(Interface::IntfOperStatus);
