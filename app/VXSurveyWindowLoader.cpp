#include "VXSurveyWindowLoader.h"

#include "VXUninstallSurveyController.h"

#include <Quorvelle/Foundation/VXLog.h>
#include <Quorvelle/Foundation/VXThreadSafety.h>
#include <Quorvelle/Widgets/Button.h>
#include <Quorvelle/Widgets/VXColor.h>
#include <Quorvelle/Widgets/VXColorConvertion.h>
#include <Quorvelle/Widgets/VXGradientView.h>
#include <Quorvelle/Widgets/VXMatrix.h>
#include <Quorvelle/Widgets/VXQuorvelleColor.h>
#include <Quorvelle/Widgets/VXQuorvelleFont.h>
#include <Quorvelle/Widgets/VXTrackingButton.h>

#include <QAbstractButton>
#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QFile>
#include <QLabel>
#include <QMetaProperty>
#include <QPlainTextEdit>
#include <QPointer>
#include <QScreen>
#include <QUiLoader>
#include <QWidget>

#include <algorithm>
#include <cmath>

using Quorvelle::Button;

namespace {

// Makes the kit's widgets a window description names (the classes the Designer plugin
// offers), and the standard widgets.
class KitLoader : public QUiLoader
{
public:
    using QUiLoader::QUiLoader;

    QWidget *createWidget(const QString &className, QWidget *parent, const QString &name) override
    {
        QWidget *widget = nullptr;
        if (className == QLatin1String("Quorvelle::Button"))
            widget = new Button(parent);
        else if (className == QLatin1String("VXTrackingButton"))
            widget = new VXTrackingButton(parent);
        else if (className == QLatin1String("VXMatrix"))
            widget = new VXMatrix(parent);
        else if (className == QLatin1String("VXGradientView"))
            widget = new VXGradientView(parent);
        else
            return QUiLoader::createWidget(className, parent, name);
        widget->setObjectName(name);
        return widget;
    }
};

// The window is white whatever the desktop theme, so its texts are the palette's dark ones
// and its fonts the kit's.
void applyKitLook(QWidget *window)
{
    using namespace QuorvelleColor;
    const auto color = [](const VXColor &c) { return VXColorConvertion::newCGColor(c); };
    QPalette palette = window->palette();
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        palette.setColor(group, QPalette::Window, Qt::white);
        palette.setColor(group, QPalette::Base, Qt::white);
        palette.setColor(group, QPalette::WindowText, Qt::black);
        palette.setColor(group, QPalette::Text, Qt::black);
        palette.setColor(group, QPalette::ButtonText, Qt::black);
        palette.setColor(group, QPalette::PlaceholderText, color(quorvelleTextGrayColor()));
        palette.setColor(group, QPalette::Highlight, color(quorvelleBlueColor()));
        palette.setColor(group, QPalette::HighlightedText, Qt::white);
    }
    palette.setColor(QPalette::Disabled, QPalette::Window, Qt::white);
    palette.setColor(QPalette::Disabled, QPalette::Base,
                     color(quorvelleLightGrayDisabledControlColor()));
    palette.setColor(QPalette::Disabled, QPalette::WindowText, color(quorvelleTextGrayColor()));
    palette.setColor(QPalette::Disabled, QPalette::Text, color(quorvelleTextGrayColor()));
    window->setPalette(palette);
    window->setAutoFillBackground(true);

    const double regular = QuorvelleFont::quorvelleRegularFontSize();
    for (QLabel *label : window->findChildren<QLabel *>())
        label->setFont(QuorvelleFont::quorvelleRegularFontWithSize(regular).qfont());
    if (auto *heading = window->findChild<QLabel *>(QStringLiteral("headingLabel")))
        heading->setFont(
            QuorvelleFont::quorvelleBoldFontWithSize(QuorvelleFont::quorvelleHeaderFontSize())
                .qfont());
    for (QPlainTextEdit *edit : window->findChildren<QPlainTextEdit *>()) {
        edit->setFont(QuorvelleFont::quorvelleRegularFontWithSize(regular).qfont());
        // The field's white is the window's. A filled viewport, at a fractional scale
        // (1.5 device pixels per point), is rounded out to whole device pixels and paints
        // over its frame's right and bottom lines.
        edit->viewport()->setAutoFillBackground(false);
    }
    for (Button *button : window->findChildren<Button *>()) {
        // Push buttons: the kit's medium weight; marks restyle their titles themselves.
        if (!button->cell()->drawsMark()) {
            button->cell()->setFont(QuorvelleFont::quorvelleMediumFontWithSize(
                QuorvelleFont::quorvelleHeaderFontSize()));
            button->updateGeometry();
        }
    }
}

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

