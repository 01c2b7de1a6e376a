#include "VXSurveyWindowLoader.h"

#include "VXLog.h"
#include "VXThreadSafety.h"
#include "VXUninstallSurveyController.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QFile>
#include <QMetaProperty>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QUiLoader>
#include <QWidget>

namespace {

// Refuses the window's close request: there is no exit but the two buttons.
class CloseGuard : public QObject
{
public:
    using QObject::QObject;
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Close) {
            event->ignore();
            return true;
        }
        return QObject::eventFilter(watched, event);
    }
};

QByteArray dynamicString(const QObject *object, const char *name)
{
    return object->property(name).toString().toLatin1();
}

bool bindValue(QWidget *control, VXUninstallSurveyController *controller, const QByteArray &key)
{
    const QMetaObject *meta = controller->metaObject();
    const int index = meta->indexOfProperty(key.constData());
    if (index < 0 || !meta->property(index).hasNotifySignal())
        return false;
    std::function<void(const QVariant &)> apply;

    if (auto *radio = qobject_cast<QRadioButton *>(control)) {
        const quint64 tag = radio->property("vxTag").toULongLong();
        QObject::connect(radio, &QAbstractButton::toggled, controller, [=](bool on) {
            if (on)
                controller->setProperty(key.constData(), QVariant::fromValue(tag));
        });
        apply = [radio, tag](const QVariant &value) {
            if (value.toULongLong() == tag) {
                radio->setChecked(true);
            } else if (radio->isChecked()) {
                // An exclusive group keeps one button checked; the value may be "none".
                radio->setAutoExclusive(false);
                radio->setChecked(false);
                radio->setAutoExclusive(true);
            }
        };
    } else if (auto *button = qobject_cast<QAbstractButton *>(control)) {
        QObject::connect(button, &QAbstractButton::toggled, controller,
                         [=](bool on) { controller->setProperty(key.constData(), on); });
        apply = [button](const QVariant &value) { button->setChecked(value.toBool()); };
    } else if (auto *edit = qobject_cast<QPlainTextEdit *>(control)) {
        QObject::connect(edit, &QPlainTextEdit::textChanged, controller, [=] {
            // An empty field is no comment at all.
            const QString text = edit->toPlainText();
            controller->setProperty(key.constData(), text.isEmpty() ? QString() : text);
        });
        apply = [edit](const QVariant &value) {
            const QString text = value.toString();
            if (edit->toPlainText() != text) {
                const QSignalBlocker blocker(edit);
                edit->setPlainText(text);
            }
        };
    } else {
        return false;
    }
    auto *binding = new VXBinding(controller, key, std::move(apply), control);
    binding->refresh();
    return true;
}

bool bindState(QWidget *widget, VXUninstallSurveyController *controller, const QByteArray &key,
               std::function<void(const QVariant &)> apply)
{
    const QMetaObject *meta = controller->metaObject();
    const int index = meta->indexOfProperty(key.constData());
    if (index < 0 || !meta->property(index).hasNotifySignal())
        return false;
    auto *binding = new VXBinding(controller, key, std::move(apply), widget);
    binding->refresh();
    return true;
}

} // namespace

VXBinding::VXBinding(QObject *model, const QByteArray &key,
                     std::function<void(const QVariant &)> apply, QObject *parent)
    : QObject(parent), _model(model), _key(key), _apply(std::move(apply))
{
    const QMetaObject *meta = model->metaObject();
    const QMetaMethod notify =
        meta->property(meta->indexOfProperty(key.constData())).notifySignal();
    connect(model, notify, this, metaObject()->method(metaObject()->indexOfSlot("refresh()")));
}

void VXBinding::refresh()
{
    _apply(_model->property(_key.constData()));
}

VXSurveyWindowLoader::Loaded VXSurveyWindowLoader::instantiate(const QString &path)
{
    Loaded loaded;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        VXLog(QStringLiteral("Could not open window description %1").arg(path));
        return loaded;
    }
    // The description uses standard widgets only. A loader scans Designer's plugin folder
    // when it is made, and what it finds there can pull in whole other Qt modules at
    // launch: it is made with no plugin paths.
    const QStringList libraryPaths = QCoreApplication::libraryPaths();
    QCoreApplication::setLibraryPaths({});
    QUiLoader loader;
    QCoreApplication::setLibraryPaths(libraryPaths);
    loaded.window.reset(loader.load(&file));
    if (!loaded.window) {
        VXLog(QStringLiteral("Could not load window description %1: %2")
                  .arg(path, loader.errorString()));
        return loaded;
    }
    QWidget *window = loaded.window.get();
    loaded.controller = std::make_unique<VXUninstallSurveyController>();
    VXUninstallSurveyController *controller = loaded.controller.get();
    // The controller is the application's delegate: the main bundle is named after its class.
    VXThreadSafety::setApplicationDelegate(controller);

    if (dynamicString(window, "vxOutlet") == "_surveyWindow")
        controller->_surveyWindow = window;
    window->installEventFilter(new CloseGuard(window));

    QList<QWidget *> widgets = window->findChildren<QWidget *>();
    widgets.prepend(window);
    for (QWidget *widget : std::as_const(widgets)) {
        const QByteArray action = dynamicString(widget, "vxAction");
        if (auto *button = qobject_cast<QAbstractButton *>(widget); button && !action.isEmpty()) {
            const QByteArray slot = action + "()";
            if (controller->metaObject()->indexOfSlot(slot.constData()) < 0) {
                VXLog(QStringLiteral("Window description names unknown action %1")
                          .arg(QString::fromLatin1(action)));
            } else {
                QObject::connect(button, &QAbstractButton::clicked, controller, [=] {
                    QMetaObject::invokeMethod(controller, action.constData());
                });
            }
        }
        const QByteArray value = dynamicString(widget, "vxValue");
        if (!value.isEmpty() && !bindValue(widget, controller, value))
            VXLog(QStringLiteral("Window description binds unknown value %1")
                      .arg(QString::fromLatin1(value)));
        const QByteArray enabled = dynamicString(widget, "vxEnabled");
        if (!enabled.isEmpty())
            bindState(widget, controller, enabled,
                      [widget](const QVariant &on) { widget->setEnabled(on.toBool()); });
        const QVariant shownFor = widget->property("vxShownForReason");
        if (shownFor.isValid()) {
            const quint64 reason = shownFor.toULongLong();
            bindState(widget, controller, "uninstallingReason",
                      [widget, reason](const QVariant &v) {
                          widget->setVisible(v.toULongLong() == reason);
                      });
        }
    }
    return loaded;
}

VXSurveyWindowLoader::Loaded
VXSurveyWindowLoader::loadMainWindowDescription(const QString &bundleDirectory)
{
    Loaded loaded = instantiate(QDir(bundleDirectory).filePath(mainWindowDescriptionName()));
    if (loaded)
        loaded.controller->awakeFromNib();
    return loaded;
}
