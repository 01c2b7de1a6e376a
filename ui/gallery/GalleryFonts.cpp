#include "GallerySections.h"

#include <QLabel>

QWidget *galleryFontsSection()
{
    return new QLabel(QStringLiteral("Fonts"));
}

static GallerySectionRegistration registration(20, QStringLiteral("Fonts"), &galleryFontsSection);
