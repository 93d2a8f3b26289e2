#include "apps/view/recent_files.h"

#include "apps/view/main_menu.h"
#include "platform/CMenu.h"
#include "platform/profile.h"
#include "tessel/paths.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace pavane
{

namespace
{

/// Longer texts are no names of files on any system here.
constexpr std::size_t longestName = 4096;
/// Bytes of a folder that a menu shows; of a longer one the end.
constexpr std::size_t shownFolder = 40;
constexpr const char* entry = "Recent";
constexpr char separator = '\t';

int isUsable(const std::string& file)
{
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < ' '; };
    return file.size() > 1 && file.size() <= longestName && file.front() == '/' &&
           file.back() != '/' && std::none_of(file.begin(), file.end(), isControl);
}

std::string absoluteName(const std::string& file)
{
    std::error_code failed;
    const auto whole = std::filesystem::absolute(file, failed);
    return failed ? file : whole.lexically_normal().string();
}

/// The last bytes of a text, from the start of a character on.
std::string ending(const std::string& text, std::size_t bytes)
{
    if (text.size() <= bytes)
        return text;
    std::size_t from = text.size() - bytes;
    while (from < text.size() && (static_cast<unsigned char>(text[from]) & 0xC0) == 0x80)
        ++from;
    return "…" + text.substr(from);
}

/// In a menu a single '&' marks a letter.
std::string plain(const std::string& text)
{
    std::string doubled;
    for (const char c : text)
        doubled += c == '&' ? std::string("&&") : std::string(1, c);
    return doubled;
}

}  // namespace

void RecentFiles::load()
{
    files_.clear();
    std::string rest = GetProfileString(section_, entry);
    while (!rest.empty() && files_.size() < most) {
        const std::string file = rest.substr(0, rest.find(separator));
        rest.erase(0, file.size() + 1);
        if (isUsable(file) && std::find(files_.begin(), files_.end(), file) == files_.end())
            files_.push_back(file);
    }
}

void RecentFiles::store() const
{
    std::string text;
    for (const std::string& file : files_)
        text += (text.empty() ? "" : std::string(1, separator)) + file;
    // the profile waits for the disk
    if (text != GetProfileString(section_, entry))
        (void)WriteProfileString(section_, entry, text);
}

void RecentFiles::add(const std::string& file)
{
    const std::string name = absoluteName(file);
    if (!isUsable(name))
        return;
    std::erase(files_, name);
    files_.insert(files_.begin(), name);
    files_.resize(std::min<std::size_t>(files_.size(), most));
    store();
}

void RecentFiles::remove(const std::string& file)
{
    if (std::erase(files_, absoluteName(file)))
        store();
}

CMenu* popupOf(CMenu& menu, unsigned id)
{
    for (auto& top : menu.lines())
        for (auto& line : top.popup->lines())
            if (line.popup && !line.popup->lines().empty() && line.popup->lines().front().id == id)
                return line.popup.get();
    return nullptr;
}

void RecentFiles::putInto(CMenu& menu) const
{
    CMenu* const popup = popupOf(menu, idNoRecent);
    if (!popup || files_.empty())
        return;
    popup->DeleteAll();
    int number = 0;
    for (const std::string& file : files_) {
        popup->AppendMenu(recentFileLabel(number + 1, file),
                          idRecent + static_cast<unsigned>(number));
        ++number;
    }
}

std::string recentFileLabel(int number, const std::string& file)
{
    const std::string folder = folderOf(file);
    std::string label(1, '&');
    label += std::to_string(number);
    label += "  " + plain(baseNameOf(file)) + "   (";
    label += plain(ending(folder.substr(0, folder.size() - (folder.size() > 1)), shownFolder));
    return label + ')';
}

}  // namespace pavane
