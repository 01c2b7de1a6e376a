#include "GallerySections.h"

#include <algorithm>

namespace {
QList<GallerySection> &registry()
{
    static QList<GallerySection> sections;
    return sections;
}
} // namespace

GallerySectionRegistration::GallerySectionRegistration(int order, const QString &title,
                                                       QWidget *(*make)())
{
    registry().append({order, title, make});
}

QList<GallerySection> gallerySections()
{
    QList<GallerySection> sections = registry();
    std::stable_sort(
        sections.begin(), sections.end(),
        [](const GallerySection &a, const GallerySection &b) { return a.order < b.order; });
    return sections;
}
