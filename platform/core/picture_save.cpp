#include "platform/core/file_output.h"
#include "platform/picture_bytes.h"
#include "platform/picture_file.h"
#include "posix/StopFlag.h"

namespace pavane
{

namespace
{

int save(const CPicture& picture, const CString& file, CString& error, int dpi,
         const StopFlag* stop)
{
    std::vector<unsigned char> bytes;
    return PNGBytes(picture, bytes, error, dpi, PngSpeed::usual, stop) &&
           writeWhole(file, {reinterpret_cast<const char*>(bytes.data()), bytes.size()}, error);
}

}  // namespace

int SavePNG(const CPicture& picture, const CString& file, CString& error, int dpi)
{
    return save(picture, file, error, dpi, nullptr);
}

int SavePNG(const CPicture& picture, const CString& file, CString& error, int dpi,
            const std::function<int()>& goesOn)
{
    StopFlag stop;
    stop.ask(goesOn);
    return save(picture, file, error, dpi, &stop);
}

}  // namespace pavane
