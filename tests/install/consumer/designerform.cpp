// A window laid out in Designer with the kit's widgets, as an application compiles it: uic's
// code calls the installed headers' setters. Then the same form once more through QUiLoader
// and the installed Designer plugin. Each must carry every property of the form.
#include "kitwidgets_check.h"
#include "ui_kitwidgets.h"

#include <QApplication>
#include <QFile>
#include <QUiLoader>

#include <cstdio>
#include <memory>

namespace {

int report(const char *road, QWidget *form)
{
    form->show();
    QApplication::processEvents();
    const QStringList failures = KitWidgetsCheck::mismatches(form);
    for (const QString &failure : failures)
        std::fprintf(stderr, "%s: %s\n", road, qPrintable(failure));
    if (failures.isEmpty())
        std::printf("%s: every property arrived\n", road);
    return failures.isEmpty() ? 0 : 1;
}

} // namespace

// kit-designer-form UI_FILE PLUGIN_PATH
int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "usage: kit-designer-form UI_FILE PLUGIN_PATH\n");
        return 2;
    }

    QWidget compiled;
    Ui::KitWidgetsForm ui;
    ui.setupUi(&compiled);
    int status = report("uic", &compiled);

    QUiLoader loader;
    loader.addPluginPath(QString::fromLocal8Bit(argv[2]));
    QFile file(QString::fromLocal8Bit(argv[1]));
    std::unique_ptr<QWidget> loaded(file.open(QIODevice::ReadOnly) ? loader.load(&file) : nullptr);
    if (!loaded) {
        std::fprintf(stderr, "QUiLoader: %s\n", qPrintable(loader.errorString()));
        return 1;
    }
    status |= report("QUiLoader with the installed plugin", loaded.get());
    return status;
}
