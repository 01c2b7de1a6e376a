// Uses the installed kit the way an application of the suite does and checks what only an
// installed kit can get wrong: which bundle the kit's classes and the program's own texts come
// from. (Drawing, cells made by name and the load-time hooks through the installed kit are
// the example's and kit-hooks' checks; JSON and the system information pkgconfig.cpp's.)
// Arguments: the kit's expected data folder, its version, and the German translation file of
// the unit strings (the oracle for the kit bundle's translations).
#include <Quorvelle/Foundation/Bundle.h>
#include <Quorvelle/Foundation/QuorvelleString.h>
#include <Quorvelle/Foundation/VXThreadSafeBundle.h>
#include <Quorvelle/Widgets/VXGradientView.h>

#include "tsfile.h"

#include <QApplication>
#include <QFileInfo>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

int failures = 0;

void check(bool ok, const char *what, const QString &detail = QString())
{
    std::printf("%s %s%s%s\n", ok ? "ok  " : "FAIL", what, detail.isEmpty() ? "" : ": ",
                qPrintable(detail));
    if (!ok)
        ++failures;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    if (argc != 4) {
        std::fprintf(stderr, "usage: kit-consumer KIT_DATA_FOLDER VERSION STRINGS_DE_TS\n");
        return 2;
    }
    const QString kitData = QFileInfo(QString::fromLocal8Bit(argv[1])).canonicalFilePath();
    const QString version = QString::fromLocal8Bit(argv[2]);

    // The kit's own classes belong to the kit's bundle, with its identity.
    Quorvelle::Bundle *kit = Quorvelle::Bundle::bundleForClass(&VXGradientView::staticMetaObject);
    check(kit && kit->bundlePath() == kitData, "kit bundle", kit ? kit->bundlePath() : QString());
    const auto kitVersion =
        kit ? kit->objectForInfoDictionaryKey(u"CFBundleShortVersionString"_s) : std::nullopt;
    check(kitVersion && kitVersion->toString() == version, "kit bundle version");
    // The program's own texts come from its own bundle.
    check(VXLocalizedString(u"About this computer"_s) == u"\u00dcber diesen Computer"_s,
          "application's own translation");
    // It ships no unit strings: the kit's own are used, in the language it chose.
    const QString week = TsFile::translation(QString::fromLocal8Bit(argv[3]), u"1 week"_s);
    check(QuorvelleString::stringWithNumberOfDays(7) == week, "unit strings from the kit bundle",
          QuorvelleString::stringWithNumberOfDays(7));

    return failures == 0 ? 0 : 1;
}
