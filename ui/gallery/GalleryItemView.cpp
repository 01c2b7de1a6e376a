#include "GallerySections.h"

#include <QHeaderView>
#include <QStandardItemModel>
#include <QTableView>

QWidget *galleryItemViewSection()
{
    auto *model = new QStandardItemModel(0, 2);
    model->setHorizontalHeaderLabels({QStringLiteral("Item"), QStringLiteral("Size")});
    const QList<QPair<QString, QString>> rows = {
        {QStringLiteral("Quorvelle.app"), QStringLiteral("84.2 MB")},
        {QStringLiteral("Launch agent"), QStringLiteral("2 KB")},
        {QStringLiteral("Application support"), QStringLiteral("12.5 MB")},
        {QStringLiteral("Caches"), QStringLiteral("31.0 MB")},
        {QStringLiteral("Preferences"), QStringLiteral("8 KB")},
    };
    for (const auto &[item, size] : rows)
        model->appendRow({new QStandardItem(item), new QStandardItem(size)});
    // Rows alternate between white and the kit's light blue-grey in every item view.
    auto *view = new QTableView;
    model->setParent(view);
    view->setModel(model);
    view->setAlternatingRowColors(true);
    view->setShowGrid(false);
    view->verticalHeader()->hide();
    view->horizontalHeader()->setStretchLastSection(true);
    view->setColumnWidth(0, 220);
    view->setFixedSize(400, view->horizontalHeader()->sizeHint().height() +
                                5 * view->verticalHeader()->defaultSectionSize() + 4);
    return view;
}

static GallerySectionRegistration registration(50, QStringLiteral("Item view"),
                                               &galleryItemViewSection);
