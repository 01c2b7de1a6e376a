// Built with the flags of the kit's pkg-config files alone, outside CMake.
#include <Quorvelle/Foundation/JSON.h>
#include <Quorvelle/SystemInformation/VXSystemInformation.h>

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const auto array = JSON::arrayWithJSONString(QStringLiteral("[1, \"two\", null]"));
    const bool ok = array && JSON::JSONString(*array) == QStringLiteral("[1,\"two\",null]") &&
                    !VXSystemInformation::operatingSystemString().isEmpty();
    std::printf("%s pkg-config build\n", ok ? "ok  " : "FAIL");
    return ok ? 0 : 1;
}
