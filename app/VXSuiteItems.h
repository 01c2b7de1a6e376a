#pragma once

// What the suite installs and the uninstaller removes, in removal order, and the one
// privileged command built from it. Plain C++ on purpose: the privileged helper compiles
// this file too and checks its argument against the same table, so the command the program
// composes and the command the helper accepts cannot drift apart. The test harness builds
// its fake suite from these tables as well.
#include <functional>
#include <string>
#include <string_view>

namespace VXSuiteItems {

// Computer-wide items, removed by one shell command run as the superuser.
inline constexpr std::string_view kSystemWidePaths[] = {
    "/Library/Application Support/Quorvelle",
    "/Library/Caches/com.varnix.Quorvelle",
    "/Library/LaunchDaemons/com.varnix.Quorvelle.plugin.AntiTheft.daemon.plist",
    "/Library/LaunchDaemons/com.varnix.Quorvelle.AntiVirus.plist",
    "/Library/LaunchDaemons/net.brelltan.Quorvelle.AntiVirus",
    "/Library/LaunchDaemons/net.brelltan.Quorvelle.AntiVirus.plist",
    "/Library/LaunchDaemons/net.brelltan.Quorvelle.plugin.AntiTheft.daemon",
    "/Library/LaunchDaemons/net.brelltan.Quorvelle.plugin.AntiTheft.daemon.plist",
};

// Only three jobs are unloaded: the AntiVirus job of the second family keeps running
// until the next restart, only its files go.
inline constexpr std::string_view kLaunchctlTail =
    "launchctl remove com.varnix.Quorvelle.AntiVirus; "
    "launchctl remove com.varnix.Quorvelle.plugin.AntiTheft.daemon; "
    "launchctl remove net.brelltan.Quorvelle.plugin.AntiTheft.daemon";

enum class Base
{
    UserLibrary, // the user's Library folder
    LocalCaches, // the computer-wide caches folder, removed with the user's rights only
};
enum class How
{
    Remove,   // the item itself, a folder with everything in it
    ByPrefix, // every item of the folder whose name begins with the last component
};
struct UserItem
{
    Base base;
    std::string_view relative;
    How how;
};

// The user's own items, removed directly with the user's rights, each independently.
inline constexpr UserItem kUserItems[] = {
    {Base::UserLibrary, "Application Support/Quorvelle", How::Remove},
    {Base::UserLibrary, "Application Support/Quorvelle Helper", How::Remove},
    {Base::UserLibrary, "Preferences/com.varnix.Quorvelle", How::ByPrefix},
    {Base::UserLibrary, "Caches/com.varnix.Quorvelle", How::ByPrefix},
    {Base::UserLibrary, "Saved Application State/com.varnix.Quorvelle.savedState", How::Remove},
    {Base::UserLibrary, "LaunchAgents/com.varnix.Quorvelle.Helper", How::Remove},
    {Base::UserLibrary, "LaunchAgents/com.varnix.Quorvelle.Helper.plist", How::Remove},
    {Base::UserLibrary, "LaunchAgents/net.brelltan.Quorvelle.Helper", How::Remove},
    {Base::UserLibrary, "LaunchAgents/net.brelltan.Quorvelle.Helper.plist", How::Remove},
    {Base::UserLibrary, "Saved Application State/net.brelltan.Quorvelle.savedState", How::Remove},
    {Base::LocalCaches, "net.brelltan.Quorvelle", How::Remove},
    {Base::UserLibrary, "Preferences/net.brelltan.Quorvelle", How::ByPrefix},
    {Base::UserLibrary, "Caches/net.brelltan.Quorvelle", How::ByPrefix},
};

// Unloads the second family's helper job after the user's items are gone.
inline constexpr std::string_view kUserLaunchctlCommand =
    "/bin/launchctl remove net.brelltan.Quorvelle.Helper";

// "rm -rf '<path>'; " for every system-wide path that exists, in table order, then the
// launchctl tail; empty when none exists. Quoted but not escaped: no fixed path holds a
// quote.
std::string composeCommand(const std::function<bool(std::string_view path)> &exists);

// True only for a text composeCommand can produce: one or more of the pieces in table
// order, each at most once, followed by the tail and nothing else.
bool isComposedCommand(std::string_view command);

} // namespace VXSuiteItems
