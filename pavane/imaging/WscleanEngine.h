#pragma once

#include "pavane/imaging/AImagingEngine.h"

namespace pavane
{

/// wsclean 3, started by `command`: a list of words, such as {"mpirun", "-np", "8", "wsclean-mp"}.
class PAVANE_API WscleanEngine : public AImagingEngine
{
public:
    explicit WscleanEngine(std::vector<std::string> command = {"wsclean"});
    std::vector<EngineStep> dirty(const EngineTask& task) const override;
    std::vector<EngineStep> residual(const EngineTask& task) const override;
    std::vector<EngineStep> round(const EngineTask& task) const override;
    std::vector<EngineStep> predict(const EngineTask& task) const override;
    std::vector<EngineStep> restore(const EngineTask& task) const override;
    int readLine(const std::string& line, EngineNews& news) const override;

private:
    std::vector<std::string> command_;
};

}  // namespace pavane
