#pragma once
// Points and vectors of the drawing.

#include "zrhost_export.h"

#include <cmath>

struct ZRHOST_EXPORT ZrGeTol
{
    static double equalPoint() { return 1e-10; }
};

class ZrGeVector3d
{
public:
    ZrGeVector3d() = default;
    ZrGeVector3d(double x_, double y_, double z_) : x(x_), y(y_), z(z_) {}
    static const ZrGeVector3d kXAxis;
    static const ZrGeVector3d kYAxis;
    static const ZrGeVector3d kZAxis;
    double length() const { return std::sqrt(x * x + y * y + z * z); }
    bool isEqualTo(const ZrGeVector3d& o, double tol = ZrGeTol::equalPoint()) const
    {
        return std::fabs(x - o.x) <= tol && std::fabs(y - o.y) <= tol && std::fabs(z - o.z) <= tol;
    }
    double x = 0, y = 0, z = 0;
};

class ZrGePoint3d
{
public:
    ZrGePoint3d() = default;
    ZrGePoint3d(double x_, double y_, double z_) : x(x_), y(y_), z(z_) {}
    static const ZrGePoint3d kOrigin;
    bool isEqualTo(const ZrGePoint3d& o, double tol = ZrGeTol::equalPoint()) const
    {
        return std::fabs(x - o.x) <= tol && std::fabs(y - o.y) <= tol && std::fabs(z - o.z) <= tol;
    }
    double x = 0, y = 0, z = 0;
};

inline const ZrGeVector3d ZrGeVector3d::kXAxis{1, 0, 0};
inline const ZrGeVector3d ZrGeVector3d::kYAxis{0, 1, 0};
inline const ZrGeVector3d ZrGeVector3d::kZAxis{0, 0, 1};
inline const ZrGePoint3d ZrGePoint3d::kOrigin{0, 0, 0};
