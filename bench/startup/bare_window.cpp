// The yardstick: the least a Qt Widgets program does to put a window on screen.
#include <QApplication>
#include <QLabel>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QLabel window(QStringLiteral("Quorvelle"));
    window.setWindowTitle(QStringLiteral("Bare window"));
    window.show();
    return QApplication::exec();
}
