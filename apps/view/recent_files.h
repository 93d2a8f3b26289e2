#pragma once

#include <string>
#include <vector>

namespace pavane
{

class CMenu;

/// The files that were opened lately, the latest first, kept in the profile as the entry "Recent"
/// of a section, with tabs between the names.
class RecentFiles
{
public:
    static constexpr int most = 8;
    explicit RecentFiles(std::string section) : section_(std::move(section)) {}

    /// Reads the profile; parts that cannot be names of files, and repeated ones, are left out.
    void load();
    /// Puts a file first and writes the profile. A relative name becomes an absolute one.
    void add(const std::string& file);
    /// Takes a file out, for one that is gone, and writes the profile.
    void remove(const std::string& file);
    const std::vector<std::string>& files() const { return files_; }
    /// Fills the popup of a menu that begins with idNoRecent: idRecent is the first file.
    void putInto(CMenu& menu) const;

private:
    void store() const;
    std::string section_;
    std::vector<std::string> files_;
};

/// The file as a line of a menu: a digit to press (from 1), its name and the end of its folder.
std::string recentFileLabel(int number, const std::string& file);

}  // namespace pavane
