#include "pavane/tables/table_editors.h"

#include "pavane/tables/ATableWnd.h"
#include "pavane/tables/TableWatch.h"

namespace pavane
{

// Whatever is handed to the table may end the editor: nothing of it is touched afterwards.

void ATableEdit::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    switch (key) {
    case VK_TAB:
    case VK_RETURN:
    case VK_UP:
    case VK_DOWN:
        return table_->keyFromEditor(key, repeat);
    case VK_ESCAPE:
        return table_->dropEditors();
    default:
        return CEdit::OnKeyDown(key, repeat, flags);
    }
}

void ATableEdit::OnKillFocus(CWnd* next)
{
    CEdit::OnKillFocus(next);
    // without a next window another program has come to the front: nothing is asked then
    if (next)
        table_->editorLostFocus();
}

void ATableCombo::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    switch (key) {
    case VK_TAB:
    case VK_RETURN:
        return table_->keyFromEditor(key, repeat);
    case VK_ESCAPE:
        return table_->dropEditors();
    default:
        return CComboBox::OnKeyDown(key, repeat, flags);
    }
}

void ATableCombo::OnKillFocus(CWnd* next)
{
    CComboBox::OnKillFocus(next);
    if (next)
        table_->OnHideCombo();
}

}  // namespace pavane
