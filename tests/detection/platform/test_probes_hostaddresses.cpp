#include "detection/platform/HostAddresses.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

class TestProbesHostAddresses : public QObject {
  Q_OBJECT

 private slots:
  void addressesOfInterfacesThatAreUp() {
    const std::optional<QStringList> addresses = HostAddresses().IPv4Addresses();
    QVERIFY(addresses.has_value());
    const QRegularExpression dotted(u"^\\d{1,3}\\.\\d{1,3}\\.\\d{1,3}\\.\\d{1,3}$"_s);
    for (const QString& address : *addresses) {
      QVERIFY2(dotted.match(address).hasMatch(), qPrintable(address));
    }

    // iproute2 sees the same addresses.
    QProcess ip;
    ip.start(u"ip"_s, {u"-4"_s, u"-o"_s, u"addr"_s, u"show"_s, u"up"_s});
    if (!ip.waitForFinished(5000) || ip.exitCode() != 0) {
      QSKIP("ip (iproute2) isn't there to compare with");
    }
    QStringList expected;
    const QRegularExpression inet(u"inet (\\S+)/"_s);
    for (const QString& line : QString::fromUtf8(ip.readAllStandardOutput()).split(QLatin1Char('\n'))) {
      if (const QRegularExpressionMatch match = inet.match(line); match.hasMatch()) {
        expected.append(match.captured(1));
      }
    }
    QStringList found = *addresses;
    found.sort();
    expected.sort();
    QCOMPARE(found, expected);
  }
};

QTEST_APPLESS_MAIN(TestProbesHostAddresses)
#include "test_probes_hostaddresses.moc"
