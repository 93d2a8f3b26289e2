// Feeds any bytes to the readers of a study's texts, locks and engine lines, and writes what they
// give.
#include "pavane/imaging/study_text.h"
#include "pavane/imaging/wsclean_lines.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace pavane;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    std::string fault;
    StudyRecord record, again;
    if (readStudyText(text, record, fault) == StudyTextKind::good) {
        // what is written is read as the same
        const std::string written = studyText(record);
        if (readStudyText(written, again, fault) != StudyTextKind::good ||
            studyText(again) != written)
            std::abort();
    }
    StudyRound round, back;
    if (readRoundText(text, round, fault) == StudyTextKind::good) {
        const std::string written = roundText(round);
        if (readRoundText(written, back, fault) != StudyTextKind::good ||
            roundText(back) != written)
            std::abort();
    }
    EngineNews news;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        (void)readWscleanLine(text.substr(at, end - at), news);
        at = end + 1;
    }
    return 0;
}
