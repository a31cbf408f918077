// Whether the platform's FEC filter has decided on a FEC: not yet (0), let
// through, or filtered out.
#pragma once

#include <cstdint>

#include "zon/Enum.h"

namespace Mpls {

#define MPLS_FEC_FILTERED_STATES(X)                                                     \
   X(fecFilterUndecided, 0)                                                             \
   X(fecFilterPermitted, 1)                                                             \
   X(fecFilterDenied, 2)

enum class FecFilteredState : std::uint8_t { MPLS_FEC_FILTERED_STATES(ZON_ENUMERATOR) };
ZON_ENUM_DECLARE(FecFilteredState);

} // namespace Mpls

ZON_ENUM_TRAITS(Mpls::FecFilteredState);
