#include "Button.h"
#include "VXSurveyWindowLoader.h"
#include "VXUninstallSurveyController.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDesktopServices>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTest>
#include <QTranslator>
#include <QUrlQuery>

using Quorvelle::Button;
using Quorvelle::ButtonCell;

namespace {

VXSurveyWindowLoader::Loaded load()
{
    return VXSurveyWindowLoader::instantiate(QCoreApplication::applicationDirPath() +
                                             QLatin1Char('/') +
                                             VXSurveyWindowLoader::mainWindowDescriptionName());
}

// The check boxes each reason shows; every other box is hidden.
const QMap<quint64, QStringList> detailsOfReason = {
    {1, {}},
    {2, {QStringLiteral("notDisclosedPrice"), QStringLiteral("priceTooHigh")}},
    {3, {}},
    {4,
     {QStringLiteral("uselessSoftware"), QStringLiteral("tooComplexToUse"),
      QStringLiteral("slowedDownComputer")}},
    {5, {QStringLiteral("slowSupportResponse"), QStringLiteral("unprofessionalSupport")}},
};

// The reasons' radio buttons and the detail check boxes.
QList<Button *> buttonsOfType(QWidget *window, int type)
{
    QList<Button *> found;
    for (Button *button : window->findChildren<Button *>()) {
        if (button->buttonType() == type)
            found.append(button);
    }
    return found;
}
QList<Button *> radios(QWidget *window)
{
    return buttonsOfType(window, ButtonCell::RadioButton);
}
QList<Button *> boxes(QWidget *window)
{
    return buttonsOfType(window, ButtonCell::SwitchButton);
}

Button *radioFor(QWidget *window, quint64 reason)
{
    for (Button *radio : radios(window)) {
        if (radio->property("vxTag").toULongLong() == reason)
            return radio;
    }
    return nullptr;
}

class UrlCatcher : public QObject
{
    Q_OBJECT
public:
    QList<QUrl> urls;
public Q_SLOTS:
    void open(const QUrl &url) { urls.append(url); }
};

} // namespace

