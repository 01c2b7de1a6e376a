#include "GallerySections.h"

#include <QLabel>

QWidget *galleryItemViewSection()
{
    return new QLabel(QStringLiteral("Item view"));
}

static GallerySectionRegistration registration(50, QStringLiteral("Item view"), &galleryItemViewSection);
