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

using namespace Qt::StringLiterals;

namespace {
// QUiLoader takes a folder of Designer plug-ins itself (its defaults are the designer/
// folders of Qt's plug-in paths): the build tree's.
const QString kPluginFolder = qEnvironmentVariable("QV_BINARY_DIR") + u"/plugins/designer"_s;

// A form description made into widgets; null with the loader's reason in `error`.
std::unique_ptr<QWidget> load(const QByteArray &description, QString *error)
{
    QUiLoader loader;
    loader.addPluginPath(kPluginFolder);
    QBuffer buffer;
    buffer.setData(description);
    buffer.open(QIODevice::ReadOnly);
    std::unique_ptr<QWidget> form(loader.load(&buffer));
    *error = loader.errorString();
    return form;
}

QByteArray sourceFile(const QString &path)
{
    QFile file(qEnvironmentVariable("QV_SOURCE_DIR") + path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
} // namespace

class TestDesignerPlugin : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void form()
    {
        QString error;
        const auto form = load(sourceFile(u"/tests/install/consumer/kitwidgets.ui"_s), &error);
        QVERIFY2(form, qPrintable(error));
        form->show();
        QVERIFY(QTest::qWaitForWindowExposed(form.get()));
        const QStringList failures = KitWidgetsCheck::mismatches(form.get());
        QVERIFY2(failures.isEmpty(), qPrintable(failures.join(u'\n')));
    }

    // The uninstaller's own window, as Designer opens it: every kit widget it names is made
    // by the plugin, with the cell its description asks for.
    void surveyWindow()
    {
        const QByteArray description = sourceFile(u"/resources/ui/SurveyWindow.ui"_s);
        QString error, objectName;
        const auto window = load(description, &error);
        QVERIFY2(window, qPrintable(error));
        QXmlStreamReader reader(description);
        int kitWidgets = 0;
        while (!reader.atEnd()) {
            if (reader.readNext() != QXmlStreamReader::StartElement)
                continue;
            const QXmlStreamAttributes attributes = reader.attributes();
            if (reader.name() == "widget"_L1) {
                objectName = attributes.value("name"_L1).toString();
                const QString className = attributes.value("class"_L1).toString();
                auto *made = window->findChild<QWidget *>(objectName);
                QVERIFY2(!made || made == window.get() || made->inherits(qPrintable(className)),
                         qPrintable(objectName + u" is no "_s + className));
                kitWidgets +=
                    className.startsWith("VX"_L1) || className.startsWith("Quorvelle::"_L1);
            } else if (reader.name() == "property"_L1 &&
                       attributes.value("name"_L1) == "cellClass"_L1) {
                reader.readNextStartElement();
                auto *button = window->findChild<Quorvelle::Button *>(objectName);
                QVERIFY2(button && button->cellClass() == reader.readElementText(),
                         qPrintable(objectName));
            }
        }
        QVERIFY(!reader.hasError());
        QVERIFY2(kitWidgets > 10, qPrintable(QString::number(kitWidgets)));
    }

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
        QSet<QString> classes, displayNames;
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
            displayNames << reader.attributes().value("displayname"_L1).toString();
            while (reader.readNextStartElement() && reader.name() != "widget"_L1)
                reader.skipCurrentElement();
            QCOMPARE(reader.attributes().value("class"_L1).toString(), name);
            const QString objectName = reader.attributes().value("name"_L1).toString();
            const qsizetype start = xml.indexOf("<widget"_L1);
            const qsizetype end = xml.lastIndexOf("</widget>"_L1) + 9;
            QString error;
            const auto made =
                load("<ui version=\"4.0\"><widget class=\"QWidget\" name=\"form\">"
                     "<layout class=\"QVBoxLayout\" name=\"layout\"><item>" +
                         xml.mid(start, end - start).toUtf8() + "</item></layout></widget></ui>",
                     &error);
            QVERIFY2(made, qPrintable(error));
            QWidget *child = made->findChild<QWidget *>(objectName);
            QVERIFY2(child && child->inherits(qPrintable(name)), qPrintable(name));
        }
        QCOMPARE(classes, (QSet<QString>{u"Quorvelle::Button"_s, u"VXTrackingButton"_s,
                                         u"VXMatrix"_s, u"VXGradientView"_s}));
        // Flat, bordered flat, check box, two matrices, tracking button, gradient view; each
        // with a name of its own.
        displayNames.remove(QString());
        QCOMPARE(displayNames.size(), 7);
        QCOMPARE(collection->customWidgets().size(), 7);
    }
};

QTEST_MAIN(TestDesignerPlugin)
#include "tst_designerplugin.moc"