class tst_Window : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Choosing a reason through its radio button sets the code, shows exactly that reason's
    // boxes, and the boxes edit the flags; the reset that follows another choice reaches
    // the controls too.
    void reasons_data()
    {
        QTest::addColumn<quint64>("reason");
        for (quint64 r = 1; r <= 5; ++r)
            QTest::addRow("reason %llu", r) << r;
    }
    void reasons()
    {
        QFETCH(quint64, reason);
        auto loaded = load();
        QVERIFY(loaded);
        QWidget *window = loaded.window.get();
        VXUninstallSurveyController *controller = loaded.controller.get();
        window->show();
        auto *uninstallButton =
            window->findChild<QAbstractButton *>(QStringLiteral("uninstallButton"));
        QVERIFY(uninstallButton);
        QVERIFY(!uninstallButton->isEnabled());
        for (Button *box : boxes(window))
            QVERIFY(!box->isVisible());

        Button *radio = radioFor(window, reason);
        QVERIFY(radio);
        QTest::mouseClick(radio, Qt::LeftButton, {}, QPoint(8, radio->height() / 2));
        QCOMPARE(controller->uninstallingReason(), reason);
        QVERIFY(uninstallButton->isEnabled());

        auto *comment = window->findChild<QPlainTextEdit *>();
        QTest::keyClicks(comment, QStringLiteral("Too dear & = +"));
        comment->insertPlainText(QStringLiteral(" äöü"));
        QCOMPARE(controller->comment(), QStringLiteral("Too dear & = + äöü"));

        const QStringList shown = detailsOfReason.value(reason);
        for (Button *box : boxes(window)) {
            const QString key = box->property("vxValue").toString();
            QCOMPARE(box->isVisible(), shown.contains(key));
            if (!box->isVisible())
                continue;
            QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
            QCOMPARE(controller->property(key.toLatin1()).toBool(), true);
            // ... and the other way round.
            controller->setProperty(key.toLatin1(), false);
            QVERIFY(!box->isChecked());
            controller->setProperty(key.toLatin1(), true);
            QVERIFY(box->isChecked());
        }

        // Another reason: the flags and the comment are gone from the controls as well.
        const quint64 other = reason == 2 ? 4 : 2;
        QTest::mouseClick(radioFor(window, other), Qt::LeftButton, {}, QPoint(8, 10));
        QVERIFY(!radio->isChecked());
        QVERIFY(comment->toPlainText().isEmpty());
        QVERIFY(controller->comment().isNull());
        for (Button *box : boxes(window))
            QVERIFY(!box->isChecked());

        // A code set in code selects its button; no reason clears the choice.
        controller->setUninstallingReason(reason);
        QVERIFY(radio->isChecked());
        controller->setUninstallingReason(0);
        for (Button *r : radios(window))
            QVERIFY(!r->isChecked());
        QVERIFY(!uninstallButton->isEnabled());
    }

    // Every control can be reached with the keyboard, top to bottom, and has a name for
    // assistive tools.
    void keyboardAndAccessibility()
    {
        auto loaded = load();
        QWidget *window = loaded.window.get();
        loaded.controller->setUninstallingReason(4);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window));
        QList<QWidget *> controls;
        for (QWidget *w : window->findChildren<QWidget *>()) {
            if (w->focusPolicy() & Qt::TabFocus && w->isVisibleTo(window))
                controls.append(w);
        }
        // The reasons are one stop (arrow keys move between them), then the shown
        // boxes, the comment and the two buttons.
        QCOMPARE(controls.size(), 1 + 3 + 1 + 2);
        for (QWidget *w : window->findChildren<QWidget *>()) {
            if (qobject_cast<QAbstractButton *>(w) || qobject_cast<QPlainTextEdit *>(w))
                QVERIFY2(!w->accessibleName().isEmpty(), qPrintable(w->objectName()));
        }
        QWidget *previous = nullptr;
        QWidget *w = radioFor(window, 2);
        for (qsizetype i = 0; i < controls.size(); ++i) {
            QVERIFY2(controls.contains(w), qPrintable(w->objectName()));
            if (previous) {
                const QPoint a = previous->mapTo(window, QPoint(0, 0));
                const QPoint b = w->mapTo(window, QPoint(0, 0));
                QVERIFY2(
                    b.y() > a.y() || (b.y() == a.y() && b.x() > a.x()),
                    qPrintable(previous->objectName() + QLatin1String(" -> ") + w->objectName()));
            }
            previous = w;
            do
                w = w->nextInFocusChain();
            while (!controls.contains(w) && w != radioFor(window, 2));
        }
    }

    // With the German strings installed no visible text stays English.
    void germanStrings()
    {
        QTranslator german;
        QVERIFY(german.load(QStringLiteral("window_de"), QCoreApplication::applicationDirPath() +
                                                             QStringLiteral("/translations")));
        auto english = load();
        QCoreApplication::installTranslator(&german);
        auto translated = load();
        QCoreApplication::removeTranslator(&german);
        const QList<QWidget *> en = english.window->findChildren<QWidget *>();
        const QList<QWidget *> de = translated.window->findChildren<QWidget *>();
        QCOMPARE(en.size(), de.size());
        int texts = 0;
        for (qsizetype i = 0; i < en.size(); ++i) {
            for (const char *name : {"text", "accessibleName", "placeholderText"}) {
                const QString source = en[i]->property(name).toString();
                if (source.isEmpty())
                    continue;
                ++texts;
                QVERIFY2(de[i]->property(name).toString() != source, qPrintable(source));
            }
        }
        QVERIFY(texts >= 30);
        QCoreApplication::installTranslator(&german);
        QCOMPARE(QCoreApplication::translate("Localizable", "Uninstall Quorvelle"),
                 QStringLiteral("Quorvelle deinstallieren"));
        QCoreApplication::removeTranslator(&german);
    }

    // The offer opens the partner's page and removes nothing; closing the window is no way
    // out. (Uninstall removes files, so it is pressed only in the sandboxed end-to-end runs.)
    void buttonsAndClosing()
    {
        UrlCatcher catcher;
        QDesktopServices::setUrlHandler(QStringLiteral("http"), &catcher, "open");
        auto loaded = load();
        QWidget *window = loaded.window.get();
        window->show();
        QVERIFY(!window->close());
        QVERIFY(window->isVisible());

        QTest::mouseClick(window->findChild<QAbstractButton *>(QStringLiteral("offerButton")),
                          Qt::LeftButton);
        QCOMPARE(catcher.urls.size(), 1);
        const QUrl offer = catcher.urls.first();
        QCOMPARE(offer.path(), QStringLiteral("/checkout/"));
        QVERIFY(QUrlQuery(offer).hasQueryItem(QStringLiteral("c")));
        QVERIFY(window->isVisible());

        QDesktopServices::unsetUrlHandler(QStringLiteral("http"));
    }
};

QTEST_MAIN(tst_Window)
#include "tst_window.moc"
