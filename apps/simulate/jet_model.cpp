#include "apps/simulate/jet_model.h"

#include <sstream>

namespace pavane
{

AComponents jetModel()
{
    // kind, flux, large axis, ratio, inclination, position angle, distance, width
    static constexpr const char* text = R"(;core
;knots, outwards
;diffuse emission
9
2 0.72 0.00012 0.5 -62 0 0 0.5
1 0.11 0 1 0 -60 0.00042 0.5
2 0.16 0.00035 0.8 -60 -61 0.0011 0.5
2 0.095 0.0006 0.7 -55 -58 0.0022 0.5
2 0.07 0.0009 0.8 -50 -53 0.0036 0.5
2 0.055 0.0012 0.7 -40 -47 0.0053 0.5
2 0.045 0.0016 0.8 -30 -41 0.0072 0.5
2 0.035 0.0022 0.7 -20 -35 0.0095 0.5
2 0.06 0.0045 0.6 -30 -40 0.0078 0.5
)";
    std::istringstream in(text);
    AComponents jet;
    jet.Load(in);
    return jet;
}

}  // namespace pavane
