// The page of presets: styles under names, which any map can take.
#include "pavane/axes/dialogs/AMapDisplayDlg.h"
#include "pavane/axes/dialogs/DisplayPage.h"
#include "pavane/axes/maps/MapPresets.h"
#include "pavane/resources/map_display_dialog.h"
#include "pavane/resources/map_display_messages.h"
#include "platform/controls.h"

#include <memory>

namespace pavane
{

namespace
{

class PresetsPage : public DisplayPage
{
public:
    explicit PresetsPage(AMapDisplayDlg& sheet)
        : DisplayPage(sheet, displayPresetsPage, DisplayPart::axes)
    {
    }

protected:
    void make() override
    {
        presets_ = MapPresets(sheet().GetPresetSection());
        (void)presets_.load();
        fill(-1);
    }

    void show(const MapDisplay& /*display*/) override {}
    int take(MapDisplay& /*display*/, CString& /*error*/, unsigned& /*faulty*/) const override
    {
        return 1;
    }

    int OnCommand(unsigned id, unsigned code, CWnd* control) override
    {
        if (id == IDC_PRESETS_LIST && code == LBN_SELCHANGE) {
            if (const int line = chosen(); line >= 0)
                SetDlgItemText(IDC_PRESETS_NAME, presets_[line].name);
            return enable(), 1;
        }
        if (id == IDC_PRESETS_LIST && code == LBN_DBLCLK)
            return use(), 1;
        // not the base's: what is typed and chosen here changes no map
        const auto passOn = [&] {
            // NOLINTNEXTLINE(bugprone-parent-virtual-call)
            return CPropertyPage::OnCommand(id, code, control);
        };
        if (code != BN_CLICKED)
            return passOn();
        switch (id) {
        case IDC_PRESETS_USE:
            return use(), 1;
        case IDC_PRESETS_KEEP:
            return keep(), 1;
        case IDC_PRESETS_REMOVE:
            return remove(), 1;
        case IDC_PRESETS_FOR_ALL:
            return sheet().OnForAllMaps(sheet().GetDisplay()), 1;
        default:
            return passOn();
        }
    }

private:
    CListBox* list() const { return dynamic_cast<CListBox*>(GetDlgItem(IDC_PRESETS_LIST)); }

    int chosen() const
    {
        const int line = list() ? list()->GetCurSel() : -1;
        return line < presets_.count() ? line : -1;
    }

    void fill(int selected)
    {
        if (!list())
            return;
        list()->ResetContent();
        for (int i = 0; i < presets_.count(); ++i)
            (void)list()->AddString(presets_[i].name);
        (void)list()->SetCurSel(selected);
        enable();
    }

    void enable()
    {
        for (const unsigned id : {IDC_PRESETS_USE, IDC_PRESETS_REMOVE})
            if (CWnd* const button = GetDlgItem(id))
                (void)button->EnableWindow(chosen() >= 0);
    }

    void use()
    {
        if (chosen() < 0)
            return note(noPresetText);
        note({});
        SetModified();
        sheet().Show(presets_[chosen()].display.styleFor(sheet().GetDisplay()));
    }

    void keep()
    {
        const CString name = GetDlgItemText(IDC_PRESETS_NAME);
        CString error;
        if (!presets_.keep(name, sheet().GetDisplay(), error))
            return note(error);
        fill(presets_.find(name));
        note(presetKeptText);
    }

    void remove()
    {
        CString error;
        if (!presets_.remove(chosen(), error))
            return note(error);
        fill(-1);
        note({});
    }

    MapPresets presets_;
};

}  // namespace

std::unique_ptr<DisplayPage> presetsPage(AMapDisplayDlg& sheet)
{
    return std::make_unique<PresetsPage>(sheet);
}

}  // namespace pavane
