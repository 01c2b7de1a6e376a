// Calls nothing in the widgets library, yet gets its load-time work: item views with
// alternating rows in the kit's colours. The expected colour is asked of the library at run
// time (dlsym), so the program holds no link-time reference of its own to it.
#include <Quorvelle/Widgets/VXColor.h>

#include <QApplication>
#include <QStandardItemModel>
#include <QTableView>

#include <cstdio>
#include <dlfcn.h>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    if (!dlopen("libQuorvelleWidgets.so.2", RTLD_NOW | RTLD_NOLOAD)) {
        std::printf("FAIL the widgets library is not loaded\n");
        return 1;
    }
    using ColorFunction = VXColor (*)();
    const auto color = reinterpret_cast<ColorFunction>(
        dlsym(RTLD_DEFAULT, "_ZN14QuorvelleColor32tableAlternateRowBackgroundColorEv"));
    if (!color) {
        std::printf("FAIL no colour function\n");
        return 1;
    }
    const VXColor alternate = color();
    const double *c = alternate.components();
    const QColor expected =
        alternate.colorSpace() == VXColor::ColorSpace::CalibratedRGB
            ? QColor::fromRgbF(float(c[0]), float(c[1]), float(c[2]), float(c[3]))
            : QColor::fromRgbF(float(c[0]), float(c[0]), float(c[0]), float(c[1]));

    QStandardItemModel model(3, 1);
    QTableView view;
    view.setModel(&model);
    view.setAlternatingRowColors(true);
    view.show();
    QApplication::processEvents();
    const QColor got = view.palette().color(QPalette::Active, QPalette::AlternateBase);
    const bool ok = got == expected && view.palette().color(QPalette::Base) == QColor(Qt::white);
    std::printf("%s alternating rows %s (expected %s)\n", ok ? "ok  " : "FAIL",
                qPrintable(got.name()), qPrintable(expected.name()));
    return ok ? 0 : 1;
}