// Keeps the window, frame included, inside its screen's available area. The window's size is
// its layout's (it grows when a reason shows its boxes); when that is taller than the screen
// allows (large fonts, a high scale, a small screen), the comment field gives up height down
// to two lines (it scrolls), and the window is moved back onto the screen when it grows past
// an edge. Runs after the layout has settled, once per burst of size changes.
class ScreenFit : public QObject
{
public:
    ScreenFit(QWidget *window, QPlainTextEdit *shrinkable)
        : QObject(window), _window(window), _shrinkable(shrinkable),
          _preferred(shrinkable->maximumHeight())
    {
        window->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (watched == _window && !_pending &&
            (event->type() == QEvent::Show || event->type() == QEvent::Resize ||
             event->type() == QEvent::Move || event->type() == QEvent::ScreenChangeInternal)) {
            _pending = true;
            QMetaObject::invokeMethod(this, &ScreenFit::fit, Qt::QueuedConnection);
        }
        return false;
    }

private:
    void fit()
    {
        _pending = false;
        QScreen *screen = _window->screen();
        if (!_window->isVisible() || !screen || !_shrinkable)
            return;
        const QRect available = screen->availableGeometry();
        const QRect frame = _window->frameGeometry();
        const int frameHeight = frame.height() - _window->height();

        // Two lines of text and the field's frame and margins.
        const int twoLines = 2 * _shrinkable->fontMetrics().lineSpacing() +
                             2 * _shrinkable->frameWidth() +
                             2 * int(std::ceil(_shrinkable->document()->documentMargin()));
        const int minimum = std::min(twoLines, _preferred);
        const int natural = _window->height() - _shrinkable->height() + _preferred;
        const int room = available.height() - frameHeight;
        const int height = std::clamp(_preferred - (natural - room), minimum, _preferred);
        if (height != _shrinkable->maximumHeight()) {
            _shrinkable->setMinimumHeight(std::min(_shrinkable->minimumHeight(), height));
            _shrinkable->setMaximumHeight(height);
            return; // the layout resizes the window, which brings us back
        }

        QPoint topLeft = frame.topLeft();
        topLeft.rx() -= std::max(0, frame.right() - available.right());
        topLeft.ry() -= std::max(0, frame.bottom() - available.bottom());
        topLeft.rx() = std::max(topLeft.x(), available.left());
        topLeft.ry() = std::max(topLeft.y(), available.top());
        if (topLeft != frame.topLeft())
            _window->move(topLeft);
    }

    QWidget *_window;
    QPointer<QPlainTextEdit> _shrinkable;
    int _preferred;
    bool _pending = false;
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

    auto *radio = qobject_cast<QAbstractButton *>(control);
    if (radio && !(radio->isCheckable() && radio->autoExclusive()))
        radio = nullptr;
    if (radio) {
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
    KitLoader loader;
    QCoreApplication::setLibraryPaths(libraryPaths);
    loaded.window.reset(loader.load(&file));
    if (!loaded.window) {
        VXLog(QStringLiteral("Could not load window description %1: %2")
                  .arg(path, loader.errorString()));
        return loaded;
    }
    QWidget *window = loaded.window.get();
    applyKitLook(window);
    loaded.controller = std::make_unique<VXUninstallSurveyController>();
    VXUninstallSurveyController *controller = loaded.controller.get();
    // The controller is the application's delegate: the main bundle is named after its class.
    VXThreadSafety::setApplicationDelegate(controller);

    if (dynamicString(window, "vxOutlet") == "_surveyWindow")
        controller->_surveyWindow = window;
    window->installEventFilter(new CloseGuard(window));
    if (auto *comment = window->findChild<QPlainTextEdit *>())
        new ScreenFit(window, comment);

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
