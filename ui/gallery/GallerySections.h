#pragma once

#include <QList>
#include <QString>

class QWidget;

// The gallery is a column of sections, each made by one function in a file of its own.
// A file adds its section by defining a static GallerySectionRegistration; sections are
// shown in ascending order.
struct GallerySection
{
    int order = 0;
    QString title;
    QWidget *(*make)() = nullptr;
};

struct GallerySectionRegistration
{
    GallerySectionRegistration(int order, const QString &title, QWidget *(*make)());
};

QList<GallerySection> gallerySections(); // sorted by order

// The kit's own sections.
QWidget *galleryPaletteSection();  // order 10
QWidget *galleryFontsSection();    // order 20
QWidget *galleryTextSection();     // order 30
QWidget *galleryGradientSection(); // order 40
QWidget *galleryItemViewSection(); // order 50
