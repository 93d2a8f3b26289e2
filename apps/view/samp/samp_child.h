#pragma once

#include <string>
#include <vector>

namespace pavane
{

// The program beside the window that talks to the hub of SAMP: what comes from others is read
// here, never in the window.

/// The words that start it, in place of options; the window starts its own program with them.
inline constexpr const char* sampServerWord = "--samp-server";
inline constexpr const char* sampSendWord = "--samp-send";
inline constexpr const char* sampReplyWord = "--samp-reply";
/// What the last two get in their environment.
inline constexpr const char* sampUrlVariable = "PAVANE_SAMP_URL";
inline constexpr const char* sampKeyVariable = "PAVANE_SAMP_KEY";

/// The names of files with areas to be sent begin so; they go when they were.
inline constexpr const char* sampAnswerStart = "samp-answer-";

/// The message that asks for areas.
inline constexpr const char* areasMessage = "pavane.areas.get";

/// A line of the server for the window: words with tabs between them.
///     registered URL KEY      who talks for us from now on
///     load MESSAGE URL NAME   a map is sent; MESSAGE is "" where nobody waits for an answer
///     point MESSAGE RA DEC    a position in degrees, ICRS
///     areas MESSAGE           the areas are asked for
///     gone WHY                the hub has gone
std::vector<std::string> sampWords(const std::string& line);

/// Runs it; `words` are the arguments of the program. The exit status: 0, or 2 after a line on
/// standard error.
///     --samp-server                          until the hub goes or SIGTERM comes
///     --samp-send TYPE [NAME=VALUE]...       a notification for all
///     --samp-reply MESSAGE ok|error FILE|WHY [NAME=VALUE]...
/// answers: with the text of FILE ("": none) as "regions" and the further names, or with WHY.
int runSampChild(const std::vector<std::string>& words);
/// Whether the words ask for it.
int isSampChild(const std::vector<std::string>& words);
/// Whether this program was built with it.
int hasSamp();

}  // namespace pavane
