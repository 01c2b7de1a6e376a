#include "Button.h"
#include "VXFlatRadioButtonCell.h"
#include "VXSurveyWindowLoader.h"
#include "VXUninstallSurveyController.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

using Quorvelle::Button;
using Quorvelle::ButtonCell;

namespace {

VXSurveyWindowLoader::Loaded load()
{
    return VXSurveyWindowLoader::instantiate(QCoreApplication::applicationDirPath() + u'/' +
                                             VXSurveyWindowLoader::mainWindowDescriptionName());
}

// The check boxes each reason shows; every other box is hidden.
const QMap<quint64, QString> detailsOfReason = {
    {2, u"notDisclosedPrice priceTooHigh"_s},
    {4, u"uselessSoftware tooComplexToUse slowedDownComputer"_s},
    {5, u"slowSupportResponse unprofessionalSupport"_s},
};

// The reasons' radio buttons (RadioButton) or the detail check boxes (SwitchButton).
QList<Button *> buttons(QWidget *window, int type = ButtonCell::SwitchButton)
{
    QList<Button *> found = window->findChildren<Button *>();
    found.removeIf([type](Button *button) { return button->buttonType() != type; });
    return found;
}

Button *radioFor(QWidget *window, quint64 reason)
{
    for (Button *radio : buttons(window, ButtonCell::RadioButton)) {
        if (radio->property("vxTag").toULongLong() == reason)
            return radio;
    }
    return nullptr;
}

// WCAG 2 contrast ratio of two colours.
double contrast(const QColor &a, const QColor &b)
{
    const auto luminance = [](const QColor &c) {
        const auto linear = [](double v) {
            return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(c.redF()) + 0.7152 * linear(c.greenF()) + 0.0722 * linear(c.blueF());
    };
    // By value: std::minmax of two temporaries returns references to them.
    const double la = luminance(a), lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

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
        auto *uninstallButton = window->findChild<QAbstractButton *>(u"uninstallButton"_s);
        QVERIFY(uninstallButton);
        QVERIFY(!uninstallButton->isEnabled());
        for (Button *box : buttons(window))
            QVERIFY(!box->isVisible());

        Button *radio = radioFor(window, reason);
        QVERIFY(radio);
        QTest::mouseClick(radio, Qt::LeftButton, {}, QPoint(8, radio->height() / 2));
        QCOMPARE(controller->uninstallingReason(), reason);
        QVERIFY(uninstallButton->isEnabled());

        auto *comment = window->findChild<QPlainTextEdit *>();
        QTest::keyClicks(comment, u"Too dear & = +"_s);
        comment->insertPlainText(u" äöü"_s);
        QCOMPARE(controller->comment(), u"Too dear & = + äöü"_s);

        const QStringList shown = detailsOfReason.value(reason).split(u' ');
        for (Button *box : buttons(window)) {
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
        for (Button *box : buttons(window))
            QVERIFY(!box->isChecked());

        // A code set in code selects its button; no reason clears the choice.
        controller->setUninstallingReason(reason);
        QVERIFY(radio->isChecked());
        controller->setUninstallingReason(0);
        for (Button *r : buttons(window, ButtonCell::RadioButton))
            QVERIFY(!r->isChecked());
        QVERIFY(!uninstallButton->isEnabled());
        // A second click on the chosen reason keeps it, as in any radio group.
        for (int click = 0; click < 2; ++click)
            QTest::mouseClick(radio, Qt::LeftButton, {}, QPoint(8, radio->height() / 2));
        QVERIFY(radio->isChecked());
        QCOMPARE(controller->uninstallingReason(), reason);
    }

    // A focused mark shows a ring that stands out from white by at least 3:1 (WCAG's rule for
    // focus indicators); the grey edge of an unfocused or clicked one does not. The probe is
    // the pixel row just above the mark, at its middle.
    void focusRing_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<quint64>("reason"); // chosen before the window opens
        QTest::addColumn<int>("focus");      // how the button got the focus, -1: it has none
        QTest::addColumn<bool>("ring");
        const auto row = [](const char *tag, const char *name, quint64 reason, int focus,
                            bool ring) {
            QTest::newRow(tag) << QString::fromLatin1(name) << reason << focus << ring;
        };
        row("radio focused on opening", "reasonPrice", 0, Qt::ActiveWindowFocusReason, true);
        row("radio without focus", "reasonFeatures", 0, -1, false);
        row("check box reached by Tab", "uselessSoftwareBox", 4, Qt::TabFocusReason, true);
        row("radio clicked", "reasonSupport", 0, Qt::MouseFocusReason, false);
        row("chosen radio reached by arrow", "reasonFeatures", 4, Qt::TabFocusReason, true);
        // A push button's ring shows as a change of at least 3:1 at the second or third
        // pixel column from its left edge, at half height, on the blue Uninstall button and
        // on the white offer button alike.
        for (const char *name : {"uninstallButton", "offerButton"})
            row(name, name, 1, Qt::TabFocusReason, true);
    }
    void focusRing()
    {
        QFETCH(QString, name);
        QFETCH(quint64, reason);
        QFETCH(int, focus);
        QFETCH(bool, ring);
        auto loaded = load();
        QWidget *window = loaded.window.get();
        loaded.controller->setUninstallingReason(reason);
        window->show();
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window));
        auto *button = window->findChild<Button *>(name);
        QVERIFY(button && button->isEnabled());
        const QImage before = window->grab().toImage();
        if (focus == int(Qt::MouseFocusReason))
            QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
        else if (focus >= 0 && focus != int(Qt::ActiveWindowFocusReason))
            button->setFocus(Qt::FocusReason(focus));
        QCOMPARE(button->hasFocus(), focus >= 0);
        const QImage after = window->grab().toImage();
        if (name.endsWith("Button"_L1)) {
            double best = 1.0;
            for (int x : {1, 2}) {
                const QPoint p = button->mapTo(window, QPoint(x, button->height() / 2));
                best = std::max(best, contrast(before.pixelColor(p), after.pixelColor(p)));
            }
            QVERIFY2(best >= 3.0, qPrintable(u"best change %1:1"_s.arg(best)));
            return;
        }

