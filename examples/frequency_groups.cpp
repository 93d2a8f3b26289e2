// Frequency groups of eight IFs of a made-up observation in their window. A file named as argument
// is read at first, when it is there, and written when the window closes. With "--channels N" and
// "--ifs N" the observation is another.

#include "pavane/tables/observation/AFreqGroupsWnd.h"
#include "platform/message.h"
#include "platform/platform.h"
#include "tessel/SafeFile.h"
#include "tessel/value_text.h"

#include <string>

using namespace pavane;

namespace
{

AUVXFqTbl observation(int ifs, int channels)
{
    constexpr double reference = 4974.99e6, spacing = 8e6, width = 0.5e6;
    std::vector<AUVXFreqs> selections(2);
    for (int s = 0; s < 2; ++s) {
        selections[static_cast<std::size_t>(s)].id = s + 1;
        for (int i = 0; i < ifs; ++i) {
            UvIf one;
            one.offset.value = i * spacing + s * 250e6;
            one.channelWidth.value = width;
            one.bandwidth.value = channels * width;
            selections[static_cast<std::size_t>(s)].ifs.push_back(one);
        }
    }
    return AUVXFqTbl(reference, 1, channels, std::move(selections));
}

/// Keeps the groups in a file from one run to the next.
class GroupsProgram : public AFreqGroupsWnd
{
public:
    GroupsProgram(AFreqGroupArray& groups, const std::string& name) : groups_(&groups), name_(name)
    {
        SetParameters(groups_);
    }

protected:
    void OnClose() override
    {
        if (!IsValidClose(1))
            return;
        if (!name_.empty() && IsModified() && !save())
            return (void)AfxMessageBox("The groups could not be written: " + name_);
        AFreqGroupsWnd::OnClose();
    }
    void OnDestroy() override
    {
        AFreqGroupsWnd::OnDestroy();
        PostQuitMessage(0);
    }

private:
    int save()
    {
        SafeFile file;
        if (!file.open(name_) || !groups_->Store(file.file()) || !file.commit())
            return 0;
        SetSaved();
        return 1;
    }

    AFreqGroupArray* groups_;
    std::string name_;
};

}  // namespace

int main(int argc, char** argv)
{
    int ifs = 8, channels = 16;
    std::string name;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (i + 1 < argc && argument == "--ifs")
            (void)stoval(argv[++i], ifs);
        else if (i + 1 < argc && argument == "--channels")
            (void)stoval(argv[++i], channels);
        else
            name = argument;
    }
    if (!InitPlatform(argc, argv, PlatformUse::windows))
        return 1;
    int result = 0;
    {
        AFreqGroupArray groups(observation(ifs, channels));
        AFile old;
        if (!name.empty() && old.open(name, AFile::readOnly))
            (void)groups.Load(old);
        (void)old.close();
        GroupsProgram window(groups, name);
        window.Create("", "Frequency groups", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                      CRect(60, 60, 1160, 520), nullptr, 0);
        window.SetFocus();
        result = RunMessages();
    }
    ShutdownPlatform();
    return result;
}
