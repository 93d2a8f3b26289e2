#pragma once

#include <cstdint>
#include <string>

namespace pavane_ms
{

/// Throws when both are one file or folder, or one lies within the other, also through links.
void refuseSame(const std::string& input, const std::string& output);

/// Throws when the disk of the output has less free than is needed.
void needSpace(const std::string& output, std::uint64_t bytes);
std::uint64_t freeSpace(const std::string& path);

/// Bytes of the files in a folder, or of a file.
std::uint64_t sizeOf(const std::string& path);

/// An output that is written aside, under `partName()`, and takes its place by `commit()`. Without
/// that nothing of it stays. Whoever dies leaves a part behind, which the next one takes away; two
/// at once are refused.
class OutputPath
{
public:
    /// Folders take the place of none but those that `mayReplace` says of.
    OutputPath(const std::string& name, int isFolder, int mayReplace);
    ~OutputPath();
    OutputPath(const OutputPath&) = delete;
    OutputPath& operator=(const OutputPath&) = delete;

    const std::string& partName() const { return part_; }
    void commit();
    /// Takes away what is not committed, for a program that ends without its destructors.
    static void removeAll();

private:
    void remove();

    static OutputPath* current_;
    std::string name_, part_;
    int isFolder_;
    int lock_ = -1;
    int isCommitted_ = 0;
};

}  // namespace pavane_ms
