#include "zrsystem.h"

#include "zrui.h"

ZR_RX_DEFINE_MEMBERS(CXuSysHelpSvr, ZrRxObject)

void CXuSysHelpSvr::help(const ZrString& topic) { zredFunHelp(topic); }
double CXuSysHelpSvr::displayScale(int) { return 1.0; }