        QRectF mark = button->cell()->imageRectForBounds(QRectF(button->rect()));
        if (auto *radio = dynamic_cast<VXFlatRadioButtonCell *>(button->cell()))
            mark.translate(radio->imageXOffset(), 0.0);
        const QPoint probe =
            button->mapTo(window, QPoint(int(mark.center().x()), int(mark.top()) - 1));
        const QColor pixel = after.pixelColor(probe);
        const double ratio = contrast(pixel, Qt::white);
        QVERIFY2(ring ? ratio >= 3.0 : ratio < 3.0,
                 qPrintable(pixel.name() + u" %1:1"_s.arg(ratio)));
    }

    // Arrow keys in the reasons choose the reason they move to, as in any radio group, so
    // Uninstall comes alive; Space ticks a box. Then every control can be reached with Tab,
    // top to bottom, and has a name for assistive tools. (That the window's texts are
    // translated: tst_translations.)
    void keyboard()
    {
        auto loaded = load();
        QWidget *window = loaded.window.get();
        VXUninstallSurveyController *controller = loaded.controller.get();
        window->show();
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window));
        auto *uninstallButton = window->findChild<QAbstractButton *>(u"uninstallButton"_s);
        QCOMPARE(QApplication::focusWidget(), radioFor(window, 2));
        QVERIFY(!uninstallButton->isEnabled());

        const QList<QPair<Qt::Key, quint64>> steps = {
            {Qt::Key_Down, 4}, {Qt::Key_Down, 5}, {Qt::Key_Up, 4}, {Qt::Key_Up, 2}};
        for (const auto &[key, expected] : steps) {
            QTest::keyClick(QApplication::focusWidget(), key);
            QCOMPARE(controller->uninstallingReason(), expected);
            QCOMPARE(QApplication::focusWidget(), radioFor(window, expected));
            QVERIFY(radioFor(window, expected)->isChecked());
            QVERIFY(uninstallButton->isEnabled());
        }

        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        auto *box = window->findChild<Button *>(u"notDisclosedPriceBox"_s);
        QCOMPARE(QApplication::focusWidget(), box);
        QTest::keyClick(box, Qt::Key_Space);
        QVERIFY(box->isChecked() && controller->notDisclosedPrice());
        QTest::keyClick(box, Qt::Key_Space);
        QVERIFY(!controller->notDisclosedPrice());

        // A screen reader names the reasons' group by the question above it, which labels it.
        auto *heading = window->findChild<QLabel *>(u"headingLabel"_s);
        QAccessibleInterface *group =
            QAccessible::queryAccessibleInterface(window->findChild<QWidget *>(u"reasonsMatrix"_s));
        QVERIFY(heading && group);
        QCOMPARE(group->role(), QAccessible::Grouping);
        QCOMPARE(group->text(QAccessible::Name), heading->text());
        const auto labels = group->relations(QAccessible::Label);
        QVERIFY(labels.size() == 1 && labels.first().first->object() == heading);

        controller->setUninstallingReason(4);
        QList<QWidget *> controls;
        for (QWidget *w : window->findChildren<QWidget *>()) {
            if (w->focusPolicy() & Qt::TabFocus && w->isVisibleTo(window))
                controls.append(w);
            if (qobject_cast<QAbstractButton *>(w) || qobject_cast<QPlainTextEdit *>(w))
                QVERIFY2(!w->accessibleName().isEmpty(), qPrintable(w->objectName()));
        }
        // The reasons are one stop (arrow keys move between them), then the shown
        // boxes, the comment and the two buttons.
        QCOMPARE(controls.size(), 1 + 3 + 1 + 2);
        // One round of the focus chain from the first reason meets them all, left to right
        // and top to bottom.
        QList<QPoint> order;
        QWidget *w = radioFor(window, 2);
        do {
            if (controls.contains(w))
                order.append(w->mapTo(window, QPoint(0, 0)));
            w = w->nextInFocusChain();
        } while (w != radioFor(window, 2));
        QCOMPARE(order.size(), controls.size());
        QVERIFY(std::is_sorted(order.cbegin(), order.cend(), [](QPoint a, QPoint b) {
            return a.y() < b.y() || (a.y() == b.y() && a.x() < b.x());
        }));
    }
};

QTEST_MAIN(tst_Window)
#include "tst_window.moc"
