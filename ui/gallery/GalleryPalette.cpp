#include "GallerySections.h"

#include <QLabel>

QWidget *galleryPaletteSection()
{
    return new QLabel(QStringLiteral("Palette"));
}

static GallerySectionRegistration registration(10, QStringLiteral("Palette"), &galleryPaletteSection);
