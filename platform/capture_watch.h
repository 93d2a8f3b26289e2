#pragma once

#include "platform/api.h"

#include <functional>

namespace pavane
{

/// Calls `lost` once when the capture leaves the window that has it now, whoever takes it away, at
/// once and before WM_CAPTURECHANGED. Not called after its own end. Watches end in the reverse
/// order of their making.
class PAVANE_API CaptureWatch
{
public:
    explicit CaptureWatch(std::function<void()> lost);
    CaptureWatch(const CaptureWatch&) = delete;
    CaptureWatch& operator=(const CaptureWatch&) = delete;
    ~CaptureWatch();

    /// The capture leaves its window (for the platform).
    static void tell();

private:
    std::function<void()> lost_;
    CaptureWatch* outer_;
};

}  // namespace pavane
