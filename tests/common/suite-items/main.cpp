// Prints the suite's items from the uninstaller's own table, one per line, for the shell
// side of the harness (scripts/qv-sandbox builds the fake suite from it):
//   system <TAB> absolute path              removed by the privileged command
//   user   <TAB> path below $HOME <TAB> how removed with the user's rights (remove|prefix)
//   local  <TAB> absolute path <TAB> how    computer-wide, removed with the user's rights
#include "VXSuiteItems.h"

#include <cstdio>
#include <string>

int main()
{
    for (std::string_view path : VXSuiteItems::kSystemWidePaths)
        std::printf("system\t%.*s\n", int(path.size()), path.data());
    for (const VXSuiteItems::UserItem &item : VXSuiteItems::kUserItems) {
        const bool user = item.base == VXSuiteItems::Base::UserLibrary;
        const std::string path =
            (user ? "Library/" : "/Library/Caches/") + std::string(item.relative);
        std::printf("%s\t%s\t%s\n", user ? "user" : "local", path.c_str(),
                    item.how == VXSuiteItems::How::ByPrefix ? "prefix" : "remove");
    }
    return 0;
}
