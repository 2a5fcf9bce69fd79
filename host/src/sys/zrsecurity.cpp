#include "zrsecurity.h"

ZR_RX_DEFINE_MEMBERS(CXuSecurity, ZrRxObject)
