#pragma once
// The system variables of the current drawing and of the application, one getter and one setter
// for each, as dialogs that edit settings receive them. A setter answers RTNORM when the value was
// taken, RTERROR when the variable refused it.

#include "zrhost_export.h"
#include "zrresbuf.h"
#include "zrrxobject.h"

class ZRHOST_EXPORT CXuHostAppServices : public ZrRxObject
{
    ZR_RX_DECLARE_MEMBERS(CXuHostAppServices)
public:
    // As zredGetVar and zredSetVar: the current drawing's variables, then the application's.
    virtual int getSysVar(const wchar_t* name, ZrResBuf* value) const;
    virtual int setSysVar(const wchar_t* name, const ZrResBuf* value);

    short getLWUNITS() const { return static_cast<short>(integer(L"LWUNITS", 1)); }
    int setLWUNITS(short units) { return setInteger(L"LWUNITS", units); }
    bool getLWDISPLAY() const { return integer(L"LWDISPLAY", 0) != 0; }
    int setLWDISPLAY(bool display) { return setInteger(L"LWDISPLAY", display ? 1 : 0); }
    int getCELWEIGHT() const { return integer(L"CELWEIGHT", -1); }
    int setCELWEIGHT(int weight) { return setInteger(L"CELWEIGHT", weight); }
    int getLWDEFAULT() const { return integer(L"LWDEFAULT", 25); }
    int setLWDEFAULT(int weight) { return setInteger(L"LWDEFAULT", weight); }
    double getLWDISPSCALE() const { return real(L"LWDISPSCALE", 0.55); }
    int setLWDISPSCALE(double scale) { return setReal(L"LWDISPSCALE", scale); }

private:
    // `fallback` when the variable cannot be read.
    int integer(const wchar_t* name, int fallback) const;
    double real(const wchar_t* name, double fallback) const;
    int setInteger(const wchar_t* name, int value);
    int setReal(const wchar_t* name, double value);
};
