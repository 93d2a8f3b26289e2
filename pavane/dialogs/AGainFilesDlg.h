#pragma once

#include "pavane/dialogs/values/gain_match.h"
#include "pavane/windows/AResizeDialog.h"

#include <functional>
#include <string>
#include <vector>

namespace pavane
{

/// A form of gain files: its name, what file dialogs filter by, and what reads and writes it.
/// Functions give 0 and a clause in `error` that does not name the file.
struct GainFileForm {
    CString name;    ///< "AIPS SN table (FITS)"
    CString filter;  ///< "Gain tables|*.fits;*.sn"
    CString ending;  ///< "fits"
    std::function<int(const std::string& file, const AGains& gains, std::string& error)> write;
    std::function<int(const std::string& file, AGains& gains, std::vector<std::string>& notes,
                      std::string& error)>
        read;
    /// What the form cannot hold of these gains, a clause each.
    std::function<std::vector<std::string>(const AGains& gains)> losses;
};

/// The forms that the library knows: AIPS SN tables and text.
PAVANE_API std::vector<GainFileForm> gainFileForms();

/// Writes gains to a file, or reads them from one. What the form cannot hold stands in a list
/// before anything is written; what was read is compared with the data, and gains of another array,
/// of other IFs or of times that do not meet are refused. A host adds forms of its own.
class PAVANE_API AGainFilesDlg : public AResizeDialog
{
public:
    /// To write these gains, which outlive the dialog.
    explicit AGainFilesDlg(const AGains& gains, CWnd* parent = nullptr);
    /// To read gains for these data.
    explicit AGainFilesDlg(const GainFacts& data, CWnd* parent = nullptr);

    /// Before the dialog is made.
    void AddForm(const GainFileForm& form) { forms_.push_back(form); }
    /// The file that stands there at first, then the one that was written or read.
    void SetFile(const CString& file) { file_ = file; }
    const CString& GetFile() const { return file_; }
    /// What was read, after OK.
    const AGains& GetGains() const { return read_; }
    /// What of it the user was told, and took all the same.
    const std::vector<std::string>& GetNotes() const { return notes_; }

protected:
    int OnInitDialog() override;
    void OnOK() override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    const GainFileForm* form() const;
    int isWriting() const { return gains_ != nullptr; }
    void browse();
    void showLines(const CString& title, const std::vector<std::string>& lines);
    void showLosses();
    int look();
    int write();
    int refuse(const CString& message);

    const AGains* gains_ = nullptr;  ///< to be written; null to read
    GainFacts data_;
    std::vector<GainFileForm> forms_;
    CString file_;
    CString asked_;  ///< a file that the user said may be replaced
    AGains read_;
    std::vector<std::string> notes_;
    int isRead_ = 0;     ///< what stands there was read and can be used
    int isShowing_ = 0;  ///< the dialog writes its controls itself
};

}  // namespace pavane
