// A table of a file of visibilities, to choose from:
//   observation_tables DATA.uvfits [telescopes | baselines | sources | stokes | frequencies |
//   scans]

#include "pavane/tables/observation/AObservationSelector.h"
#include "platform/platform.h"

#include <cstdio>

using namespace pavane;

namespace
{

class Chooser : public AObservationSelector
{
public:
    using AObservationSelector::AObservationSelector;

protected:
    void OnDestroy() override
    {
        AObservationSelector::OnDestroy();
        PostQuitMessage(0);
    }
};

}  // namespace

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::windows))
        return 1;
    int result = 1;
    {
        UvObservation observation;
        std::string error = "is not named";
        UvTable table = UvTable::telescopes;
        if (argc > 2 && !uvTableOf(argv[2], table))
            (void)std::fprintf(stderr, "There is no table %s.\n", argv[2]);
        else if (argc < 2 || !observation.open(argv[1], error))
            (void)std::fprintf(stderr, "The data file %s.\n", error.c_str());
        else {
            Chooser window(table);
            window.SetObservation(&observation);
            window.Create("", "", WS_OVERLAPPEDWINDOW | WS_VISIBLE, CRect(40, 40, 1040, 420),
                          nullptr, 0);
            window.SetFocus();
            result = RunMessages();
        }
    }
    ShutdownPlatform();
    return result;
}
