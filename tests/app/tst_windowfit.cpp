// The survey window on a small screen at 150 % font resolution (144 dpi, which Qt turns into
// 1.5 device pixels per point): a 1024 x 768 screen is then 683 x 512 points. The offscreen
// platform is given that screen through its configuration file, tst_windowfit/screen.json.
#include "VXSurveyWindowLoader.h"
#include "VXUninstallSurveyController.h"

#include <QApplication>
#include <QPlainTextEdit>
#include <QScreen>
#include <QTest>

namespace {

VXSurveyWindowLoader::Loaded load()
{
    return VXSurveyWindowLoader::instantiate(QCoreApplication::applicationDirPath() + u'/' +
                                             VXSurveyWindowLoader::mainWindowDescriptionName());
}

} // namespace

class tst_WindowFit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QScreen *screen = QGuiApplication::primaryScreen();
        QCOMPARE(screen->devicePixelRatio(), 1.5);
        QCOMPARE(screen->availableGeometry().size(), QSize(683, 512));
    }

    // Opened in the middle of the screen, then grown by a reason's boxes: the whole window,
    // frame included, stays on the screen; the comment field gives up height (it scrolls)
    // but keeps two lines. Opened past the bottom right corner, it moves just far enough
    // back to sit in that corner.
    void fitsTheScreen_data()
    {
        QTest::addColumn<quint64>("reason");
        QTest::addColumn<bool>("corner");
        for (quint64 reason : {0, 2, 4, 5})
            QTest::addRow("reason %llu", reason) << reason << false;
        QTest::newRow("past the corner") << quint64(0) << true;
    }
    void fitsTheScreen()
    {
        QFETCH(quint64, reason);
        QFETCH(bool, corner);
        auto loaded = load();
        QWidget *window = loaded.window.get();
        // As the window opens: its own size, centred.
        window->adjustSize();
        const QRect available = window->screen()->availableGeometry();
        QRect frame = window->frameGeometry();
        frame.moveCenter(available.center());
        if (corner)
            frame.moveBottomRight(available.bottomRight() + QPoint(90, 70));
        window->move(frame.topLeft());
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window));
        loaded.controller->setUninstallingReason(reason);
        QTRY_VERIFY2(available.contains(window->frameGeometry()),
                     qPrintable(QDebug::toString(window->frameGeometry())));
        QTest::qWait(100); // and it stays where it settled
        if (corner)
            QCOMPARE(window->frameGeometry().bottomRight(), available.bottomRight());
        auto *comment = window->findChild<QPlainTextEdit *>();
        QVERIFY(comment->isVisible());
        QVERIFY(comment->viewport()->height() >= 2 * comment->fontMetrics().lineSpacing());
    }

    // Every edge of the comment field's frame reaches the screen: across the middle of each
    // edge some device pixel is darker than the field's white.
    void commentBorder()
    {
        auto loaded = load();
        QWidget *window = loaded.window.get();
        loaded.controller->setUninstallingReason(4);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window));
        QTest::qWait(50);
        const QImage image = window->grab().toImage();
        QCOMPARE(image.devicePixelRatio(), 1.5);
        auto *comment = window->findChild<QPlainTextEdit *>();
        const QRectF field(comment->mapTo(window, QPoint(0, 0)), QSizeF(comment->size()));
        const double r = image.devicePixelRatio();
        // A line of device pixels across the edge at point p, inward along (dx, dy).
        const auto drawn = [&](QPointF p, int dx, int dy) {
            const QPoint d(int(p.x() * r), int(p.y() * r));
            for (int i = -2; i <= 2; ++i) {
                const QColor c = image.pixelColor(d + QPoint(dx * i, dy * i));
                if (c.lightnessF() < 0.9)
                    return true;
            }
            return false;
        };
        const QPointF centre = field.center();
        QVERIFY2(drawn({field.left(), centre.y()}, 1, 0), "left edge");
        QVERIFY2(drawn({field.left() + field.width() - 0.5, centre.y()}, -1, 0), "right edge");
        QVERIFY2(drawn({centre.x(), field.top()}, 0, 1), "top edge");
        QVERIFY2(drawn({centre.x(), field.top() + field.height() - 0.5}, 0, -1), "bottom edge");
    }
};

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + qgetenv("QV_SOURCE_DIR") +
                                   "/tests/app/tst_windowfit/screen.json");
    QApplication app(argc, argv);
    tst_WindowFit test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_windowfit.moc"
