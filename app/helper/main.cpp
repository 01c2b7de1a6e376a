// The one program the uninstaller's polkit action is bound to: pkexec runs it as the
// superuser and it hands its single argument, the removal command, to /bin/sh -c. Being
// a program of our own keeps the action from capturing every pkexec use of /bin/sh, and
// it runs only the command the uninstaller composes: within a kept grant, another process
// of the same user must not get an arbitrary command run as root.
#include "VXSuiteItems.h"

#include <cstdio>
#include <unistd.h>

int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s COMMAND\n", argv[0]);
        return 2;
    }
    if (!VXSuiteItems::isComposedCommand(argv[1])) {
        std::fprintf(stderr,
                     "%s: refused: the command is not the uninstaller's removal command; "
                     "nothing was run\n",
                     argv[0]);
        return 3;
    }
    // The shell runs with "/" as its working directory, like the command always has.
    if (::chdir("/") != 0)
        return 1;
    char sh[] = "/bin/sh";
    char c[] = "-c";
    char *const args[] = {sh, c, argv[1], nullptr};
    ::execv(sh, args);
    std::perror("execv /bin/sh");
    return 127;
}
