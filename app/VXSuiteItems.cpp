#include "VXSuiteItems.h"

namespace VXSuiteItems {
namespace {

std::string piece(std::string_view path)
{
    std::string text = "rm -rf '";
    text += path;
    text += "'; ";
    return text;
}

} // namespace

std::string composeCommand(const std::function<bool(std::string_view path)> &exists)
{
    std::string command;
    for (std::string_view path : kSystemWidePaths) {
        if (exists(path))
            command += piece(path);
    }
    if (!command.empty())
        command += kLaunchctlTail;
    return command;
}

bool isComposedCommand(std::string_view command)
{
    // Walks the table once: every piece may appear only at its own place, so order,
    // repetition and anything foreign all fail.
    bool any = false;
    for (std::string_view path : kSystemWidePaths) {
        const std::string expected = piece(path);
        if (command.substr(0, expected.size()) == expected) {
            command.remove_prefix(expected.size());
            any = true;
        }
    }
    return any && command == kLaunchctlTail;
}

} // namespace VXSuiteItems
