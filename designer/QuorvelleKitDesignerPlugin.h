#pragma once

#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include <QIcon>
#include <QObject>

#include <functional>

// One entry of Designer's widget box. Several entries may make the same class (a flat
// button and a bordered one are both Quorvelle::Button): they differ in the properties their
// DOM sets, which are what a form then saves.
class QuorvelleKitWidget : public QObject, public QDesignerCustomWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)

public:
    struct Description
    {
        QString className;
        QString header;
        QString toolTip;
        QString whatsThis;
        QString domXml;
        QIcon icon;
        bool container = false;
        std::function<QWidget *(QWidget *)> create;
    };

    QuorvelleKitWidget(Description description, QObject *parent);

    QString name() const override { return m_description.className; }
    QString group() const override;
    QString toolTip() const override { return m_description.toolTip; }
    QString whatsThis() const override { return m_description.whatsThis; }
    QString includeFile() const override { return m_description.header; }
    QIcon icon() const override { return m_description.icon; }
    bool isContainer() const override { return m_description.container; }
    QWidget *createWidget(QWidget *parent) override { return m_description.create(parent); }
    bool isInitialized() const override { return m_initialized; }
    void initialize(QDesignerFormEditorInterface *) override { m_initialized = true; }
    QString domXml() const override { return m_description.domXml; }

private:
    Description m_description;
    bool m_initialized = false;
};

// The kit's widgets, in a widget-box group of their own.
class QuorvelleKitDesignerPlugin : public QObject, public QDesignerCustomWidgetCollectionInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetCollectionInterface")
    Q_INTERFACES(QDesignerCustomWidgetCollectionInterface)

public:
    explicit QuorvelleKitDesignerPlugin(QObject *parent = nullptr);

    QList<QDesignerCustomWidgetInterface *> customWidgets() const override { return m_widgets; }

private:
    QList<QDesignerCustomWidgetInterface *> m_widgets;
};
