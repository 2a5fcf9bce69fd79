#include "zrhostappservices.h"

#include <cmath>

ZR_RX_DEFINE_MEMBERS(CXuHostAppServices, ZrRxObject)

int CXuHostAppServices::getSysVar(const wchar_t* name, ZrResBuf* value) const { return zredGetVar(name, value); }

int CXuHostAppServices::setSysVar(const wchar_t* name, const ZrResBuf* value) { return zredSetVar(name, value); }

int CXuHostAppServices::integer(const wchar_t* name, int fallback) const
{
    ZrResBuf value;
    if (getSysVar(name, &value) != RTNORM)
        return fallback;
    if (value.restype == RTSHORT)
        return value.resval.rint;
    return value.restype == RTLONG ? static_cast<int>(value.resval.rlong) : fallback;
}

double CXuHostAppServices::real(const wchar_t* name, double fallback) const
{
    ZrResBuf value;
    if (getSysVar(name, &value) != RTNORM || value.restype != RTREAL || !std::isfinite(value.resval.rreal))
        return fallback;
    return value.resval.rreal;
}

int CXuHostAppServices::setInteger(const wchar_t* name, int number)
{
    ZrResBuf value;
    value.restype = RTLONG;
    value.resval.rlong = number;
    return setSysVar(name, &value);
}

int CXuHostAppServices::setReal(const wchar_t* name, double number)
{
    ZrResBuf value;
    value.restype = RTREAL;
    value.resval.rreal = number;
    return setSysVar(name, &value);
}
