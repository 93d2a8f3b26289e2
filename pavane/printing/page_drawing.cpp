#include "pavane/printing/page_drawing.h"

#include "pavane/printing/layout/page_texts.h"
#include "pavane/windows/ABWindow.h"

#include <cstdlib>

namespace pavane
{

namespace
{

// of the font of numbers and captions
constexpr unsigned char russianCharset = 204;
constexpr unsigned char outlinePrecision = 4;
constexpr unsigned char strokeClipPrecision = 2;
constexpr unsigned char proofQuality = 2;
constexpr unsigned char variableSwiss = 2 | 2 << 4;

int cellHeight(const CDC& dc)
{
    TEXTMETRIC metrics;
    return dc.GetTextMetrics(metrics) ? std::abs(metrics.tmHeight) : 0;
}

CFont textFont(int height)
{
    LOGFONT look;
    look.lfHeight = height;
    look.lfWeight = FW_BOLD;
    look.lfCharSet = russianCharset;
    look.lfOutPrecision = outlinePrecision;
    look.lfClipPrecision = strokeClipPrecision;
    look.lfQuality = proofQuality;
    look.lfPitchAndFamily = variableSwiss;
    look.lfFaceName = "Arial Bold";
    CFont font;
    (void)font.CreateFontIndirect(look);
    return font;
}

class DeviceRuler : public TextRuler
{
public:
    explicit DeviceRuler(const CDC& dc) : dc_(dc), height_(cellHeight(dc)) {}
    int widthOf(std::string_view text) override { return dc_.GetTextExtent(CString(text)).cx; }
    int lineHeight() override { return height_; }

private:
    const CDC& dc_;
    int height_;
};

}  // namespace

PageCaps pageCaps(const CDC& dc)
{
    return {dc.GetDeviceCaps(HORZSIZE), dc.GetDeviceCaps(VERTSIZE), dc.GetDeviceCaps(HORZRES),
            dc.GetDeviceCaps(VERTRES)};
}

MappedPage::MappedPage(CDC& dc, const CRect& printable)
    : dc_(dc), saved_(dc.SaveDC()), rect_(0, 0, printable.Width(), printable.Height())
{
    dc.SetMapMode(MM_ANISOTROPIC);
    dc.SetWindowOrg(0, 0);
    dc.SetViewportOrg(printable.left, printable.top);
    dc.SetWindowExt(rect_.right, rect_.bottom);
    dc.SetViewportExt(rect_.right, rect_.bottom);
}

MappedPage::~MappedPage() { (void)dc_.RestoreDC(saved_); }

void drawPage(CDC& dc, int page, const CRect& rect, const APrnAddInfo& info, ABWindow* window)
{
    const int texts = dc.SaveDC();
    const int height = cellHeight(dc);
    CFont font = textFont(height);
    dc.SelectObject(&font);
    dc.SetBkMode(TRANSPARENT);
    DeviceRuler ruler(dc);
    PageTexts laidOut = layOutPage(rect, height, info, page, ruler);
    if (!laidOut.numberBand.IsRectEmpty())
        (void)dc.DrawText(laidOut.number, laidOut.numberBand,
                          DT_RIGHT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
    if (!laidOut.caption.IsRectEmpty())
        (void)dc.DrawText(laidOut.captionText, laidOut.caption, laidOut.captionFormat);
    (void)dc.RestoreDC(texts);
    if (!window || laidOut.picture.IsRectEmpty())
        return;
    const int picture = dc.SaveDC();
    (void)dc.IntersectClipRect(laidOut.picture);
    window->PrintWindow(dc, laidOut.picture, page);
    (void)dc.RestoreDC(picture);
}

}  // namespace pavane
