#pragma once

#include "platform/CWnd.h"

namespace pavane
{

/// A bar that fills while something goes on; it paints at once, without waiting for the message
/// loop.
class PAVANE_API CProgressCtrl : public CWnd
{
public:
    int Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id);
    /// 0 to 100 at first. An equal `min` and `max` show that something goes on, not how far it is.
    void SetRange(int min, int max);
    void GetRange(int& min, int& max) const;
    /// Held within the range. The position before.
    int SetPos(int position);
    int GetPos() const;
};

}  // namespace pavane
