#pragma once

#include "platform/print_settings.h"
#include "platform/printer_info.h"

#include <string_view>
#include <vector>

namespace pavane
{

// What the programs of the CUPS client (in the C locale) print about queues, and what they are
// given. Everything that they print comes from elsewhere: counts and lengths are bounded, control
// characters and bad UTF-8 do not get through.

/// Queues, and characters of a text, that are taken at most.
inline constexpr std::size_t mostQueues = 1000;
inline constexpr std::size_t mostTextCharacters = 200;

/// One line of text, cut at so many characters.
CString queueLine(std::string_view text, std::size_t characters = mostTextCharacters);
/// The queues of `lpstat -d -a -l -p`, with default, status, place and comment.
std::vector<PrinterInfo> readQueueList(std::string_view text);
/// What `lpoptions -p NAME` tells: model, two-sided, colour.
void readQueueAttributes(std::string_view text, PrinterInfo& queue);
/// What `lpoptions -p NAME -l` tells: papers, resolution, two-sided, colour.
void readQueueChoices(std::string_view text, PrinterInfo& queue);
/// The size of a paper by a printer's name of it: "A4", "w288h432" (points), "iso_a4_210x297mm",
/// "na_letter_8.5x11in". Non-zero when it is known; `paper` then has the name as well.
int readPaperSize(std::string_view name, PrinterPaper& paper);

/// The name that a paper of this size usually has, within so many hundredths of a millimetre; else
/// its own.
CString usualPaperName(const PrinterPaper& paper, int within);

/// The arguments of `lp` for a job; `error` and an empty list when the queue's name is none.
std::vector<std::string> jobArguments(const CString& pdf, const CString& title,
                                      const CPrintSettings& settings, CString& error);
/// What `lp` or `lpstat` says of a failure, without its name in front.
CString jobFailure(std::string_view errors);
/// Why a queue takes no jobs, from `lpstat -a NAME`; "" when it takes them or does not say.
CString refusalReason(std::string_view text);

}  // namespace pavane
