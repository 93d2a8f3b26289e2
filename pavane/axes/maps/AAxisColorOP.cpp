#include "pavane/axes/maps/AAxisColorOP.h"

#include "pavane/images/ADIBase.h"
#include "platform/CDC.h"

namespace pavane
{

ScaleTicks AAxisColorOP::ticks(int intervals) const
{
    if (graph_->cellRange().isEmpty())
        return {};
    return scaleTicks(graph_->scale(), graph_->GetOZName(), intervals);
}

void AAxisColorOP::drawBar(CDC& dc, const CRect& bar, const ScaleTicks& /*ticks*/)
{
    const int colors = graph_->getNColors();
    const int width = isHorizontal() ? colors : 1;
    const int height = isHorizontal() ? 1 : colors;
    const int scan = ADIBase::ScanLineWidth(width);
    std::vector<unsigned char> bits(static_cast<std::size_t>(scan * height));
    for (int i = 0; i < colors; ++i)
        bits[static_cast<std::size_t>(isHorizontal() ? i : i * scan)] =
            static_cast<unsigned char>(graph_->getFirstColor() + i);
    const std::vector<unsigned char> header = graph_->imageHeader(width, height);
    dc.StretchDIBits(bar.left, bar.top, bar.Width(), bar.Height(), 0, 0, width, height, bits.data(),
                     header.data(), DIB_RGB_COLORS, SRCCOPY);
}

}  // namespace pavane
