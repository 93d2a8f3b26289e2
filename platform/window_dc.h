#pragma once

#include "platform/CDC.h"
#include "platform/messages.h"

namespace pavane
{

class CWnd;

/// Draws in the client area of a window at any time; what is drawn stays. On a window that is gone
/// it draws nothing, and it goes on correctly when the window is resized.
class PAVANE_API CClientDC : public CDC
{
public:
    explicit CClientDC(CWnd* window);
};

/// The same with coordinates of the whole window; here windows draw their client area only.
using CWindowDC = CClientDC;

/// Draws what is invalid, and makes it valid: everything is clipped to the invalid region. To be
/// made in OnPaint.
class PAVANE_API CPaintDC : public CDC
{
public:
    explicit CPaintDC(CWnd* window);
    /// Box of the invalid region.
    const CRect& paintRect() const { return paintRect_; }

private:
    CPaintDC(CWnd* window, CRect box);
    CRect paintRect_;
};

/// Pixels of `width` x `height` logical units, as fine as the device that they are made for.
class PAVANE_API CBitmap
{
public:
    CBitmap();
    ~CBitmap();
    CBitmap(CBitmap&&) noexcept;
    CBitmap& operator=(CBitmap&&) noexcept;
    /// White pixels compatible with `dc` (the same pixels per unit); non-zero on success.
    int CreateCompatibleBitmap(const CDC& dc, int width, int height);
    /// `ratio` pixels per unit, 1 to 8.
    int CreateBitmap(int width, int height, int ratio);
    CSize size() const;
    int ratio() const;
    /// Pixels 0x00RRGGBB, rows of size().cx * ratio() from the top; null when empty.
    const std::uint32_t* bits() const;
    struct Data;
    Data* data() const { return data_.get(); }

private:
    std::unique_ptr<Data> data_;
};

/// A context on a bitmap, which has to outlive it; copied between by BitBlt without loss when the
/// ratios agree.
class PAVANE_API CMemoryDC : public CDC
{
public:
    explicit CMemoryDC(CBitmap& bitmap);
};

}  // namespace pavane
