#include "GallerySections.h"

#include "VXQuorvelleFont.h"

#include <QGridLayout>
#include <QLabel>

QWidget *galleryFontsSection()
{
    using namespace QuorvelleFont;
    const QList<QPair<QString, VXFont (*)(double)>> weights = {
        {QStringLiteral("Regular"), &quorvelleRegularFontWithSize},
        {QStringLiteral("Medium"), &quorvelleMediumFontWithSize},
        {QStringLiteral("Bold"), &quorvelleBoldFontWithSize},
        {QStringLiteral("Italic"), &quorvelleItalicFontWithSize},
        {QStringLiteral("Bold italic"), &quorvelleBoldItalicFontWithSize},
        {QStringLiteral("Thin"), &quorvelleThinFontWithSize},
        {QStringLiteral("Fallback"), &quorvelleFallbackFontWithSize},
    };
    const QList<QPair<QString, double>> sizes = {
        {QStringLiteral("mini"), quorvelleMiniFontSize()},
        {QStringLiteral("small"), quorvelleSmallFontSize()},
        {QStringLiteral("regular"), quorvelleRegularFontSize()},
        {QStringLiteral("header"), quorvelleHeaderFontSize()},
        {QStringLiteral("title"), quorvelleTitleFontSize()},
    };
    auto *section = new QWidget;
    auto *grid = new QGridLayout(section);
    grid->setHorizontalSpacing(14);
    for (int c = 0; c < sizes.size(); ++c) {
        auto *header =
            new QLabel(QStringLiteral("%1 %2").arg(sizes.at(c).first).arg(sizes.at(c).second));
        header->setStyleSheet(QStringLiteral("color: gray"));
        grid->addWidget(header, 0, c + 1);
    }
    for (int r = 0; r < weights.size(); ++r) {
        const VXFont resolved = weights.at(r).second(quorvelleRegularFontSize());
        // The weight, and the PostScript name the lookup chain ended at on this machine.
        auto *name =
            new QLabel(QStringLiteral("%1\n→ %2").arg(weights.at(r).first, resolved.fontName()));
        name->setStyleSheet(QStringLiteral("color: gray"));
        grid->addWidget(name, r + 1, 0);
        for (int c = 0; c < sizes.size(); ++c) {
            auto *sample = new QLabel(QStringLiteral("Quorvelle"));
            sample->setFont(weights.at(r).second(sizes.at(c).second).qfont());
            grid->addWidget(sample, r + 1, c + 1);
        }
    }
    grid->setColumnStretch(sizes.size() + 1, 1);
    return section;
}

static GallerySectionRegistration registration(20, QStringLiteral("Fonts"), &galleryFontsSection);
