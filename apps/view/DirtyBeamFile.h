#pragma once

#include "pavane/axes/dialogs/DirtyBeam.h"
#include "pavane/axes/maps/MapContent.h"

#include <memory>
#include <string>

namespace pavane
{

class CWnd;

/// A dirty beam that the user chose: its file is asked for once, and read as the map that it is.
class DirtyBeamFile
{
public:
    /// Fetches the beam, after asking for a file beside `map` when there is none yet or `again`.
    /// Non-zero on success; else 0, and `error` is a line, empty when the user gave up.
    int find(CWnd* owner, const std::string& map, DirtyBeam& beam, CString& error, int again = 0);
    /// Another map may have another beam.
    void forget();
    const MapContent* content() const { return content_.get(); }
    const std::string& file() const { return file_; }

private:
    std::string file_;
    std::unique_ptr<MapContent> content_;
    std::unique_ptr<AFloatMatrixAccess> cells_;
};

}  // namespace pavane
