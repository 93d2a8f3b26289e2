#include "apps/view/same_file.h"

#include "apps/view/options.h"
#include "pavane/trackers/areas/area_names.h"
#include "tessel/paths.h"

#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <tuple>
#include <unistd.h>

namespace pavane
{

namespace
{

constexpr int mostLinks = 40;

/// What a name leads to: a file, or a name in a folder that has no such file yet.
struct Identity {
    dev_t device = 0;
    ino_t number = 0;
    std::string rest;
    auto key() const { return std::tie(device, number, rest); }
};

int identify(const std::string& name, Identity& identity)
{
    struct stat info {
    };
    if (stat(name.c_str(), &info) != 0)
        return 0;
    identity.device = info.st_dev;
    identity.number = info.st_ino;
    return 1;
}

/// The name that a symbolic link stands for, "" when it is none.
std::string linkTarget(const std::string& name)
{
    std::error_code failed;
    const std::filesystem::path target = std::filesystem::read_symlink(name, failed);
    if (failed)
        return {};
    return target.is_absolute() ? target.string() : folderOf(name) + target.string();
}

Identity identityOf(std::string name)
{
    Identity identity;
    if (identify(name, identity))
        return identity;
    for (int links = 0; links < mostLinks; ++links) {
        const std::string target = linkTarget(name);
        if (target.empty())
            break;
        name = target;
    }
    const std::string folder = folderOf(name);
    if (identify(folder.empty() ? "./" : folder, identity)) {
        identity.rest = baseNameOf(name);
        return identity;
    }
    std::error_code failed;
    identity.rest = std::filesystem::absolute(name, failed).lexically_normal().string();
    return identity;
}

/// Non-zero when what is printed goes into the file of that name, which would take its place.
int isStandardOutput(const std::string& name)
{
    struct stat printed {
    };
    Identity identity;
    return !name.empty() && fstat(STDOUT_FILENO, &printed) == 0 && S_ISREG(printed.st_mode) &&
           identify(name, identity) && identity.device == printed.st_dev &&
           identity.number == printed.st_ino;
}

}  // namespace

int isSameFile(const std::string& a, const std::string& b)
{
    return !a.empty() && !b.empty() && identityOf(a).key() == identityOf(b).key();
}

const NamedFile* sameFileAmong(const std::string& name, const std::vector<NamedFile>& files)
{
    for (const NamedFile& file : files)
        if (isSameFile(name, file.name))
            return &file;
    return nullptr;
}

std::string outputClash(const ViewOptions& options)
{
    // a palette without a folder is one that the program brings
    const int ownPalette = options.palette.find('/') != std::string::npos;
    std::vector<NamedFile> files = {
        {"the map", options.map},
        {"the areas", options.areas},
        {"the names of the areas", options.areas.empty() ? "" : namesFileOf(options.areas)},
        {"the marks", options.marks},
        {"the model", options.model},
        {"the u,v points", options.visibilities},
        {"the second map", options.surface.other},
        {"the second map", options.made.other},
        {"the map of --like", options.made.like},
        {"the map of --find-shift", options.made.findShift},
        {"the map of --contours", options.overlay.contours},
        {"Stokes Q", options.overlay.stokesQ},
        {"Stokes U", options.overlay.stokesU},
        {"the palette", ownPalette ? options.palette : ""}};
    for (const std::string& file : options.more)
        files.push_back({"the map", file});
    std::vector<NamedFile> outputs = {{"--mask", options.mask},
                                      {"--png", options.png},
                                      {"--pdf", options.pdf},
                                      {"--svg", options.svg},
                                      {"--out", options.made.out},
                                      {"--errors", options.made.errors},
                                      {"--residual", options.profile.residual},
                                      {"--print", options.print.settings.file}};
    int prints = options.stats || options.rgb.wanted || options.made.wanted() ||
                 !options.made.findShift.empty() || options.profile.wanted() ||
                 options.profile.hasFit || !options.visibilities.empty();
    for (const TableWish& wish : options.tables) {
        const int isPrinted = wish.file == "-";
        prints = prints || isPrinted;
        outputs.push_back({"--tsv", isPrinted ? "" : wish.file});
    }
    for (const NamedFile& output : outputs) {
        if (const NamedFile* const same = sameFileAmong(output.name, files))
            return output.what + ' ' + output.name + " would write over " + same->what + ' ' +
                   same->name;
        if (prints && isStandardOutput(output.name))
            return output.what + ' ' + output.name + " would write over what is printed";
        files.push_back(output);
    }
    return {};
}

}  // namespace pavane
