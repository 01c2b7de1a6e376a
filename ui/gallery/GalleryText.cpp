#include "GallerySections.h"

#include <QLabel>

QWidget *galleryTextSection()
{
    return new QLabel(QStringLiteral("Attributed text"));
}

static GallerySectionRegistration registration(30, QStringLiteral("Attributed text"), &galleryTextSection);
