#include "platform/web_handler.h"

#include "platform/core/command_line.h"
#include "platform/core/desktop_folders.h"
#include "platform/core/key_file.h"

#include <algorithm>
#include <dirent.h>
#include <sys/stat.h>

namespace pavane
{

namespace
{

constexpr const char* entryGroup = "Desktop Entry";
constexpr const char* suffix = ".desktop";

bool endsWith(const CString& text, const CString& end)
{
    return text.size() > end.size() && text.ends_with(end);
}

/// A name that the bus takes: letters, digits, '_' and '-' in two parts or more.
bool isServiceName(const CString& name)
{
    constexpr std::size_t longest = 255;
    std::size_t parts = 1;
    char before = '.';
    for (const char c : name) {
        const bool isDigit = c >= '0' && c <= '9';
        const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        if (c == '.' ? before == '.'
                     : !isLetter && c != '_' && c != '-' && (!isDigit || before == '.'))
            return false;
        parts += c == '.';
        before = c;
    }
    return parts > 1 && before != '.' && name.size() <= longest;
}

/// Path of the object that answers for a service.
CString objectOf(const CString& service)
{
    CString object = "/" + service;
    std::replace(object.begin(), object.end(), '.', '/');
    std::replace(object.begin(), object.end(), '-', '_');
    return object;
}

bool exists(const CString& file)
{
    struct stat told {
    };
    return stat(file.c_str(), &told) == 0;
}

/// The file of an entry in the folders, the first that there is; "" for none. A '-' of the name may
/// stand for a folder.
CString fileOf(const CString& id, const std::vector<CString>& dataFolders)
{
    if (!endsWith(id, suffix) || id.find('/') != CString::npos)
        return {};
    for (const CString& folder : dataFolders) {
        CString name = id;
        for (std::size_t dash = 0; dash != CString::npos;) {
            if (CString file = folder + "/applications/" + name; exists(file))
                return file;
            dash = name.find('-', dash);
            if (dash != CString::npos)
                name[dash] = '/';
        }
    }
    return {};
}

/// What entry `id` tells; empty when it cannot be used.
WebHandler handlerOf(const CString& id, const CString& file)
{
    const KeyFile entry = KeyFile::read(file);
    const auto text = [&](const char* key) { return entry.text(entryGroup, key); };
    const CString type = text("Type");
    const CString tried = text("TryExec");
    // a program in a terminal would run where nobody sees it
    if ((!type.empty() && type != "Application") || entry.isTrue(entryGroup, "Hidden") ||
        entry.isTrue(entryGroup, "Terminal") || (!tried.empty() && programPath(tried).empty()))
        return {};
    WebHandler handler;
    handler.command = text("Exec");
    if (CommandArguments(handler, "a").empty())
        handler.command.clear();
    const CString service = id.substr(0, id.size() - CString(suffix).size());
    if (entry.isTrue(entryGroup, "DBusActivatable") && isServiceName(service)) {
        handler.service = service;
        handler.object = objectOf(service);
    }
    if (handler.command.empty() && handler.service.empty())
        return {};
    handler.name = text("Name");
    handler.icon = text("Icon");
    handler.file = file;
    return handler;
}

/// Looks through the lists of the desktop for one type.
class Lookup
{
public:
    explicit Lookup(CString type)
        : type_(std::move(type)), folders_(DesktopFolders::ofEnvironment())
    {
        for (const CString& name : partsOf(environmentText("XDG_CURRENT_DESKTOP"))) {
            CString small = name;
            for (char& c : small)
                c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
            if (small.find('/') == CString::npos)
                desktops_.push_back(small + "-mimeapps.list");
        }
    }

    WebHandler run()
    {
        WebHandler found;
        (void)(findDefault(found) || findAssociated(found) || findByTypes(found));
        return found;
    }

private:
    /// Takes the entry when it can be used.
    bool take(const CString& id, WebHandler& found) const
    {
        const CString file = fileOf(id, folders_.data);
        if (!file.empty())
            found = handlerOf(id, file);
        return !found.file.empty();
    }
    bool takeFirst(const std::vector<CString>& ids, WebHandler& found) const
    {
        return std::any_of(ids.begin(), ids.end(), [&](const CString& id) {
            return std::find(removed_.begin(), removed_.end(), id) == removed_.end() &&
                   take(id, found);
        });
    }
    /// Folders of lists, the more important first.
    std::vector<CString> listFolders() const
    {
        std::vector<CString> all = folders_.config;
        for (const CString& folder : folders_.data)
            all.push_back(folder + "/applications");
        return all;
    }
    bool findDefault(WebHandler& found) const
    {
        for (const CString& folder : listFolders()) {
            std::vector<CString> names = desktops_;
            names.emplace_back("mimeapps.list");
            for (const CString& name : names) {
                const KeyFile list = KeyFile::read(folder + "/" + name);
                if (takeFirst(list.list("Default Applications", type_), found))
                    return true;
            }
        }
        return false;
    }
    bool findAssociated(WebHandler& found)
    {
        for (const CString& folder : listFolders()) {
            const KeyFile list = KeyFile::read(folder + "/mimeapps.list");
            if (takeFirst(list.list("Added Associations", type_), found))
                return true;
            for (const CString& id : list.list("Removed Associations", type_))
                removed_.push_back(id);
            const KeyFile cache = KeyFile::read(folder + "/mimeinfo.cache");
            if (takeFirst(cache.list("MIME Cache", type_), found))
                return true;
        }
        return false;
    }
    /// The entries themselves, where nobody has made a list of their types.
    bool findByTypes(WebHandler& found) const
    {
        for (const CString& data : folders_.data) {
            const CString folder = data + "/applications";
            std::vector<CString> ids;
            if (DIR* const open = opendir(folder.c_str())) {
                while (const dirent* const entry = readdir(open))
                    ids.emplace_back(entry->d_name);
                closedir(open);
            }
            std::sort(ids.begin(), ids.end());
            std::erase_if(ids, [&](const CString& id) {
                const auto types =
                    endsWith(id, suffix)
                        ? KeyFile::read(folder + "/" + id).list(entryGroup, "MimeType")
                        : std::vector<CString>();
                return std::find(types.begin(), types.end(), type_) == types.end();
            });
            if (takeFirst(ids, found))
                return true;
        }
        return false;
    }

    CString type_;
    DesktopFolders folders_;
    std::vector<CString> desktops_;  ///< names of lists of the running desktop
    std::vector<CString> removed_;   ///< entries that the user took away from the type
};

}  // namespace

WebHandler FindWebHandler(const CString& scheme)
{
    return Lookup("x-scheme-handler/" + scheme).run();
}

}  // namespace pavane
