#pragma once

#include "containers/bit_text.h"
#include "pavane/tables/observation/AFreqGroupsWnd.h"
#include "platform/CDialog.h"
#include "platform/message.h"

#include <string>
#include <vector>

/// The window of frequency groups with its groups, and what it told the user and its parent.
struct ShownGroups {
    struct Frame : pavane::CWnd {
        int told = 0;
        int OnCommand(unsigned id, unsigned code, pavane::CWnd*) override
        {
            return told += id == 9 && code == pavane::MTN_GROUPS, 1;
        }
    };
    static inline std::string message;
    static inline int answer = pavane::IDOK;
    static inline int step = 0;  ///< what the dialog of the fixed step answers; 0 cancels

    pavane::AFreqGroupArray groups;
    Frame frame;
    pavane::AFreqGroupsWnd window;

    static pavane::AUVXFqTbl frequencies(int ifs, int channels, int selections)
    {
        using namespace pavane;
        std::vector<AUVXFreqs> all(static_cast<std::size_t>(selections));
        for (int s = 0; s < selections; ++s)
            for (int i = 0; i < ifs; ++i)
                all[static_cast<std::size_t>(s)].ifs.push_back(
                    {{i * 8e6 + s * 1e9, 0}, {0.5e6, 0}, {8e6, 0}, 1});
        for (int s = 0; s < selections; ++s)
            all[static_cast<std::size_t>(s)].id = 10 * s + 1;
        return {4974.99e6, 1, channels, all};
    }
    explicit ShownGroups(int ifs, int channels = 3, int selections = 1)
        : groups(frequencies(ifs, channels, selections))
    {
        using namespace pavane;
        message.clear();
        SetMessageFunction([](const CString& text, unsigned) { return message = text, answer; });
        SetDialogAnswer([](CDialog& dialog) {
            auto* const spin = dynamic_cast<CSpinButtonCtrl*>(dialog.GetDlgItem(IDC_FREQ_STEP));
            message = spin ? std::to_string(spin->GetPos()) : "no spin control";
            if (spin)
                spin->SetPos(step);
            dialog.SendMessage(WM_COMMAND, static_cast<WPARAM>(step ? IDOK : IDCANCEL));
            return step ? IDOK : IDCANCEL;
        });
        frame.CreateEx(0, "", "", WS_POPUP | WS_VISIBLE, {0, 0, 900, 400}, nullptr, 0);
        window.SetParameters(&groups);
        window.Create("", "", WS_CHILD | WS_VISIBLE, {0, 0, 900, 400}, &frame, 9);
        window.SetFocus();
    }
    ~ShownGroups()
    {
        pavane::SetMessageFunction(nullptr);
        pavane::SetDialogAnswer(nullptr);
    }
    /// Groups and, behind a bar, marks.
    std::string state() const
    {
        std::string all;
        for (int i = 0; i < groups.count(); ++i)
            all += asText(groups(i)) + " ";
        return all + "|" + asText(const_cast<ShownGroups*>(this)->window.GroupTbl().GetMark());
    }
    std::string listSelection()
    {
        const pavane::ASelectRect s = window.InfoTbl().getSelectRect();
        return std::to_string(s.anchorRow) + "," + std::to_string(s.anchorColumn) + "-" +
               std::to_string(s.endRow) + "," + std::to_string(s.endColumn);
    }
    void mark(const std::string& marks)
    {
        static_cast<pavane::ABMarkTable&>(window.GroupTbl()).SetMark(pavane::bits(marks));
    }
    static void key(pavane::CWnd& table, int code, unsigned held = 0)
    {
        using namespace pavane;
        SetKeyStateOverride(static_cast<int>(held));
        table.SendMessage(WM_KEYDOWN, static_cast<WPARAM>(code), 1);
        table.SendMessage(WM_KEYUP, static_cast<WPARAM>(code), 1);
        SetKeyStateOverride(-1);
    }
};
