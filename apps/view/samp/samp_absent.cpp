// In place of the child process where the program is built without libexpat.
#include "apps/view/samp/samp_child.h"

#include <cstdio>

namespace pavane
{

std::vector<std::string> sampWords(const std::string&) { return {}; }

int isSampChild(const std::vector<std::string>& words)
{
    return !words.empty() &&
           (words[0] == sampServerWord || words[0] == sampSendWord || words[0] == sampReplyWord);
}

int runSampChild(const std::vector<std::string>&)
{
    std::fprintf(stderr, "this pavane-view was built without SAMP\n");
    return 2;
}

int hasSamp() { return 0; }

}  // namespace pavane
