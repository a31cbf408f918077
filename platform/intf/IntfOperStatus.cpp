#include "intf/IntfOperStatus.h"

ZON_ENUM_DEFINE(Interface, IntfOperStatus, INTERFACE_INTF_OPER_STATUS)
