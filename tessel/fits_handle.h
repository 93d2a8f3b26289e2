#pragma once

// Private to tessel's FITS sources: the only files that see CFITSIO.
#include <fitsio.h>

#include <string>

namespace pavane
{

/// An open FITS file, closed at the end of its life. `status` is CFITSIO's, 0 while all is well.
struct FitsHandle {
    fitsfile* file = nullptr;
    int status = 0;

    FitsHandle() = default;
    FitsHandle(const FitsHandle&) = delete;
    FitsHandle& operator=(const FitsHandle&) = delete;
    ~FitsHandle() { (void)close(); }
    /// Non-zero when closing, which writes what is still buffered, went well.
    int close()
    {
        int closing = 0;
        if (file)
            fits_close_file(file, &closing);
        file = nullptr;
        return closing == 0;
    }
    /// `name` such that CFITSIO takes it as it is: a blank or '~' in front would be its business.
    static std::string plainName(const std::string& name)
    {
        return !name.empty() && name[0] == '/' ? name : "./" + name;
    }
    /// What CFITSIO calls its status.
    std::string statusText() const
    {
        char text[FLEN_STATUS] = "";
        fits_get_errstatus(status, text);
        return text;
    }
};

}  // namespace pavane
