#include "pavane/windows/controls/AComboBox.h"

#include "platform/accessibility.h"
#include "platform/profile.h"

#include <algorithm>

namespace pavane
{

namespace
{

CString entryOf(int index) { return "Entry" + std::to_string(index + 1); }

}  // namespace

int AComboBox::Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id,
                      const CString& name)
{
    if (!CComboBox::Create(style | CBS_DROPDOWN, rect, parent, id) || !SetFilter(1))
        return 0;
    SetAccessName(GetSafeHwnd(), name);
    return 1;
}

int AComboBox::SetHistory(const CString& section, int most)
{
    if (!GetSafeHwnd() || section.empty())
        return 0;
    for (; kept_ > 0; --kept_)
        DeleteString(0);
    section_ = section;
    most_ = std::clamp(most, 1, 100);
    for (int i = 0; i < most_; ++i) {
        const CString text = GetProfileString(section_, entryOf(i));
        if (!text.empty() && InsertString(kept_, text) == kept_)
            ++kept_;
    }
    return 1;
}

int AComboBox::write() const
{
    int written = 1;
    for (int i = 0; i < most_; ++i) {
        const CString text = i < kept_ ? GetLBText(i) : CString();
        if (GetProfileString(section_, entryOf(i)) != text)
            written &= WriteProfileString(section_, entryOf(i), text) != 0;
    }
    return written;
}

int AComboBox::Remember()
{
    const CString text = GetWindowText();
    if (!GetSafeHwnd() || section_.empty() || text.find_first_not_of(" \t") == CString::npos)
        return 0;
    for (int i = 0; i < kept_; ++i) {
        if (GetLBText(i) == text) {
            DeleteString(i);
            --kept_;
            break;
        }
    }
    if (kept_ == most_)
        DeleteString(--kept_);
    InsertString(0, text);
    ++kept_;
    SetCurSel(0);
    return write();
}

int AComboBox::Forget()
{
    const CString text = GetWindowText();
    for (; kept_ > 0; --kept_)
        DeleteString(0);
    SetWindowText(text);
    return section_.empty() || write();
}

}  // namespace pavane
