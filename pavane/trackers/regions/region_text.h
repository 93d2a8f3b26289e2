#pragma once

#include "pavane/trackers/regions/RegionNotes.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace pavane
{

/// A text file in memory. Empty until it is read.
class RegionText
{
public:
    /// Reads the whole file. 0, and one line in `error` that names the file, when it cannot be
    /// read, is larger than 64 MiB, or holds a zero byte, which no text does.
    int read(const std::string& file, std::string& error);
    std::string_view view() const { return {bytes_.get(), size_}; }

private:
    std::unique_ptr<char[]> bytes_;
    std::size_t size_ = 0;
};

/// The next line of `text`, without its end, which is taken off the text. 0 when none is left.
int nextLine(std::string_view& text, std::string_view& line);

/// Writes the text under a temporary name and renames it. A failure gives 0 and one line in
/// `error`; a file of the name stays as it was.
int writeRegionText(const std::string& file, const std::string& text, std::string& error);

}  // namespace pavane
