#pragma once

#include <QObject>
#include <QString>
#include <QVariant>

#include <functional>
#include <memory>

class QWidget;
class VXUninstallSurveyController;

// Loads the survey's window description (a Designer .ui file beside the program) the way a
// window description is brought to life: the widgets are built, the one controller is
// created, and the description's connections are made from dynamic properties on the
// widgets:
//   vxOutlet          on the window: the controller member it is connected to
//   vxAction          on a button: the controller slot its click sends
//   vxValue           on a control: the controller property it edits and shows (radio
//                     buttons add vxTag, the value they stand for)
//   vxEnabled         on a control: a boolean controller property that enables it
//   vxShownForReason  on a widget: shown only while uninstallingReason has this value
// Closing the window is refused: the program ends only through one of its two buttons.
class VXSurveyWindowLoader
{
public:
    struct Loaded
    {
        std::unique_ptr<VXUninstallSurveyController> controller;
        std::unique_ptr<QWidget> window;
        explicit operator bool() const { return controller && window; }
    };

    // Builds window and controller and connects them; awakeFromNib is not called.
    static Loaded instantiate(const QString &path);
    // The main window description of the bundle folder: instantiate, then awakeFromNib.
    static Loaded loadMainWindowDescription(const QString &bundleDirectory);

    static QString mainWindowDescriptionName() { return QStringLiteral("SurveyWindow.ui"); }
};

// Keeps one side of a binding up to date: refresh() runs on every change notice of the
// controller property and hands the new value to the control.
class VXBinding : public QObject
{
    Q_OBJECT

public:
    VXBinding(QObject *model, const QByteArray &key, std::function<void(const QVariant &)> apply,
              QObject *parent);

public Q_SLOTS:
    void refresh();

private:
    QObject *_model;
    QByteArray _key;
    std::function<void(const QVariant &)> _apply;
};
