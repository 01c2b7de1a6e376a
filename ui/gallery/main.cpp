#include "GallerySections.h"

#include <QApplication>
#include <QFont>
#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>
#include <QWidget>

// quorvelle-kit-gallery [--grab <file.png>]: shows the kit, or renders it into a PNG.
int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    const QStringList arguments = QApplication::arguments();
    const qsizetype grabAt = arguments.indexOf(QStringLiteral("--grab"));

    auto *content = new QWidget;
    auto *column = new QVBoxLayout(content);
    for (const GallerySection &section : gallerySections()) {
        auto *title = new QLabel(section.title);
        QFont font = title->font();
        font.setBold(true);
        font.setPointSizeF(font.pointSizeF() + 2);
        title->setFont(font);
        column->addWidget(title);
        column->addWidget(section.make());
    }
    column->addStretch();

    if (grabAt >= 0 && grabAt + 1 < arguments.size()) {
        content->adjustSize();
        return content->grab().save(arguments.at(grabAt + 1)) ? 0 : 1;
    }

    QScrollArea window;
    window.setWindowTitle(QStringLiteral("Quorvelle kit gallery"));
    window.setWidget(content);
    window.setWidgetResizable(true);
    window.resize(content->sizeHint().width() + 40, 800);
    window.show();
    return app.exec();
}
