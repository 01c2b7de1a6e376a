// Removal of a large folder tree by the uninstaller's own walk against `rm -rf` on an
// identical tree. Everything happens inside one scratch folder made for the run (by
// default on /dev/shm, a tmpfs, so the disk does not dominate); nothing outside it is
// touched. Prints times and the ratio; never fails on speed.
#include "VXUninstallSurveyController.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QFile>
#include <QString>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <linux/magic.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char **environ;

namespace {

constexpr int kFolders = 1000;
constexpr int kFilesPerFolder = 100;

// 1,000 folders of 100 small files each, under `root`, which must not exist yet.
bool makeTree(const QByteArray &root)
{
    if (::mkdir(root.constData(), 0700) != 0)
        return false;
    const int rootFd = ::open(root.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (rootFd < 0)
        return false;
    static const char content[] = "a small file of a removed application, about sixty bytes.\n";
    bool ok = true;
    for (int d = 0; d < kFolders && ok; ++d) {
        char name[32];
        std::snprintf(name, sizeof name, "folder-%04d", d);
        ok = ::mkdirat(rootFd, name, 0700) == 0;
        const int folder = ok ? ::openat(rootFd, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC) : -1;
        ok = folder >= 0;
        for (int f = 0; f < kFilesPerFolder && ok; ++f) {
            std::snprintf(name, sizeof name, "file-%03d.plist", f);
            const int file = ::openat(folder, name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
            ok = file >= 0 && ::write(file, content, sizeof content - 1) > 0;
            if (file >= 0)
                ::close(file);
        }
        if (folder >= 0)
            ::close(folder);
    }
    ::close(rootFd);
    return ok;
}

bool exists(const QByteArray &path)
{
    struct stat st;
    return ::lstat(path.constData(), &st) == 0;
}

double removeWithRm(const QByteArray &path)
{
    char rm[] = "rm";
    char rf[] = "-rf";
    QByteArray target = path;
    char *argv[] = {rm, rf, target.data(), nullptr};
    QElapsedTimer timer;
    timer.start();
    pid_t pid = 0;
    if (::posix_spawnp(&pid, "rm", nullptr, nullptr, argv, environ) != 0)
        return -1;
    int status = 0;
    ::waitpid(pid, &status, 0);
    const double seconds = double(timer.nsecsElapsed()) * 1e-9;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? seconds : -1;
}

double removeWithOurs(const QByteArray &scratch, const QByteArray &path)
{
    VXUninstallSurveyController controller;
    QElapsedTimer timer;
    timer.start();
    // The folder is the only item of the scratch folder whose name starts with "tree".
    controller.removeFilesWithPathPrefix(QFile::decodeName(scratch + "/tree"));
    const double seconds = double(timer.nsecsElapsed()) * 1e-9;
    return exists(path) ? -1 : seconds;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char **argv)
{
    // The scratch folder is made inside the given folder (default /dev/shm).
    const QByteArray base = argc > 1 ? QByteArray(argv[1]) : QByteArrayLiteral("/dev/shm");
    QByteArray pattern = base + "/quorvelle-bench-removal-XXXXXX";
    if (!::mkdtemp(pattern.data())) {
        std::printf("cannot make a scratch folder in %s: %s\n", base.constData(),
                    std::strerror(errno));
        return 1;
    }
    const QByteArray scratch = pattern;
    struct statfs fs;
    const bool tmpfs = ::statfs(scratch.constData(), &fs) == 0 && fs.f_type == TMPFS_MAGIC;
    std::printf("%d files in %d folders, scratch %s (%s); rounds alternate rm and ours\n",
                kFolders * kFilesPerFolder, kFolders, scratch.constData(),
                tmpfs ? "tmpfs" : "not tmpfs");

    const int rounds = 7;
    std::vector<double> rmTimes, ourTimes;
    int status = 0;
    for (int round = 0; round < rounds && status == 0; ++round) {
        const QByteArray path = scratch + "/tree";
        for (int side = 0; side < 2; ++side) {
            if (!makeTree(path)) {
                std::printf("cannot build the tree: %s\n", std::strerror(errno));
                status = 1;
                break;
            }
            ::sync();
            const double seconds = side == 0 ? removeWithRm(path) : removeWithOurs(scratch, path);
            if (seconds < 0) {
                std::printf("%s did not remove the whole tree\n", side == 0 ? "rm -rf" : "ours");
                status = 1;
                break;
            }
            (side == 0 ? rmTimes : ourTimes).push_back(seconds);
        }
    }
    // Whatever is left of the scratch folder goes; it is ours alone.
    if (exists(scratch + "/tree"))
        removeWithRm(scratch + "/tree");
    ::rmdir(scratch.constData());
    if (status != 0)
        return status;

    const double rmBest = *std::min_element(rmTimes.begin(), rmTimes.end());
    const double ourBest = *std::min_element(ourTimes.begin(), ourTimes.end());
    std::printf("%-8s %10s %10s\n", "", "best ms", "median ms");
    std::printf("%-8s %10.1f %10.1f\n", "rm -rf", rmBest * 1e3, median(rmTimes) * 1e3);
    std::printf("%-8s %10.1f %10.1f\n", "ours", ourBest * 1e3, median(ourTimes) * 1e3);
    std::printf("time ours / rm -rf: best %.2f, median %.2f (lower is better)\n", ourBest / rmBest,
                median(ourTimes) / median(rmTimes));
    return 0;
}
