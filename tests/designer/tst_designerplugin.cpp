// The kit's Designer plugin as QUiLoader (and Designer) load it from the build tree: the widget
// box's entries, each made into its widget. (Every property of a form reaching its widgets,
// cell classes included, through uic and through the installed plugin, is the install test's
// kit-designer-form.)
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

using namespace Qt::StringLiterals;

namespace {
// QUiLoader takes a folder of Designer plug-ins itself (its defaults are the designer/
// folders of Qt's plug-in paths): the build tree's.
const QString kPluginFolder = qEnvironmentVariable("QV_BINARY_DIR") + u"/plugins/designer"_s;
} // namespace

class TestDesignerPlugin : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Every widget-box entry: in the kit's group, described, with an icon, an installed
    // header, and a DOM that QUiLoader turns into a widget of the entry's class.
    void widgetBox()
    {
        QPluginLoader plugin(QDir(kPluginFolder).filePath(u"quorvellekitwidgets.so"_s));
        auto *collection =
            qobject_cast<QDesignerCustomWidgetCollectionInterface *>(plugin.instance());
        QVERIFY2(collection, qPrintable(plugin.errorString()));
        QUiLoader uiLoader;
        uiLoader.addPluginPath(kPluginFolder);
        const QStringList uiClasses = uiLoader.availableWidgets();
        QSet<QString> classes;
        for (QDesignerCustomWidgetInterface *widget : collection->customWidgets()) {
            const QString name = widget->name();
            classes << name;
            QCOMPARE(widget->group(), u"Quorvelle Kit"_s);
            QVERIFY2(!widget->toolTip().isEmpty() && !widget->whatsThis().isEmpty() &&
                         !widget->icon().pixmap(24, 24).isNull() && uiClasses.contains(name),
                     qPrintable(name));
            QVERIFY2(QFile::exists(qEnvironmentVariable("QV_BINARY_DIR") + u"/include/"_s +
                                   widget->includeFile()),
                     qPrintable(widget->includeFile()));
            // The DOM's <ui> names the entry; its <widget> makes the class.
            const QString xml = widget->domXml();
            QXmlStreamReader reader(xml);
            QVERIFY(reader.readNextStartElement() && reader.name() == "ui"_L1);
            while (reader.readNextStartElement() && reader.name() != "widget"_L1)
                reader.skipCurrentElement();
            QCOMPARE(reader.attributes().value("class"_L1).toString(), name);
            const QString objectName = reader.attributes().value("name"_L1).toString();
            const qsizetype start = xml.indexOf("<widget"_L1);
            const qsizetype end = xml.lastIndexOf("</widget>"_L1) + 9;
            QBuffer form;
            form.setData("<ui version=\"4.0\"><widget class=\"QWidget\" name=\"form\">"
                         "<layout class=\"QVBoxLayout\" name=\"layout\"><item>" +
                         xml.mid(start, end - start).toUtf8() + "</item></layout></widget></ui>");
            form.open(QIODevice::ReadOnly);
            const std::unique_ptr<QWidget> made(uiLoader.load(&form));
            QVERIFY2(made, qPrintable(uiLoader.errorString()));
            QWidget *child = made->findChild<QWidget *>(objectName);
            QVERIFY2(child && child->inherits(qPrintable(name)), qPrintable(name));
        }
        QCOMPARE(classes, (QSet<QString>{u"Quorvelle::Button"_s, u"VXTrackingButton"_s,
                                         u"VXMatrix"_s, u"VXGradientView"_s}));
        // Flat, bordered flat, check box, two matrices, tracking button, gradient view.
        QCOMPARE(collection->customWidgets().size(), 7);
    }
};

QTEST_MAIN(TestDesignerPlugin)
#include "tst_designerplugin.moc"
