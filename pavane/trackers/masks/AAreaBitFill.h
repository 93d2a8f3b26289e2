#pragma once

#include "platform/api.h"
#include "platform/geometry.h"
#include "platform/message.h"
#include "tessel/ABitMatrix.h"

namespace pavane
{

/// Fills the outlines of trackers, turned into cells of a map, into a bit mask.
class PAVANE_API AAreaBitFill
{
public:
    /// Crossings in a row that are taken as usual.
    static constexpr int rowCapacity = 50;

    /// Sets the bits of the closed polygon `pts[0..n-1]` (x = column, y = row) in m, both edges of
    /// each span included; bits that are set stay set. A row with more than 50 crossings is filled
    /// like any other and reported once as a message.
    void FillMatrix(ABitMatrix& m, const CPoint* pts, int n);
    /// Who hears of such rows instead of the function in force when the filler was made.
    void setMessages(const MessageReceiver& messages) { messages_ = messages; }

private:
    MessageReceiver messages_;
};

}  // namespace pavane
