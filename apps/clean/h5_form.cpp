#include "apps/clean/h5_form.h"

#include "apps/clean/ChildTalk.h"
#include "apps/clean/PassingFile.h"
#include "tessel/folders.h"
#include "tessel/gains/gain_files.h"

namespace pavane
{

namespace
{

/// Of lines "lost ...", what is lost.
std::vector<std::string> lossesIn(const std::vector<std::string>& lines)
{
    const std::string lost = "lost ";
    std::vector<std::string> losses;
    for (const std::string& each : lines)
        if (each.compare(0, lost.size(), lost) == 0)
            losses.push_back(each.substr(lost.size()));
    return losses;
}

/// What talks with pavane-ms.
struct H5Parm {
    std::vector<std::string> program;
    std::string data, folder;
    CWnd* owner;

    int run(std::vector<std::string> words, const CString& name, std::vector<std::string>& lines,
            std::string& error) const
    {
        words.insert(words.begin(), program.begin(), program.end());
        words.insert(words.end(), {"--data", data});
        // what pavane-ms says begins with its name
        return runChild(words, name, owner, lines, error);
    }

    int write(const std::string& file, const AGains& gains, std::vector<std::string>& lines,
              std::string& error) const
    {
        const PassingFile text(folder, ".txt");
        return writeGainText(text.name(), gains, error) &&
               run({"gains-to-h5", text.name(), plainPath(file)}, "Writing gains", lines, error);
    }

    int read(const std::string& file, AGains& gains, std::vector<std::string>& notes,
             std::string& error) const
    {
        const PassingFile text(folder, ".txt");
        std::vector<std::string> lines;
        if (!run({"gains-from-h5", plainPath(file), text.name()}, "Reading gains", lines, error))
            return 0;
        notes = lossesIn(lines);
        return readGainText(text.name(), gains, error);
    }
};

}  // namespace

GainFileForm h5ParmForm(const std::vector<std::string>& program, const std::string& data,
                        const std::string& folder, CWnd* owner)
{
    const H5Parm talk{program, data, folder, owner};
    GainFileForm form;
    form.name = "H5Parm (HDF5)";
    form.filter = "H5Parm|*.h5;*.h5parm";
    form.ending = "h5";
    form.write = [talk](const std::string& file, const AGains& gains, std::string& error) {
        std::vector<std::string> lines;
        return talk.write(file, gains, lines, error);
    };
    form.read = [talk](const std::string& file, AGains& gains, std::vector<std::string>& notes,
                       std::string& error) { return talk.read(file, gains, notes, error); };
    // known when it has been written, so it is, to a file that goes again
    form.losses = [talk](const AGains& gains) -> std::vector<std::string> {
        const PassingFile aside(talk.folder, ".h5");
        std::vector<std::string> lines;
        std::string error;
        if (!talk.write(aside.name(), gains, lines, error))
            return {"This form cannot be written here: " + error};
        return lossesIn(lines);
    };
    return form;
}

}  // namespace pavane
