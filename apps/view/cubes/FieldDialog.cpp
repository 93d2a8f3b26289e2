#include "apps/view/cubes/FieldDialog.h"

#include "platform/controls.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "platform/profile.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr const char* fieldSection = "MakeMap";
constexpr const char* mapFileFilter =
    "FITS maps (*.fits *.fit *.fts)|*.fits *.fit *.fts|All files (*)|*|";
constexpr unsigned firstLabel = 101, firstBrowse = 301, firstHint = 401;
constexpr int labelX = 8, labelWidth = 92, fieldX = 104, fieldWidth = 168, browseWidth = 20;
constexpr int lineHeight = 18, hintHeight = 11, wholeWidth = fieldX + fieldWidth + 8;

unsigned idOf(unsigned first, std::size_t i) { return first + static_cast<unsigned>(i); }

/// The template of a dialog, made before the dialog is.
struct FieldTemplate {
    std::vector<CString> texts;
    std::vector<DlgItem> items;
    DlgTemplate whole{};

    FieldTemplate(const CString& title, const std::vector<CString>& hints,
                  const std::vector<DialogField>& fields, const CString& okText)
    {
        using Kind = DialogField::Kind;
        texts.reserve(fields.size() + hints.size() + 2);
        const auto kept = [this](const CString& text) {
            texts.push_back(text);
            return texts.back().c_str();
        };
        int y = 8;
        for (std::size_t i = 0; i < fields.size(); ++i, y += lineHeight) {
            const DialogField& field = fields[i];
            const char* const label = kept(field.label);
            const unsigned id = idOf(firstDialogField, i);
            if (field.kind == Kind::check) {
                items.push_back(
                    {ControlKind::checkBox, id, label, fieldX, y, fieldWidth, 12, WS_TABSTOP});
                continue;
            }
            items.push_back({ControlKind::staticText, idOf(firstLabel, i), label, labelX, y + 2,
                             labelWidth, 10});
            if (field.kind == Kind::choice) {
                items.push_back(
                    {ControlKind::comboBox, id, "", fieldX, y, fieldWidth, 100, WS_TABSTOP});
                continue;
            }
            const int browse = field.kind == Kind::file ? browseWidth + 4 : 0;
            items.push_back({ControlKind::edit, id, "", fieldX, y, fieldWidth - browse, 14,
                             WS_TABSTOP | WS_BORDER});
            if (browse)
                items.push_back({ControlKind::pushButton, idOf(firstBrowse, i), "...",
                                 fieldX + fieldWidth - browseWidth, y, browseWidth, 14,
                                 WS_TABSTOP});
        }
        for (std::size_t i = 0; i < hints.size(); ++i, y += hintHeight)
            items.push_back({ControlKind::staticText, idOf(firstHint, i), kept(hints[i]), labelX,
                             y + 2, wholeWidth - 2 * labelX, 10});
        y += 10;
        items.push_back({ControlKind::defaultButton, IDOK, kept(okText), wholeWidth - 124, y, 56,
                         14, WS_TABSTOP});
        items.push_back(
            {ControlKind::pushButton, IDCANCEL, "Cancel", wholeWidth - 64, y, 56, 14, WS_TABSTOP});
        whole = {0, kept(title), wholeWidth, y + 22, items.data(), static_cast<int>(items.size())};
    }
};

class FieldDialog : private FieldTemplate, public CDialog
{
public:
    FieldDialog(CWnd* parent, const CString& title, const std::vector<CString>& hints,
                std::vector<DialogField>& fields, const std::function<int(CWnd&, CString&)>& accept,
                const CString& okText)
        : FieldTemplate(title, hints, fields, okText), CDialog(whole, parent), fields_(fields),
          accept_(accept)
    {
    }

protected:
    int OnInitDialog() override
    {
        for (std::size_t i = 0; i < fields_.size(); ++i) {
            DialogField& field = fields_[i];
            const unsigned id = idOf(firstDialogField, i);
            if (!field.entry.empty())
                field.value = GetProfileString(fieldSection, field.entry, field.value);
            if (auto* const box = dynamic_cast<CComboBox*>(GetDlgItem(id))) {
                for (const CString& choice : field.choices)
                    (void)box->AddString(choice);
                const auto known =
                    std::find(field.choices.begin(), field.choices.end(), field.value);
                (void)box->SetCurSel(known == field.choices.end()
                                         ? 0
                                         : static_cast<int>(known - field.choices.begin()));
            } else if (auto* const check = dynamic_cast<CButton*>(GetDlgItem(id)))
                check->SetCheck(field.value == "1");
            else
                SetDlgItemText(id, field.value);
        }
        return CDialog::OnInitDialog();
    }
    void OnOK() override
    {
        for (std::size_t i = 0; i < fields_.size(); ++i) {
            DialogField& field = fields_[i];
            const unsigned id = idOf(firstDialogField, i);
            if (auto* const box = dynamic_cast<CComboBox*>(GetDlgItem(id))) {
                const auto chosen = static_cast<std::size_t>(std::max(box->GetCurSel(), 0));
                field.value = chosen < field.choices.size() ? field.choices[chosen] : CString();
            } else if (const auto* const check = dynamic_cast<CButton*>(GetDlgItem(id)))
                field.value = check->GetCheck() ? CString("1") : CString();
            else
                field.value = GetDlgItemText(id);
        }
        CString error;
        if (!accept_(*this, error)) {
            if (!error.empty())
                AfxMessageBox(error, MB_ICONERROR);
            return;
        }
        for (const DialogField& field : fields_)
            if (!field.entry.empty())
                (void)WriteProfileString(fieldSection, field.entry, field.value);
        EndDialog(IDOK);
    }
    int OnCommand(unsigned id, unsigned code, CWnd* control) override
    {
        if (id < firstBrowse || id >= idOf(firstBrowse, fields_.size()))
            return CDialog::OnCommand(id, code, control);
        const unsigned field = id - firstBrowse + firstDialogField;
        CString name = GetDlgItemText(field);
        if (fnFileDialog1(name, mapFileFilter, "Map", 1, "fits", 0, this) && !name.empty())
            SetDlgItemText(field, name);
        return 1;
    }

private:
    std::vector<DialogField>& fields_;
    const std::function<int(CWnd&, CString&)>& accept_;
};

}  // namespace

int askFields(CWnd* parent, const CString& title, const std::vector<CString>& hints,
              std::vector<DialogField>& fields,
              const std::function<int(CWnd& dialog, CString& error)>& accept, const CString& okText)
{
    FieldDialog dialog(parent, title, hints, fields, accept, okText);
    return dialog.DoModal() == IDOK;
}

}  // namespace pavane
