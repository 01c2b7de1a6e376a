#include <QApplication>
#include <QLabel>

// Placeholder entry until the survey window lands: shows the program's name.
int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QLabel label(QStringLiteral("Quorvelle Uninstaller"));
    label.show();
    return app.exec();
}
