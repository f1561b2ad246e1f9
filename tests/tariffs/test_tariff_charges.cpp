#include "TariffText.h"
#include "support/TempDataDir.h"
#include "tariffs/ChargeSequence.h"

#include <QTest>

using namespace minutor;
using test::At;
using test::Zone;

class TestTariffCharges : public QObject {
  Q_OBJECT

  test::TempDataDir data;

  QString writeTime(const QString& name, const QByteArray& takt, const QByteArray& fee,
                    const QList<QList<QByteArray>>& zones) {
    QList<QByteArray> lines = test::TimeHead(takt, fee);
    for (const auto& zone : zones) {
      lines += zone;
    }
    data.write(QStringLiteral("Tarife/") + name, test::Crlf(lines));
    return name;
  }

  // A connection from `start`: the first tick at once, then one a second.
  struct Run {
    ChargeSequence sequence;
    QDateTime start;
    int ticks = 0;
    int charges = 0;

    void tickTo(int tick, bool bundling = false, bool freeLeft = false) {
      for (; ticks < tick; ++ticks) {
        charges += sequence.Tick(start.addSecs(ticks), false, bundling, freeLeft) ? 1 : 0;
      }
    }
  };

  Run start(const QString& file, const QDateTime& at, bool bundling = false) {
    Run run{ChargeSequence(data.dir(), file), at};
    run.sequence.Start(at, false, bundling);
    return run;
  }

 private slots:
  void everyUnitIsChargedAtItsStart() {
    const QString minute =
        writeTime(QStringLiteral("Takt - Minute.tel"), "60/60", "0", {Zone(0, 24, "6", false)});
    Run run = start(minute, At(1, 10));
    QCOMPARE(run.sequence.Kosten(), 0.06f);
    run.tickTo(60);
    QCOMPARE(run.sequence.Kosten(), 0.06f);
    run.tickTo(61);
    QCOMPARE(run.sequence.Kosten(), 0.12f);
    run.tickTo(121);
    QCOMPARE(run.sequence.Kosten(), 0.18f);
    QCOMPARE(run.charges, 2);

    // A long first unit costs what a short one does, and waits its length.
    const QString second =
        writeTime(QStringLiteral("Takt - Sekunde.tel"), "60/1", "0", {Zone(0, 24, "6", false)});
    run = start(second, At(1, 10));
    QCOMPARE(run.sequence.Kosten(), 0.001f);
    run.tickTo(60);
    QCOMPARE(run.sequence.Kosten(), 0.001f);
    run.tickTo(71);
    QCOMPARE(run.sequence.Kosten(), 0.012f);
    QCOMPARE(run.sequence.TaktLaenge(), qint16(1));
  }

  void feeAndBundlingCountTwice() {
    const QString file =
        writeTime(QStringLiteral("Takt - Gebuehr.tel"), "60 / 60", "10", {Zone(0, 24, "6", false)});
    Run run = start(file, At(1, 10), true);
    QCOMPARE(run.sequence.Kosten(), 0.32f);
    run.tickTo(61, true);
    QCOMPARE(run.sequence.Kosten(), 0.44f);
    // The box may change during a connection; the next unit follows it.
    run.tickTo(121, false);
    QCOMPARE(run.sequence.Kosten(), 0.5f);
  }

  void theNewHourBringsTheNewPriceToTheRunningUnit() {
    const QString file = writeTime(QStringLiteral("Takt - Abend.tel"), "60/60", "0",
                                   {Zone(0, 18, "6", false), Zone(18, 24, "12", false)});
    Run run = start(file, At(1, 17, 59));
    run.tickTo(30);
    // An edit within the hour is read only at the next hour.
    writeTime(file, "60/60", "0", {Zone(0, 18, "30", false), Zone(18, 24, "12", false)});
    run.tickTo(60);
    QCOMPARE(run.sequence.Einheitspreis(), 0.06f);
    run.tickTo(61);  // 18:00:00
    QCOMPARE(run.sequence.Kosten(), 0.18f);
    QCOMPARE(run.sequence.Tarifpreis(), 6.0f);
  }

  void freeTimeChargesTheShadowTotal() {
    const QString file =
        writeTime(QStringLiteral("Takt - Frei.tel"), "60/60", "5", {Zone(0, 24, "6", false)});
    Run run = start(file, At(1, 10));
    QCOMPARE(run.sequence.KostenFrei(), 0.11f);
    run.tickTo(121, false, true);
    QCOMPARE(run.charges, 0);
    QCOMPARE(run.sequence.Kosten(), 0.11f);
    QCOMPARE(run.sequence.KostenFrei(), 0.23f);
    run.tickTo(181, false, false);
    QCOMPARE(run.charges, 1);
    QCOMPARE(run.sequence.Kosten(), 0.17f);
  }

  void volumeStartValues() {
    data.write(QStringLiteral("Tarife/Volumen - Start.tel"),
               test::Crlf({"Volumenabrechnung:Ja", "Volumenkosten:2,5", "Volumeneinheit:0,5",
                           "Gespr\344chsgrundgeb\374hr:5"}));
    VolumenStart start = StartVolumen(data.dir(), QStringLiteral("Volumen - Start.tel"), true);
    QCOMPARE(start.Kosten, 0.1f);  // the fee doubles with bundling, no unit is charged
    QCOMPARE(start.Einheitspreis, 0.025f);
    QCOMPARE(start.Takt, 500.0f);
    QVERIFY(!start.IsFlatrate());

    data.write(QStringLiteral("Tarife/Volumen - Flat.tel"),
               test::Crlf({"Volumenabrechnung:Ja", "Volumeneinheit:0"}));
    QVERIFY(StartVolumen(data.dir(), QStringLiteral("Volumen - Flat.tel"), false).IsFlatrate());
  }
};

QTEST_APPLESS_MAIN(TestTariffCharges)
#include "test_tariff_charges.moc"
