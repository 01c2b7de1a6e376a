// Hover of the tracking button: validated by a hit test of the real pointer position on
// enter, leave, window activation and moving into a window.
#include "PixelProbe.h"
#include "VXTrackingButton.h"

#include <QApplication>
#include <QCursor>
#include <QEnterEvent>
#include <QTest>

namespace {

void enter(QWidget *widget)
{
    const QPointF local = widget->mapFromGlobal(QCursor::pos());
    QEnterEvent event(local, local, QCursor::pos());
    QApplication::sendEvent(widget, &event);
}

void leave(QWidget *widget)
{
    QEvent event(QEvent::Leave);
    QApplication::sendEvent(widget, &event);
}

} // namespace

class tst_TrackingButton : public QObject
{
    Q_OBJECT

    std::unique_ptr<QWidget> _window;
    VXTrackingButton *_button = nullptr;
    PixelProbe::PaintSpy _counter;

    void activate(QWidget *window)
    {
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window));
    }

private Q_SLOTS:
    void init()
    {
        _window = std::make_unique<QWidget>();
        _window->setGeometry(100, 100, 200, 100);
        _button = new VXTrackingButton(_window.get());
        _button->setGeometry(10, 10, 100, 30);
        _window->show();
        activate(_window.get());
        QCursor::setPos(_window->mapToGlobal(QPoint(300, 300)));
        enter(_button);
        QVERIFY(!_button->hasHover());
        _counter.paints = 0;
        _button->installEventFilter(&_counter);
    }
    void cleanup() { _window.reset(); }

    // The pointer decides, not the event: over the button, over a widget covering part of
    // it, or outside.
    void hitTest_data()
    {
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<bool>("covered");
        QTest::addColumn<bool>("hover");
        QTest::addRow("over the button") << QPoint(30, 25) << false << true;
        QTest::addRow("over the covered part") << QPoint(90, 25) << true << false;
        QTest::addRow("over the uncovered part") << QPoint(30, 25) << true << true;
        QTest::addRow("outside, on enter") << QPoint(150, 80) << false << false;
    }
    void hitTest()
    {
        QFETCH(QPoint, at);
        QFETCH(bool, covered);
        QFETCH(bool, hover);
        if (covered) {
            auto *cover = new QWidget(_window.get());
            cover->setGeometry(70, 5, 60, 40);
            cover->show();
            cover->raise();
        }
        QCursor::setPos(_window->mapToGlobal(at));
        enter(_button);
        QCOMPARE(_button->hasHover(), hover);
        // A leave while the pointer is still over the button keeps the hover.
        leave(_button);
        QCOMPARE(_button->hasHover(), hover);
    }

    // No hover in a window that is not key; it comes with activation, without any movement,
    // and goes with deactivation, with one redraw each time.
    void activation()
    {
        QWidget other;
        other.setGeometry(500, 100, 100, 100);
        other.show();
        activate(&other);
        QCursor::setPos(_window->mapToGlobal(QPoint(30, 25)));
        enter(_button);
        QVERIFY(!_button->hasHover());

        activate(_window.get());
        QTRY_VERIFY(_button->hasHover());
        QTRY_COMPARE(_counter.paints, 1);

        activate(&other);
        QTRY_VERIFY(!_button->hasHover());
        QTRY_COMPARE(_counter.paints, 2);
    }
};

QTEST_MAIN(tst_TrackingButton)
#include "tst_trackingbutton.moc"
