#pragma once
// Result buffers, system variables through them, and the status codes of the host's functions.

#include "zrhost_export.h"

#include <cstdint>

// Status codes.
constexpr int RTNORM = 5100;
constexpr int RTERROR = -5001;
constexpr int RTCAN = -5002;
// Value types.
constexpr int RTNONE = 5000;
constexpr int RTREAL = 5001;
constexpr int RTPOINT = 5002;
constexpr int RTSHORT = 5003;
constexpr int RTSTR = 5005;
constexpr int RT3DPOINT = 5009;
constexpr int RTLONG = 5010;

struct ZrResBuf
{
    ZrResBuf* rbnext = nullptr;
    short restype = RTNONE;
    union {
        double rreal;
        double rpoint[3];
        short rint;
        wchar_t* rstring; // owned: freed by zrutRelRb
        int32_t rlong;
    } resval{};
};

// A new buffer of `type`, its value zeroed.
ZRHOST_EXPORT ZrResBuf* zrutNewRb(int type);
// Frees a whole chain with its strings.
ZRHOST_EXPORT int zrutRelRb(ZrResBuf* rb);
// Builds a chain from (type, value) pairs ended by 0: strings as const wchar_t*, reals as double,
// shorts and longs as int, points as const double*. The caller frees it with zrutRelRb.
ZRHOST_EXPORT ZrResBuf* zrutBuildList(int type, ...);

// A system variable of the current drawing or of the application; RTNORM on success.
// An integer variable comes back as RTSHORT, a name as RTSTR.
ZRHOST_EXPORT int zredGetVar(const wchar_t* name, ZrResBuf* result);
ZRHOST_EXPORT int zredSetVar(const wchar_t* name, const ZrResBuf* value);
