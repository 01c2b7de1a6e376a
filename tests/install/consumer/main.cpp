// Uses the installed kit the way an application of the suite does and checks what it gets.
// Arguments: the kit's expected data folder, its version, and the German translation file of
// the unit strings (the oracle for the kit bundle's translations).
#include <Quorvelle/Foundation/Bundle.h>
#include <Quorvelle/Foundation/JSON.h>
#include <Quorvelle/Foundation/QuorvelleString.h>
#include <Quorvelle/Foundation/VXThreadSafeBundle.h>
#include <Quorvelle/SystemInformation/VXSystemInformation.h>
#include <Quorvelle/Widgets/Button.h>
#include <Quorvelle/Widgets/VXFlatButtonCell.h>
#include <Quorvelle/Widgets/VXGradientView.h>
#include <Quorvelle/Widgets/VXQuorvelleColor.h>

#include "tsfile.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QJsonDocument>
#include <QPainter>
#include <QSysInfo>

#include <cstdio>

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

    // JSON, read and written by the kit, compared with Qt's own reader.
    const auto dictionary = JSON::dictionaryWithJSONString(
        QStringLiteral(R"({"name":"Quorvelle","sizes":[1,2.5,-3],"nested":{"ok":true}})"));
    const QByteArray written = dictionary ? JSON::JSONUtf8(*dictionary) : QByteArray();
    check(
        QJsonDocument::fromJson(written) ==
            QJsonDocument::fromJson(R"({"name":"Quorvelle","sizes":[1,2.5,-3],"nested":{"ok":1}})"),
        "JSON read and written back", QString::fromUtf8(written));

    // The kit's own classes belong to the kit's bundle, with its identity.
    Quorvelle::Bundle *kit = Quorvelle::Bundle::bundleForClass(&VXGradientView::staticMetaObject);
    check(kit && kit->bundlePath() == kitData, "kit bundle", kit ? kit->bundlePath() : QString());
    const auto kitVersion =
        kit ? kit->objectForInfoDictionaryKey(QStringLiteral("CFBundleShortVersionString"))
            : std::nullopt;
    check(kitVersion && kitVersion->toString() == version, "kit bundle version");
    // The program's own texts come from its own bundle.
    check(VXLocalizedString(QStringLiteral("About this computer")) ==
              QStringLiteral("\u00dcber diesen Computer"),
          "application's own translation");
    // It ships no unit strings: the kit's own are used, in the language it chose.
    const QString week =
        TsFile::translation(QString::fromLocal8Bit(argv[3]), QStringLiteral("1 week"));
    check(QuorvelleString::stringWithNumberOfDays(7) == week, "unit strings from the kit bundle",
          QuorvelleString::stringWithNumberOfDays(7));

    // System information answers from the running system.
    check(VXSystemInformation::operatingSystemString().compare(QSysInfo::kernelType(),
                                                               Qt::CaseInsensitive) == 0,
          "operating system", VXSystemInformation::operatingSystemString());

    // Drawing: a solid gradient view fills its middle with its colour.
    VXGradientView view;
    view.resize(40, 20);
    const VXColor red = VXColor::colorWithCalibratedRed(1.0, 0.0, 0.0, 1.0);
    view.setStartGradientColor(red);
    view.setFinishGradientColor(red);
    QImage image(40, 20, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    view.drawRect(painter);
    painter.end();
    check(image.pixelColor(20, 10) == QColor(Qt::red), "gradient view draws",
          image.pixelColor(20, 10).name());

    // A button whose cell comes from a class name, the road a window description takes.
    Quorvelle::Button button;
    button.setCellClass(QStringLiteral("VXFlatButtonCell"));
    button.setText(QStringLiteral("&Continue"));
    check(dynamic_cast<VXFlatButtonCell *>(button.cell()) != nullptr, "flat cell by name");
    check(!button.sizeHint().isEmpty(), "button size");
    check(QuorvelleColor::isAlternatingRowExchangeInstalled(), "alternating-row hook");

    return failures == 0 ? 0 : 1;
}
