#include "pavane/windows/controls/AListBox.h"

#include "platform/accessibility.h"

#include <utility>

namespace pavane
{

std::vector<std::pair<int, int>> stepsOfMove(const std::vector<int>& chosen, int count, int step)
{
    std::vector<std::pair<int, int>> moves;
    if (step < 0) {
        int free = 0;  // the first place that a line may still go to
        for (const int line : chosen) {
            if (line > free)
                moves.emplace_back(line, line - 1);
            else
                ++free;
        }
    } else if (step > 0) {
        int free = count - 1;
        for (auto line = chosen.rbegin(); line != chosen.rend(); ++line) {
            if (*line < free)
                moves.emplace_back(*line, *line + 1);
            else
                --free;
        }
    }
    return moves;
}

int AListBox::Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id,
                     const CString& name)
{
    if (!CListBox::Create(style, rect, parent, id))
        return 0;
    SetAccessName(GetSafeHwnd(), name);
    return 1;
}

int AListBox::MoveSelection(int step)
{
    const auto moves = stepsOfMove(GetSelItems(), GetCount(), step);
    for (const auto& [from, to] : moves)
        MoveItem(from, to);
    return !moves.empty();
}

std::vector<CString> AListBox::GetTexts() const
{
    std::vector<CString> texts;
    texts.reserve(static_cast<std::size_t>(GetCount()));
    for (int i = 0; i < GetCount(); ++i)
        texts.push_back(GetText(i));
    return texts;
}

std::vector<int> AListBox::GetChecked() const
{
    std::vector<int> checked;
    for (int i = 0; i < GetCount(); ++i) {
        if (GetCheck(i))
            checked.push_back(i);
    }
    return checked;
}

void AListBox::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    const bool isUp = key == VK_UP;
    if (!reorders_ || GetKeyState(VK_MENU) >= 0 || (!isUp && key != VK_DOWN))
        return CListBox::OnKeyDown(key, repeat, flags);
    if (!MoveSelection(isUp ? -1 : 1))
        return;
    if (CWnd* const parent = GetParent())
        parent->SendMessage(WM_COMMAND, (GetDlgCtrlID() & 0xFFFF) | WPARAM{ALN_MOVED} << 16,
                            static_cast<LPARAM>(GetSafeHwnd()));
}

}  // namespace pavane
