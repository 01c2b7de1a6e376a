// Checks the picture examples/about-this-computer draws with --grab: at coordinates its layout
// fixes, the gradient header's two colours, the list's alternating rows in white and the kit's
// alternate-row colour, the header's title drawn in white, and the flat button's blue. The
// expected colours are asked of the installed kit.
#include "AboutLayout.h"

#include <Quorvelle/Widgets/VXColorConvertion.h>
#include <Quorvelle/Widgets/VXQuorvelleColor.h>

#include <QColor>
#include <QImage>

#include <cstdio>
#include <cstdlib>

namespace {

int failures = 0;

void expect(const QImage &picture, int x, int y, const QColor &expected, int tolerance,
            const char *what)
{
    const QColor seen = picture.pixelColor(x, y);
    const bool near = std::abs(seen.red() - expected.red()) <= tolerance &&
                      std::abs(seen.green() - expected.green()) <= tolerance &&
                      std::abs(seen.blue() - expected.blue()) <= tolerance;
    std::printf("%s %s at (%d, %d): %s, expected %s\n", near ? "ok  " : "FAIL", what, x, y,
                qPrintable(seen.name()), qPrintable(expected.name()));
    if (!near)
        ++failures;
}

} // namespace

int main(int argc, char *argv[])
{
    using namespace AboutLayout;
    using namespace QuorvelleColor;
    if (argc != 2) {
        std::fprintf(stderr, "usage: check-picture PICTURE\n");
        return 2;
    }
    const QImage picture(QString::fromLocal8Bit(argv[1]));
    if (picture.size() != QSize(windowWidth, windowHeight)) {
        std::printf("FAIL picture of %dx%d, expected the window's %dx%d\n", picture.width(),
                    picture.height(), windowWidth, windowHeight);
        return 1;
    }
    const auto color = [](const VXColor &c) { return VXColorConvertion::newCGColor(c); };

    // The header: start colour along the top edge, finish colour along the bottom one (one
    // row of the gradient changes a channel by less than one step), the window below it.
    const int headerX = windowWidth - 8;
    const QColor top = color(quorvelleBlueColor()), bottom = color(quorvelleDarkBlueColor());
    expect(picture, headerX, 0, top, 1, "header top");
    expect(picture, headerX, headerHeight - 1, bottom, 1, "header bottom");
    expect(picture, headerX, headerHeight / 2,
           QColor((top.red() + bottom.red()) / 2, (top.green() + bottom.green()) / 2,
                  (top.blue() + bottom.blue()) / 2),
           2, "header middle");
    expect(picture, headerX, headerHeight, Qt::white, 0, "window under the header");

    // The title and the templated line: white text on the band's left half.
    int whitePixels = 0;
    for (int y = 0; y < headerHeight; ++y)
        for (int x = margin; x < windowWidth / 2; ++x)
            whitePixels += picture.pixelColor(x, y) == QColor(Qt::white);
    std::printf("%s header text: %d white pixels\n", whitePixels > 200 ? "ok  " : "FAIL",
                whitePixels);
    if (whitePixels <= 200)
        ++failures;

    // The list: rows alternate between white and the kit's colour, across the whole row.
    const QColor alternate = color(tableAlternateRowBackgroundColor());
    for (int row = 0; row < 4; ++row) {
        const int y = listTop + listFrame + row * listRowHeight + listRowHeight / 2;
        const QColor expected = row % 2 ? alternate : QColor(Qt::white);
        expect(picture, listLeft + listFrame + 1, y, expected, 1, "list row, left end");
        expect(picture, windowWidth - margin - listFrame - 2, y, expected, 1,
               "list row, right end");
    }

    // The flat Close button at the bottom right.
    expect(picture, windowWidth - margin - 6, windowHeight - footerBottom - buttonHeight / 2, top,
           1, "Close button");
    return failures ? 1 : 0;
}
