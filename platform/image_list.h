#pragma once

#include "platform/CDC.h"

namespace pavane
{

inline constexpr unsigned ILD_NORMAL = 0, ILD_TRANSPARENT = 1;

/// Small pictures of one size, drawn by rows of text: '#' dark, '+' accent, '.' light, anything
/// else nothing. They are sharp at any pixel ratio and on pages, slants without steps where a unit
/// has several pixels. The colours may follow the desktop's, and be changed at any time.
class PAVANE_API CImageList
{
public:
    CImageList();
    ~CImageList();
    CImageList(const CImageList&) = delete;
    CImageList& operator=(const CImageList&) = delete;

    /// Makes the list empty, for pictures of that size; non-zero on success.
    int Create(int width, int height);
    /// Index of the new picture, -1 when there is none. Rows that are too long or too many are cut;
    /// what is missing is nothing. The rows are copied.
    int Add(const char* const* rows, int rowCount);
    int GetImageCount() const;
    CSize GetImageSize() const;
    /// Colours of '#', '+' and '.'.
    void SetColors(COLORREF dark, COLORREF accent, COLORREF light);
    /// Draws with the top left corner at `at`; ILD_NORMAL paints white where the picture is
    /// nothing. Non-zero when there is such a picture.
    int Draw(CDC& dc, int image, CPoint at, unsigned style = ILD_TRANSPARENT) const;

private:
    struct Data;
    std::unique_ptr<Data> data_;
};

/// The same as a function.
PAVANE_API int ImageList_Draw(const CImageList& list, int image, CDC& dc, int x, int y,
                              unsigned style);

}  // namespace pavane
