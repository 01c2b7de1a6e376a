#pragma once

#include <QString>

// Running one shell command as the superuser after the user's consent, through polkit.
// The action's message (the password prompt, with its translations) lives in the shipped
// .policy file; pkexec is bound to our own helper, which runs its argument with /bin/sh -c.
namespace VXPrivilegedRun {

inline constexpr char16_t kActionId[] = u"net.brelltan.Quorvelle.privilegedAction";

// True when the process already runs as the superuser: no consent is needed then.
bool runsAsSuperuser();

// Asks polkit whether this process may perform the action, letting the authentication
// agent ask the user. Blocks until the user has answered; true only when granted.
// Always true for the superuser, without asking.
bool obtainConsent();

// Starts the command with /bin/sh -c as the superuser (directly when already root,
// otherwise through pkexec and the helper) and returns at once: the command is not
// waited for and may outlive the program. False when it could not even be started.
bool runDetached(const QString &command);

// The helper that pkexec runs: the installed one, or the one beside the program in a
// build tree.
QString helperPath();

} // namespace VXPrivilegedRun
