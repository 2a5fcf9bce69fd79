#pragma once
// What the lineweight suites share: system variables set and read as the host's users do, and the
// pen width a row's icon was drawn with.

#include "zrresbuf.h"

#include <QIcon>
#include <QImage>
#include <QTest>

namespace LineWeightTest {

// An integer goes in as the short the host's integer variables are, anything else as a real.
inline void setVariable(const wchar_t* name, double number)
{
    ZrResBuf value;
    if (number == static_cast<int>(number)) {
        value.restype = RTSHORT;
        value.resval.rint = static_cast<short>(number);
    } else {
        value.restype = RTREAL;
        value.resval.rreal = number;
    }
    QCOMPARE(zredSetVar(name, &value), RTNORM);
}

inline double variable(const wchar_t* name)
{
    ZrResBuf value;
    if (zredGetVar(name, &value) != RTNORM)
        return -999;
    return value.restype == RTREAL ? value.resval.rreal : value.resval.rint;
}

} // namespace LineWeightTest
