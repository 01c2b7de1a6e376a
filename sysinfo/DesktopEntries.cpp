// GLib's headers name a struct member "signals": include them before anything of Qt's.
#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include "DesktopEntries.h"

#include <QFile>

#include <cstdlib>
#include <string>

namespace Quorvelle::DesktopEntries {
namespace {

// The XDG base-directory rules say a relative path in these variables is invalid and must
// be ignored; GLib takes it as it stands, relative to whatever the working folder is. GLib
// reads the variables once, on first use, which may be inside a platform plug-in before any
// code of ours runs; so they are cleaned when the program is loaded. Consumers that follow
// the rules see no difference.
void dropRelativeXdgPaths()
{
    for (const char *name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME"}) {
        const char *value = std::getenv(name);
        if (value && *value && *value != '/')
            unsetenv(name);
    }
    for (const char *name : {"XDG_DATA_DIRS", "XDG_CONFIG_DIRS"}) {
        const char *value = std::getenv(name);
        if (!value)
            continue;
        std::string kept, entry;
        const std::string list = value;
        for (std::size_t start = 0; start <= list.size();) {
            std::size_t end = list.find(':', start);
            if (end == std::string::npos)
                end = list.size();
            entry = list.substr(start, end - start);
            if (!entry.empty() && entry.front() == '/')
                kept += (kept.empty() ? "" : ":") + entry;
            start = end + 1;
        }
        if (kept == list)
            continue;
        // Nothing absolute left: the variable is as good as unset, and the defaults apply.
        if (kept.empty())
            unsetenv(name);
        else
            setenv(name, kept.c_str(), 1);
    }
}

[[maybe_unused]] const bool g_xdgPathsCleaned = (dropRelativeXdgPaths(), true);

QString fileOf(GAppInfo *app)
{
    if (!app || !G_IS_DESKTOP_APP_INFO(app))
        return QString();
    const char *file = g_desktop_app_info_get_filename(G_DESKTOP_APP_INFO(app));
    return file ? QFile::decodeName(file) : QString();
}

} // namespace

QStringList applicationFiles()
{
    QStringList files;
    GList *all = g_app_info_get_all();
    for (GList *item = all; item; item = item->next) {
        const QString file = fileOf(static_cast<GAppInfo *>(item->data));
        if (!file.isEmpty())
            files.append(file);
    }
    g_list_free_full(all, g_object_unref);
    return files;
}

QString defaultApplicationFile(const QString &contentType)
{
    GAppInfo *app = g_app_info_get_default_for_type(contentType.toUtf8().constData(), FALSE);
    const QString file = fileOf(app);
    if (app)
        g_object_unref(app);
    return file.isEmpty() ? QString() : file;
}

} // namespace Quorvelle::DesktopEntries
