// Built with the flags of the kit's pkg-config files alone, outside CMake: the installed
// Foundation writes JSON back as it read it, the installed SystemInformation names the
// kernel as Qt does.
#include <Quorvelle/Foundation/JSON.h>
#include <Quorvelle/SystemInformation/VXSystemInformation.h>

#include <QCoreApplication>
#include <QSysInfo>

#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const auto array = JSON::arrayWithJSONString(QStringLiteral("[1, \"two\", null]"));
    const bool ok = array && JSON::JSONString(*array) == QStringLiteral("[1,\"two\",null]") &&
                    VXSystemInformation::operatingSystemString().compare(QSysInfo::kernelType(),
                                                                         Qt::CaseInsensitive) == 0;
    std::printf("%s pkg-config build\n", ok ? "ok  " : "FAIL");
    return ok ? 0 : 1;
}
