#pragma once

// Private to tessel's FITS sources: the only one that sees CFITSIO.
#include <fitsio.h>

#include <string>

namespace pavane
{

/// The functions of CFITSIO that unpack tile-compressed images, and those that write tables.
struct Cfitsio {
    decltype(&::ffdkopn) openDiskFile = nullptr;
    decltype(&::ffmahd) moveToHdu = nullptr;
    decltype(&::ffpscl) setScale = nullptr;
    decltype(&::ffgpxvll) readPixels = nullptr;
    decltype(&::ffimem) createInMemory = nullptr;
    decltype(&::ffcrim) createImage = nullptr;
    decltype(&::ffcrtb) createTable = nullptr;
    decltype(&::ffpkyj) writeWholeKey = nullptr;
    decltype(&::ffpkyd) writeNumberKey = nullptr;
    decltype(&::ffpkyl) writeFlagKey = nullptr;
    decltype(&::ffpkys) writeTextKey = nullptr;
    decltype(&::ffpcld) writeDoubles = nullptr;
    decltype(&::ffpclk) writeWholes = nullptr;
    decltype(&::ffpcls) writeTexts = nullptr;
    decltype(&::ffghadll) placeOfHdu = nullptr;
    decltype(&::ffflus) flush = nullptr;
    decltype(&::ffclos) close = nullptr;
    decltype(&::ffgerr) statusText = nullptr;
    int isLoaded = 0;
};

/// Loads the library at the first call and keeps it. It brings some thirty others along, for
/// networks that this code has no use for; loading them took a third of a program's start. When it
/// cannot be loaded, 0 stands in `isLoaded` and `error` says why. From then on no thread is inside
/// it while the process is copied, so that a copy finds its state whole and its locks free.
const Cfitsio& cfitsio(std::string& error);

}  // namespace pavane
