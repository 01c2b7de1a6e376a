#include "VXUninstallSurveyController.h"

#include <QSignalSpy>
#include <QTest>

namespace {
const char *const kFlags[] = {"notDisclosedPrice",    "priceTooHigh",       "uselessSoftware",
                              "tooComplexToUse",      "slowedDownComputer", "slowSupportResponse",
                              "unprofessionalSupport"};

void setAllFlags(VXUninstallSurveyController &c)
{
    for (const char *flag : kFlags)
        c.setProperty(flag, true);
}

int countSetFlags(const VXUninstallSurveyController &c)
{
    int n = 0;
    for (const char *flag : kFlags)
        n += c.property(flag).toBool() ? 1 : 0;
    return n;
}
} // namespace

class TestSurveyAnswers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initialState()
    {
        VXUninstallSurveyController c;
        QCOMPARE(c.uninstallingReason(), 0u);
        QVERIFY(!c.isReasonSelected());
        QVERIFY(c.comment().isNull());
        QCOMPARE(countSetFlags(c), 0);
    }

    void changeOfReason_data()
    {
        QTest::addColumn<quint64>("from");
        QTest::addColumn<quint64>("to");
        QTest::addColumn<bool>("resets");
        QTest::newRow("same reason keeps answers") << quint64(2) << quint64(2) << false;
        QTest::newRow("2 to 4 discards") << quint64(2) << quint64(4) << true;
        QTest::newRow("back to none discards") << quint64(5) << quint64(0) << true;
        QTest::newRow("codes outside the table are stored") << quint64(1) << quint64(9) << true;
    }

    void changeOfReason()
    {
        QFETCH(quint64, from);
        QFETCH(quint64, to);
        QFETCH(bool, resets);

        VXUninstallSurveyController c;
        c.setUninstallingReason(from);
        setAllFlags(c); // flags are accepted whatever the reason
        c.setComment(QStringLiteral("zu teuer – wirklich"));

        QSignalSpy reasonSpy(&c, &VXUninstallSurveyController::uninstallingReasonChanged);
        QSignalSpy selectedSpy(&c, &VXUninstallSurveyController::reasonSelectedChanged);
        QSignalSpy commentSpy(&c, &VXUninstallSurveyController::commentChanged);
        c.setUninstallingReason(to);

        QCOMPARE(c.uninstallingReason(), to);
        QCOMPARE(c.isReasonSelected(), to != 0);
        QCOMPARE(countSetFlags(c), resets ? 0 : 7);
        QCOMPARE(c.comment().isNull(), resets);
        QCOMPARE(reasonSpy.count(), resets ? 1 : 0);
        QCOMPARE(selectedSpy.count(), resets ? 1 : 0);
        QCOMPARE(commentSpy.count(), resets ? 1 : 0);
        if (resets)
            QCOMPARE(selectedSpy.first().first().toBool(), to != 0);
    }

    void resetHappensBeforeObserversHearOfTheReason()
    {
        VXUninstallSurveyController c;
        c.setUninstallingReason(2);
        c.setPriceTooHigh(true);
        bool flagSeenByObserver = true;
        quint64 reasonSeenAtReset = 0;
        connect(&c, &VXUninstallSurveyController::priceTooHighChanged, &c,
                [&] { reasonSeenAtReset = c.uninstallingReason(); });
        connect(&c, &VXUninstallSurveyController::reasonSelectedChanged, &c,
                [&] { flagSeenByObserver = c.priceTooHigh(); });
        c.setUninstallingReason(4);
        QCOMPARE(reasonSeenAtReset, 4u); // stored first
        QVERIFY(!flagSeenByObserver);
    }

    void settersAnnounceOnlyRealChanges()
    {
        VXUninstallSurveyController c;
        QSignalSpy spy(&c, &VXUninstallSurveyController::slowSupportResponseChanged);
        c.setSlowSupportResponse(false);
        QCOMPARE(spy.count(), 0);
        c.setSlowSupportResponse(true);
        c.setSlowSupportResponse(true);
        QCOMPARE(spy.count(), 1);
    }
};

QTEST_GUILESS_MAIN(TestSurveyAnswers)
#include "tst_surveyanswers.moc"
