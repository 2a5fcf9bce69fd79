#include "zrresbuf.h"

#include "zrdbdatabase.h"
#include "zrdbinternal.h"
#include "zrdbvariables.h"

#include <cstdarg>
#include <cstring>

ZrRbValue zrrbValueOf(int type)
{
    const auto within = [type](int low, int high) { return type >= low && type <= high; };
    switch (type) {
    case RTSTR: return ZrRbValue::kString;
    case RTREAL: return ZrRbValue::kReal;
    case RTPOINT:
    case RT3DPOINT: return ZrRbValue::kPoint;
    case RTSHORT: return ZrRbValue::kShort;
    case RTLONG: return ZrRbValue::kLong;
    default: break;
    }
    // Group codes of drawing data and extended data.
    if (within(0, 9) || within(100, 102) || within(300, 309) || within(410, 419) || within(430, 439)
        || within(470, 479) || type == 999 || within(1000, 1009))
        return ZrRbValue::kString;
    if (within(10, 37) || within(110, 112) || within(210, 239) || within(1010, 1013))
        return ZrRbValue::kPoint;
    if (within(38, 59) || within(140, 149) || within(460, 469) || within(1040, 1042))
        return ZrRbValue::kReal;
    if (within(60, 79) || within(170, 179) || within(270, 289) || within(370, 389) || within(400, 409)
        || type == 1070)
        return ZrRbValue::kShort;
    if (within(90, 99) || within(420, 429) || within(440, 459) || type == 1071)
        return ZrRbValue::kLong;
    return ZrRbValue::kNone;
}

namespace {

wchar_t* copyOf(const wchar_t* text)
{
    if (!text)
        return nullptr;
    const size_t length = std::wcslen(text);
    auto* copy = new wchar_t[length + 1];
    std::wmemcpy(copy, text, length + 1);
    return copy;
}

} // namespace

void zrrbSetString(ZrResBuf* rb, const ZrString& text)
{
    rb->restype = RTSTR;
    rb->resval.rstring = copyOf(text.kwszPtr());
}

ZrResBuf* zrrbCopyChain(const ZrResBuf* chain)
{
    ZrResBuf* head = nullptr;
    ZrResBuf** tail = &head;
    for (const ZrResBuf* rb = chain; rb; rb = rb->rbnext) {
        auto* copy = new ZrResBuf;
        copy->restype = rb->restype;
        copy->resval = rb->resval;
        if (zrrbValueOf(rb->restype) == ZrRbValue::kString)
            copy->resval.rstring = copyOf(rb->resval.rstring);
        *tail = copy;
        tail = &copy->rbnext;
    }
    return head;
}

ZrResBuf* zrutNewRb(int type)
{
    auto* rb = new ZrResBuf;
    rb->restype = static_cast<short>(type);
    return rb;
}

int zrutRelRb(ZrResBuf* rb)
{
    while (rb) {
        ZrResBuf* next = rb->rbnext;
        if (zrrbValueOf(rb->restype) == ZrRbValue::kString)
            delete[] rb->resval.rstring;
        delete rb;
        rb = next;
    }
    return RTNORM;
}

ZrResBuf* zrutBuildList(int type, ...)
{
    va_list args;
    va_start(args, type);
    ZrResBuf* head = nullptr;
    ZrResBuf** tail = &head;
    for (; type != 0; type = va_arg(args, int)) {
        ZrResBuf* rb = zrutNewRb(type);
        switch (zrrbValueOf(type)) {
        case ZrRbValue::kString: rb->resval.rstring = copyOf(va_arg(args, const wchar_t*)); break;
        case ZrRbValue::kReal: rb->resval.rreal = va_arg(args, double); break;
        case ZrRbValue::kPoint: {
            const double* point = va_arg(args, const double*);
            for (int i = 0; i < 3; ++i)
                rb->resval.rpoint[i] = point ? point[i] : 0.0;
            break;
        }
        case ZrRbValue::kShort: rb->resval.rint = static_cast<short>(va_arg(args, int)); break;
        case ZrRbValue::kLong: rb->resval.rlong = va_arg(args, int); break;
        case ZrRbValue::kNone:
            // Nothing tells how to read a value of an unknown type, so the list ends in an error.
            zrutRelRb(rb);
            zrutRelRb(head);
            va_end(args);
            return nullptr;
        }
        *tail = rb;
        tail = &rb->rbnext;
    }
    va_end(args);
    return head;
}

int zredGetVar(const wchar_t* name, ZrResBuf* result)
{
    if (!name || !result)
        return RTERROR;
    return zrdbGetVariable(curDatabase(), ZrString(name), result);
}

int zredSetVar(const wchar_t* name, const ZrResBuf* value)
{
    if (!name || !value)
        return RTERROR;
    return zrdbSetVariable(curDatabase(), ZrString(name), value);
}
