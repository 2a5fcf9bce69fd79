#pragma once
// The object of the host's module "ZrRaster": raster image files read into host images.

#include "zrgiraster.h"
#include "zrhost_export.h"
#include "zrrxobject.h"
#include "zrstring.h"

class ZRHOST_EXPORT ZrRxRasterServices : public ZrRxObject
{
    ZR_RX_DECLARE_MEMBERS(ZrRxRasterServices)
public:
    // The picture of an image file; null when it cannot be read or is too large to hold. With a
    // size to fit, a larger picture is read scaled down into it, keeping its aspect.
    virtual ZrSmartPtr<ZrGiRasterImage> loadRasterImage(const ZrString& path, int fitWidth = 0,
                                                        int fitHeight = 0) = 0;
};
