#pragma once

#include "platform/gdi_constants.h"
#include "platform/geometry.h"

namespace pavane
{

/// Logical coordinates to device units and back.
struct Mapping {
    int mode = MM_TEXT;
    CPoint windowOrg;
    CPoint viewportOrg;
    CSize windowExt{1, 1};
    CSize viewportExt{1, 1};

    /// Device point of a logical one: offsets scaled by viewport / window extent, rounded to
    /// nearest with halves up, cut to what an int holds.
    CPoint toDevice(CPoint p) const;
    CPoint toLogical(CPoint p) const;
    CPointF toDevice(CPointF p) const;
    /// A length across x or y in device units, never negative.
    int lengthX(int length) const;
    int lengthY(int length) const;
    int logicalLengthX(int length) const;
    int logicalLengthY(int length) const;
    bool isPlain() const { return mode == MM_TEXT; }
    void setMode(int newMode);
    /// Extents are kept only by modes that scale; a zero is refused. Returns non-zero when set.
    int setWindowExt(CSize ext);
    int setViewportExt(CSize ext);

private:
    void makeIsotropic();
    CSize askedViewport_{1, 1};
};

}  // namespace pavane
