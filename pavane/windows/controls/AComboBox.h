#pragma once

#include "platform/controls.h"

#include <vector>

namespace pavane
{

/// A line of text with a list of proposals: what is typed filters them, and the last entries come
/// first, also in the next run of the program.
class PAVANE_API AComboBox : public CComboBox
{
public:
    int Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id,
               const CString& name = CString());
    /// Keeps the last `most` entries in `section` of the profile and shows those that are there
    /// before all other lines. Non-zero on success.
    int SetHistory(const CString& section, int most = 10);
    /// Puts the text in the line in front of the entries, once, and keeps them. To be called when
    /// the host takes the text; blank text is not kept. Non-zero on success.
    int Remember();
    /// Takes all kept entries away, from the profile as well.
    int Forget();
    /// How many of the lines are kept entries.
    int GetHistoryCount() const { return static_cast<int>(entries_.size()); }
    /// Takes the lines of the host away; the kept entries stay.
    void ResetContent();

private:
    void hideEntries();
    void showEntries();
    int write() const;

    CString section_;
    int most_ = 0;
    std::vector<CString> entries_;  ///< the kept ones
    std::size_t shown_ = 0;         ///< how many of them are lines
};

}  // namespace pavane
