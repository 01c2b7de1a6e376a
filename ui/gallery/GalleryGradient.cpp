#include "GallerySections.h"

#include <QLabel>

QWidget *galleryGradientSection()
{
    return new QLabel(QStringLiteral("Gradient views"));
}

static GallerySectionRegistration registration(40, QStringLiteral("Gradient views"), &galleryGradientSection);
