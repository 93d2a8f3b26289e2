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

/// A host may have taken lines away, or put others in front of them.
void AComboBox::hideEntries()
{
    for (; shown_ > 0; --shown_)
        for (int line = 0; line < GetCount(); ++line)
            if (GetLBText(line) == entries_[shown_ - 1]) {
                DeleteString(line);
                break;
            }
}

void AComboBox::showEntries()
{
    for (shown_ = 0; shown_ < entries_.size(); ++shown_)
        (void)InsertString(static_cast<int>(shown_), entries_[shown_]);
}

int AComboBox::SetHistory(const CString& section, int most)
{
    if (!GetSafeHwnd() || section.empty())
        return 0;
    hideEntries();
    section_ = section;
    most_ = std::clamp(most, 1, 100);
    entries_.clear();
    for (int i = 0; i < most_; ++i) {
        const CString text = GetProfileString(section_, entryOf(i));
        if (!text.empty())
            entries_.push_back(text);
    }
    showEntries();
    return 1;
}

int AComboBox::write() const
{
    int written = 1;
    for (int i = 0; i < most_; ++i) {
        const CString text = i < GetHistoryCount() ? entries_[static_cast<std::size_t>(i)] : "";
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
    hideEntries();
    (void)std::erase(entries_, text);
    entries_.insert(entries_.begin(), text);
    entries_.resize(std::min(entries_.size(), static_cast<std::size_t>(most_)));
    showEntries();
    SetCurSel(0);
    return write();
}

int AComboBox::Forget()
{
    const CString text = GetWindowText();
    hideEntries();
    entries_.clear();
    SetWindowText(text);
    return section_.empty() || write();
}

void AComboBox::ResetContent()
{
    const CString text = GetWindowText();
    CComboBox::ResetContent();
    showEntries();
    SetWindowText(text);
}

}  // namespace pavane
