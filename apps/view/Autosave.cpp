#include "apps/view/Autosave.h"

#include "pavane/trackers/areas/area_names.h"
#include "tessel/paths.h"
#include "tessel/SafeFile.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace pavane
{

namespace
{

namespace fs = std::filesystem;

constexpr std::string_view extension = ".areas";
/// No process has a number from here on.
constexpr int noProcess = 1 << 30;

/// The 64-bit FNV-1a hash (Fowler, Noll and Vo) of the map's whole name, as 16 digits.
std::string nameNumber(const std::string& map)
{
    std::error_code failed;
    const fs::path whole = fs::weakly_canonical(map, failed);
    std::uint64_t hash = 0xCBF29CE484222325u;
    for (const char c : failed ? map : whole.string())
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3u;
    std::string digits(16, '0');
    for (std::size_t i = digits.size(); i-- > 0; hash >>= 4)
        digits[i] = "0123456789abcdef"[hash & 15];
    return digits;
}

std::string programOf(const std::string& process, std::error_code& failed)
{
    const fs::path link = fs::read_symlink("/proc/" + process + "/exe", failed);
    std::string name = failed ? std::string() : link.filename().string();
    constexpr std::string_view gone = " (deleted)";  // replaced while it runs
    if (name.size() > gone.size() && name.ends_with(gone))
        name.resize(name.size() - gone.size());
    return name;
}

/// Whether the process that a copy is named for still looks after it. Numbers are used again: one
/// of another program does not.
int isLookedAfter(int process)
{
    if (kill(process, 0) != 0 && errno == ESRCH)
        return 0;
    std::error_code failed;
    const std::string own = programOf("self", failed);
    if (failed)
        return 1;
    const std::string program = programOf(std::to_string(process), failed);
    // one that was killed stays in the list until somebody asks for its end, without a program
    if (failed)
        return failed != std::errc::no_such_file_or_directory;
    return program == own;
}

std::int64_t secondsOf(fs::file_time_type time)
{
    using std::chrono::seconds;
    const auto system = std::chrono::file_clock::to_sys(time);
    return std::chrono::duration_cast<seconds>(system.time_since_epoch()).count();
}

}  // namespace

void removeCopy(const std::string& file)
{
    std::error_code ignored;
    removeNamesFile(file);
    fs::remove(file, ignored);
}

Autosave::Autosave(const std::string& folder, const std::string& map)
    : folder_(folder), start_("autosave-" + nameNumber(map) + '-'),
      file_(folder + start_ + std::to_string(getpid()) + std::string(extension))
{
}

int Autosave::write(const StoreFunction& store, const std::vector<AreaLabel>& labels)
{
    if (file_.empty())
        return 0;
    std::error_code ignored;
    fs::create_directories(folder_, ignored);
    SafeFile out;
    std::string fault;
    return out.open(file_) && store(out.file()) && out.commit() &&
           writeNamesFile(file_, labels, fault);
}

void Autosave::remove()
{
    if (!file_.empty())
        removeCopy(file_);
}

std::string nameOfNoProcess(const std::string& folder, const std::string& start,
                            const std::string& end)
{
    std::string name;
    for (int number = noProcess; name.empty() || IsFileExists(name); ++number)
        name.assign(folder).append(start).append(std::to_string(number)).append(end);
    return name;
}

std::vector<LeftoverAreas> leftCopies(const std::string& folder, const std::string& start,
                                      const std::string& end)
{
    std::vector<LeftoverAreas> found;
    std::error_code failed;
    for (fs::directory_iterator i(folder, failed), last; !failed && i != last;
         i.increment(failed)) {
        const std::string name = i->path().filename().string();
        if (name.size() < start.size() + end.size() || !name.starts_with(start) ||
            !name.ends_with(end))
            continue;
        std::string_view digits(name);
        digits = digits.substr(start.size(), name.size() - start.size() - end.size());
        digits = digits.substr(0, digits.find('-'));
        int process = 0;
        std::error_code unknown;
        const fs::file_time_type time = fs::last_write_time(i->path(), unknown);
        if (stoval(digits, process) && process > 0 && !unknown &&
            fs::is_regular_file(i->path(), unknown) && !isLookedAfter(process))
            found.push_back({i->path().string(), secondsOf(time)});
    }
    std::sort(found.begin(), found.end(),
              [](const LeftoverAreas& a, const LeftoverAreas& b) { return a.time > b.time; });
    return found;
}

void Autosave::setAside() const
{
    if (!IsFileExists(file_))
        return;
    const std::string other = nameOfNoProcess(folder_, start_, std::string(extension));
    std::error_code failed;
    fs::rename(file_, other, failed);
    if (!failed)
        fs::rename(namesFileOf(file_), namesFileOf(other), failed);
}

std::vector<LeftoverAreas> Autosave::leftovers() const
{
    setAside();
    return leftCopies(folder_, start_, std::string(extension));
}

}  // namespace pavane
