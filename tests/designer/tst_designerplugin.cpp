// The kit's Designer plugin as QUiLoader (and Designer) load it: the widget box's entries and
// a form that uses every widget, whose properties must arrive on the widgets made from it.
#include "kitwidgets_check.h"

#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QPluginLoader>
#include <QSet>
#include <QTest>
#include <QUiLoader>
#include <QXmlStreamReader>

#include <memory>

class TestDesignerPlugin : public QObject
{
    Q_OBJECT

private:
    // QUiLoader takes a folder of Designer plug-ins itself (its defaults are the designer/
    // folders of Qt's plug-in paths).
    QString pluginFolder() const
    {
        return qEnvironmentVariable("QV_BINARY_DIR") + QStringLiteral("/plugins/designer");
    }

    std::unique_ptr<QUiLoader> loader() const
    {
        auto result = std::make_unique<QUiLoader>();
        result->addPluginPath(pluginFolder());
        return result;
    }

    QList<QDesignerCustomWidgetInterface *> entries(QPluginLoader &plugin)
    {
        auto *collection =
            qobject_cast<QDesignerCustomWidgetCollectionInterface *>(plugin.instance());
        return collection ? collection->customWidgets() : QList<QDesignerCustomWidgetInterface *>();
    }

private Q_SLOTS:
    void form()
    {
        QFile file(qEnvironmentVariable("QV_SOURCE_DIR") +
                   QStringLiteral("/tests/install/consumer/kitwidgets.ui"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        auto uiLoader = loader();
        std::unique_ptr<QWidget> form(uiLoader->load(&file));
        QVERIFY2(form, qPrintable(uiLoader->errorString()));
        form->show();
        QVERIFY(QTest::qWaitForWindowExposed(form.get()));
        const QStringList failures = KitWidgetsCheck::mismatches(form.get());
        QVERIFY2(failures.isEmpty(), qPrintable(failures.join(QLatin1Char('\n'))));
    }

    // The uninstaller's own window, as Designer opens it: every kit widget it names is made
    // by the plugin, with the cell its description asks for.
    void surveyWindow()
    {
        QFile file(qEnvironmentVariable("QV_SOURCE_DIR") +
                   QStringLiteral("/resources/ui/SurveyWindow.ui"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray description = file.readAll();
        QBuffer buffer;
        buffer.setData(description);
        QVERIFY(buffer.open(QIODevice::ReadOnly));
        auto uiLoader = loader();
        std::unique_ptr<QWidget> window(uiLoader->load(&buffer));
        QVERIFY2(window, qPrintable(uiLoader->errorString()));

        QXmlStreamReader reader(description);
        int kitWidgets = 0;
        QString objectName, className;
        while (!reader.atEnd()) {
            reader.readNext();
            if (reader.isStartElement() && reader.name() == QLatin1String("widget")) {
                objectName = reader.attributes().value(QLatin1String("name")).toString();
                className = reader.attributes().value(QLatin1String("class")).toString();
                auto *made = window->findChild<QWidget *>(objectName);
                if (made && made != window.get())
                    QVERIFY2(made->inherits(className.toLatin1().constData()),
                             qPrintable(objectName + QStringLiteral(" is no ") + className));
                if (className.startsWith(QLatin1String("VX")) ||
                    className.startsWith(QLatin1String("Quorvelle::")))
                    ++kitWidgets;
            } else if (reader.isStartElement() && reader.name() == QLatin1String("property") &&
                       reader.attributes().value(QLatin1String("name")) ==
                           QLatin1String("cellClass")) {
                reader.readNextStartElement();
                const QString cellClass = reader.readElementText();
                auto *button = window->findChild<Quorvelle::Button *>(objectName);
                QVERIFY2(button && button->cellClass() == cellClass, qPrintable(objectName));
            }
        }
        QVERIFY(!reader.hasError());
        QVERIFY2(kitWidgets > 10, qPrintable(QString::number(kitWidgets)));
    }

    // Every widget-box entry: in the kit's group, described, with an icon, and a DOM that
    // QUiLoader turns into a widget of the entry's class.
    void widgetBox()
    {
        QPluginLoader plugin(
            QDir(pluginFolder()).filePath(QStringLiteral("quorvellekitwidgets.so")));
        const QList<QDesignerCustomWidgetInterface *> widgets = entries(plugin);
        QVERIFY2(!widgets.isEmpty(), qPrintable(plugin.errorString()));

        const QStringList uiClasses = loader()->availableWidgets();
        QSet<QString> classes, displayNames;
        for (QDesignerCustomWidgetInterface *widget : widgets) {
            const QString name = widget->name();
            classes << name;
            QCOMPARE(widget->group(), QStringLiteral("Quorvelle Kit"));
            QVERIFY2(!widget->toolTip().isEmpty() && !widget->whatsThis().isEmpty(),
                     qPrintable(name));
            QVERIFY2(!widget->icon().pixmap(24, 24).isNull(), qPrintable(name));
            QVERIFY2(uiClasses.contains(name), qPrintable(name));
            // The header a form's customwidget entry names, as installed.
            QVERIFY2(QFile::exists(qEnvironmentVariable("QV_BINARY_DIR") +
                                   QStringLiteral("/include/") + widget->includeFile()),
                     qPrintable(widget->includeFile()));

            // The DOM's <ui> names the entry; its <widget> makes the class.
            const QString xml = widget->domXml();
            QXmlStreamReader reader(xml);
            QString displayName, className, objectName;
            while (reader.readNextStartElement()) {
                if (reader.name() == QLatin1String("ui")) {
                    displayName =
                        reader.attributes().value(QLatin1String("displayname")).toString();
                    continue;
                }
                className = reader.attributes().value(QLatin1String("class")).toString();
                objectName = reader.attributes().value(QLatin1String("name")).toString();
                break;
            }
            QCOMPARE(className, name);
            QVERIFY(!displayName.isEmpty());
            displayNames << displayName;

            const qsizetype start = xml.indexOf(QLatin1String("<widget"));
            const qsizetype end = xml.lastIndexOf(QLatin1String("</widget>")) + 9;
            const QByteArray form = "<ui version=\"4.0\"><widget class=\"QWidget\" name=\"form\">"
                                    "<layout class=\"QVBoxLayout\" name=\"layout\"><item>" +
                                    xml.mid(start, end - start).toUtf8() +
                                    "</item></layout></widget></ui>";
            QBuffer buffer;
            buffer.setData(form);
            auto uiLoader = loader();
            std::unique_ptr<QWidget> made(uiLoader->load(&buffer));
            QVERIFY2(made, qPrintable(uiLoader->errorString()));
            QWidget *child = made->findChild<QWidget *>(objectName);
            QVERIFY2(child && child->inherits(name.toLatin1().constData()), qPrintable(name));
        }
        const QSet<QString> expectedClasses = {
            QStringLiteral("Quorvelle::Button"), QStringLiteral("VXTrackingButton"),
            QStringLiteral("VXMatrix"), QStringLiteral("VXGradientView")};
        QCOMPARE(classes, expectedClasses);
        // Flat, bordered flat, check box, two matrices, tracking button, gradient view.
        QCOMPARE(displayNames.size(), 7);
        QCOMPARE(widgets.size(), 7);
    }
};

QTEST_MAIN(TestDesignerPlugin)
#include "tst_designerplugin.moc"
