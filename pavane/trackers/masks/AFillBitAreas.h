#pragma once

#include "platform/api.h"
#include "platform/message.h"
#include "tessel/ABitMatrix.h"

namespace pavane
{

struct APolyPoints;

/// Fills stored polygons into a bit mask.
class PAVANE_API AFillBitAreas
{
public:
    /// Crossings in a row that are taken as usual.
    static constexpr int rowCapacity = 30;

    /// Sets the bits of the polygon in m as AAreaBitFill does. A row with more than 30 crossings is
    /// reported as a message, once for each filler. Null pointers do nothing.
    void FillBitMatrix(ABitMatrix* m, const APolyPoints* poly);
    /// Who hears of such rows instead of the function in force when the filler was made.
    void setMessages(const MessageReceiver& messages) { messages_ = messages; }

private:
    MessageReceiver messages_;
    int reported_ = 0;
};

}  // namespace pavane
