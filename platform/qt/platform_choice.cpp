#include "platform/qt/platform_choice.h"

#include "posix/displays.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QPluginLoader>
#include <xcb/xcb.h>

namespace pavane
{

namespace
{

constexpr char variable[] = "QT_QPA_PLATFORM";

bool hasKey(const QJsonObject& plugin, const QString& key)
{
    const QJsonArray keys =
        plugin.value(QLatin1String("MetaData")).toObject().value(QLatin1String("Keys")).toArray();
    for (const auto& known : keys) {
        if (known.toString().compare(key, Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

/// The folders in which the toolkit looks for platforms.
QStringList pluginFolders()
{
    QStringList folders;
    const QString own = qEnvironmentVariable("QT_QPA_PLATFORM_PLUGIN_PATH");
    if (!own.isEmpty())
        folders.append(own.split(QDir::listSeparator()));
    const QStringList paths = QCoreApplication::libraryPaths();
    for (const QString& path : paths)
        folders.append(path + QStringLiteral("/platforms"));
    return folders;
}

/// Whether the platform is installed, with all the libraries that it needs.
bool isInstalled(const QString& name, CString& why)
{
    const auto linked = QPluginLoader::staticPlugins();
    for (const QStaticPlugin& plugin : linked) {
        if (hasKey(plugin.metaData(), name))
            return true;
    }
    const QStringList folders = pluginFolders();
    for (const QString& folder : folders) {
        const QDir place(folder);
        const QStringList files = place.entryList(QDir::Files);
        for (const QString& file : files) {
            QPluginLoader plugin(place.filePath(file));
            if (!hasKey(plugin.metaData(), name))
                continue;
            if (plugin.load())
                return true;
            why = "The platform " + name.toStdString() +
                  " does not load: " + plugin.errorString().toStdString();
            return false;
        }
    }
    why = "The platform " + name.toStdString() + " is not installed";
    return false;
}

/// Whether the display lets us in; what answers at all has been asked before, since a connection
/// is waited for.
bool xLetsIn(const CString& display)
{
    xcb_connection_t* const connection = xcb_connect(display.c_str(), nullptr);
    const bool isOpen = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return isOpen;
}

bool hasX(CString& why)
{
    const CString display = qgetenv("DISPLAY").toStdString();
    if (display.empty())
        why = "There is no display to show windows on";
    else if (!xDisplayAnswers(display))
        why = "The display " + display + " does not answer";
    else if (!xLetsIn(display))
        why = "The display " + display + " lets nobody in who shows no key";
    else
        return true;
    return false;
}

/// The toolkit's plug-in looks for "wayland-0" where nothing is named.
bool hasWayland(CString& why)
{
    CString display = qgetenv("WAYLAND_DISPLAY").toStdString();
    if (display.empty())
        display = "wayland-0";
    if (waylandDisplayAnswers(display))
        return true;
    why = "The display " + display + " does not answer";
    return false;
}

/// Whether the platform `asked`, a name with options behind a colon, is sure to start.
bool canStart(const QByteArray& asked, CString& why)
{
    const QString name = QString::fromUtf8(asked.split(':').front()).toLower();
    if (!isInstalled(name, why))
        return false;
    if (name == QLatin1String("xcb"))
        return hasX(why);
    if (name.startsWith(QLatin1String("wayland")))
        return hasWayland(why);
    for (const char* const alone : {"offscreen", "minimal", "vnc"}) {
        if (name == QLatin1String(alone))
            return true;
    }
    why = "The platform " + name.toStdString() +
          " can end the program: a host that wants it makes the application object itself";
    return false;
}

/// Those that are tried when nobody has asked for one; a session says which of both it is.
QList<QByteArray> usualPlatforms()
{
    if (qgetenv("XDG_SESSION_TYPE") == "wayland" && !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return {"wayland", "xcb"};
    if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return {"xcb"};
    return {"xcb", "wayland"};
}

}  // namespace

QByteArray choosePlatform(PlatformUse use, CString& why)
{
    const QByteArray named = qgetenv(variable);
    QList<QByteArray> asked = named.split(';');
    if (named.isEmpty()) {
        asked = usualPlatforms();
        if (use == PlatformUse::pictures)
            asked = {"offscreen"};
    }
    CString first;
    for (const QByteArray& platform : asked) {
        CString fault;
        if (canStart(platform, fault))
            return platform;
        if (first.empty())
            first = fault;
    }
    why = first;
    if (!named.isEmpty())
        why += CString(" (") + variable + "=" + named.toStdString() + ")";
    return {};
}

}  // namespace pavane
