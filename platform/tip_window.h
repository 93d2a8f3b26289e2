#pragma once

#include "platform/geometry.h"
#include "platform/types.h"

#include <memory>

namespace pavane
{

class CWnd;

/// A small window of explaining text above all others. It never takes the focus, and it shows
/// itself at once and stays until it is hidden; when to do that is up to the program.
class PAVANE_API CTipWnd
{
public:
    CTipWnd();
    ~CTipWnd();
    CTipWnd(const CTipWnd&) = delete;
    CTipWnd& operator=(const CTipWnd&) = delete;

    /// Shows `text` (lines end with '\n'; long ones wrap) for what stands in `around` on the
    /// screen, beside it and never over it. `owner` is any window of the frame it belongs to. 0
    /// when there is nothing to show, or nowhere.
    int Show(const CString& text, const CRect& around, CWnd* owner);
    void Hide();
    int IsVisible() const;
    /// On the screen; empty while it is hidden.
    CRect GetRect() const;
    CString GetText() const;

private:
    struct Data;
    std::unique_ptr<Data> data_;
};

}  // namespace pavane
