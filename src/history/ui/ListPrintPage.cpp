#include "history/ui/ListPrintPage.h"

#include "frame/datadir/ClockText.h"
#include "frame/datadir/NumberText.h"
#include "history/ChartValues.h"
#include "history/ListTitle.h"
#include "history/ui/ChartPainter.h"

#include <QFontMetricsF>
#include <QLocale>
#include <QPageLayout>
#include <QPagedPaintDevice>
#include <QPainter>

namespace minutor {

namespace {

constexpr double kRow = 4;    // mm a line of the table takes
constexpr double kLeft = 15;  // the page's margins
constexpr double kRight = 195;
constexpr double kPrintChartHeight = 37;

// Paints in millimetres on the page, with Arial (or the sans serif that
// stands in for it) at point sizes.
class Page {
 public:
  Page(QPainter& painter, QPagedPaintDevice& device, bool mono)
      : painter_(painter), device_(device), mono_(mono) {
    const double scale = device.logicalDpiX() / 25.4 / kUnit;
    painter_.scale(scale, device.logicalDpiY() / 25.4 / kUnit);
    height_ = device.pageLayout().fullRect(QPageLayout::Millimeter).height();
  }

  void SetFont(double points, bool bold = false) {
    QFont font;
    font.setFamilies({QStringLiteral("Arial"), QStringLiteral("Liberation Sans"),
                      QStringLiteral("DejaVu Sans"), QStringLiteral("sans-serif")});
    font.setPixelSize(qRound(points * 25.4 / 72 * kUnit));
    font.setBold(bold);
    painter_.setFont(font);
  }

  // Text whose top stands at y; right-aligned texts end at x.
  void Text(double x, double y, const QString& text, Qt::Alignment align = Qt::AlignLeft) {
    const QRectF box = align & Qt::AlignRight ? QRectF(0, y * kUnit, x * kUnit, kRow * kUnit)
                       : align & Qt::AlignHCenter
                           ? QRectF(0, y * kUnit, 2 * x * kUnit, kRow * kUnit)
                           : QRectF(x * kUnit, y * kUnit, (210 - x) * kUnit, kRow * kUnit);
    painter_.setPen(Qt::black);
    painter_.drawText(box, static_cast<int>(align | Qt::AlignTop) | Qt::TextDontClip, text);
  }

  // A cell's text cut to its column's width with an ellipsis.
  void Cell(double x, double y, const QString& text, double width) {
    Text(x, y, QFontMetricsF(painter_.font()).elidedText(text, Qt::ElideRight, (width - 1) * kUnit));
  }

  double TextWidth(const QString& text) const {
    return QFontMetricsF(painter_.font()).horizontalAdvance(text) / kUnit;
  }

  void Rule(double x1, double y1, double x2, double y2, QColor colour = Qt::black) {
    painter_.setPen(QPen(mono_ ? QColor(Qt::black) : colour, 0.2 * kUnit));
    painter_.drawLine(QPointF(x1 * kUnit, y1 * kUnit), QPointF(x2 * kUnit, y2 * kUnit));
  }

  void Band(double y, QColor colour) {
    painter_.fillRect(QRectF(kLeft * kUnit, y * kUnit, (kRight - kLeft) * kUnit, kRow * kUnit), colour);
  }

  void Chart(const ChartPicture& picture, double bottom) {
    const double width = kPrintChartHeight * 470 / 256;
    const QRectF frame((105 - width / 2) * kUnit, (bottom - kPrintChartHeight) * kUnit, width * kUnit,
                       kPrintChartHeight * kUnit);
    QImage image = RenderChart(picture);
    if (mono_) {
      image = image.convertToFormat(QImage::Format_Grayscale8);
    }
    painter_.drawImage(frame, image);
    painter_.setPen(QPen(Qt::black, 0.2 * kUnit));
    painter_.drawRect(frame);
  }

  // Before a row: past the foot margin the text goes on 20 mm from the top
  // of a new page.
  double Test(double y) {
    if (height_ - 10 < y) {
      device_.newPage();
      y = y - height_ + 20;
    }
    return y;
  }

  // Positions are whole tenths of a millimetre on the painter.
  static constexpr double kUnit = 10;

 private:
  QPainter& painter_;
  QPagedPaintDevice& device_;
  bool mono_;
  double height_ = 297;
};

QString Provider(const QString& tariff) {
  const qsizetype cut = tariff.indexOf(QLatin1String(" -"));
  return cut < 0 ? tariff : tariff.left(cut);
}

// A light tone of the list's class colours behind a row.
QColor ClassBand(int icon) {
  static const QColor bands[] = {QColor(0xD8, 0xF0, 0xD8), QColor(0xFA, 0xF2, 0xC8), QColor(0xFC, 0xE0, 0xC0),
                                 QColor(0xF4, 0xC8, 0xC8)};
  return bands[std::clamp(icon, 0, 3)];
}

void Invoice(Page& page, const ListPrintContent& content, double y) {
  struct Sum {
    QString name;
    double bytes = 0;
    QString duration = QStringLiteral("00:00:00");
    double cost = 0;
  };
  QList<Sum> sums;
  for (const ListRow& row : content.rows) {
    const QString name = Provider(row.Cell(kColumnTarif).toString());
    auto it = std::find_if(sums.begin(), sums.end(), [&](const Sum& s) { return s.name == name; });
    if (it == sums.end()) {
      sums.append(Sum{name});
      it = sums.end() - 1;
    }
    it->bytes += LeadingNumber(row.Cell(kColumnInOut).toString());
    it->duration = ZeitDifferenz(it->duration, QString(QLatin1Char('-') + row.Cell(kColumnDauer).toString()));
    it->cost += ParseBetrag(row.Cell(kColumnKosten).toString());
  }
  page.SetFont(10);
  y += 6;
  page.Rule(kLeft, y, kRight, y);
  y += 6;
  Sum total{QString::number(sums.size())};
  const auto columns = [&](const Sum& sum, double at) {
    page.Text(147, at, FixedText(sum.bytes / 1000000, 2) + QStringLiteral(" MB"), Qt::AlignRight);
    page.Text(153, at, sum.duration);
    page.Text(190, at, FixedText(sum.cost, 2) + QLatin1Char(' ') + content.currency, Qt::AlignRight);
  };
  for (const Sum& sum : sums) {
    y = page.Test(y + 6);
    QString name = sum.name;
    bool cut = false;
    while (!name.isEmpty() && page.TextWidth(name) >= 95) {
      name.chop(1);
      cut = true;
    }
    page.Text(20, y - 4, cut ? name + QLatin1Char('.') : name);
    columns(sum, y - 4);
    page.Rule(kLeft, y - 6, kLeft, y);
    page.Rule(kRight, y - 6, kRight, y);
    total.bytes += sum.bytes;
    total.duration = ZeitDifferenz(total.duration, QString(QLatin1Char('-') + sum.duration));
    total.cost += sum.cost;
  }
  y += 6;
  page.Rule(20, y, 190, y, QColor(0xC0, 0xC0, 0xC0));
  page.Rule(kLeft, y - 6, kLeft, y + 8);
  page.Rule(kRight, y - 6, kRight, y + 8);
  y += 8;
  page.Text(20, y - 4, QStringLiteral("Gesamt: ") + total.name + QStringLiteral(" Anbieter"));
  columns(total, y - 4);
  page.Rule(kLeft, y, kRight, y);
}

void Table(Page& page, const ListPrintContent& content, const ListPrintOptions& options, double y) {
  // Column starts; with the transfer the middle columns move right.
  const bool transfer = options.transfer;
  const double start = 44;
  const double dauer = 60;
  const double mb = 92;
  const double dfue = 96;
  const double user = transfer ? 126 : 80;
  const double provider = transfer ? 146 : 112;
  page.SetFont(8, true);
  y += 6;
  page.Text(16, y, QStringLiteral("Datum"));
  page.Text(start, y, QStringLiteral("Startzeit"));
  page.Text(dauer, y, QStringLiteral("Dauer"));
  if (transfer) {
    page.Text(mb, y, QStringLiteral("Trns. (MB)"), Qt::AlignRight);
    page.Text(dfue, y, QStringLiteral("DFÜ"));
  }
  page.Text(user, y, QStringLiteral("Benutzer"));
  page.Text(provider, y, QStringLiteral("Anbieter"));
  page.Text(193, y, QStringLiteral("Kosten (") + content.currency + QLatin1Char(')'), Qt::AlignRight);
  y += kRow + 1;
  page.SetFont(8);
  QString duration = QStringLiteral("00:00:00");
  double bytes = 0;
  double cost = 0;
  for (qsizetype i = 0; i < content.rows.size(); ++i) {
    const ListRow& row = content.rows.at(i);
    y = page.Test(y);
    if (!options.mono && options.classColours) {
      page.Band(y, ClassBand(row.icon));
    } else if (!options.mono && (i + 1) % 2 == 0) {
      page.Band(y, QColor(0xE0, 0xE0, 0xE0));
    }
    const QDate date = ParseShortDate(row.Cell(kColumnDatum).toString());
    // Short day names as the old system gave them, "Sa" rather than "Sa.".
    QString weekday = date.isValid() ? QLocale().dayName(date.dayOfWeek(), QLocale::ShortFormat) : QString();
    if (weekday.endsWith(QLatin1Char('.'))) {
      weekday.chop(1);
    }
    page.Text(16, y, weekday + QStringLiteral(", ") + row.Cell(kColumnDatum).toString());
    page.Text(start, y, row.Cell(kColumnStart).toString());
    page.Text(dauer, y, row.Cell(kColumnDauer).toString());
    if (transfer) {
      page.Text(mb, y, FixedText(LeadingNumber(row.Cell(kColumnInOut).toString()) / 1000000, 2),
                Qt::AlignRight);
      page.Cell(dfue, y, row.Cell(kColumnDfue).toString(), user - dfue);
    }
    page.Cell(user, y, row.Cell(kColumnUser).toString(), provider - user);
    page.Cell(provider, y, row.Cell(kColumnTarif).toString(), 176 - provider);
    page.Text(193, y, FixedText(ParseBetrag(row.Cell(kColumnKosten).toString()), 2), Qt::AlignRight);
    duration = ZeitDifferenz(duration, QString(QLatin1Char('-') + row.Cell(kColumnDauer).toString()));
    bytes += LeadingNumber(row.Cell(kColumnInOut).toString());
    cost += ParseBetrag(row.Cell(kColumnKosten).toString());
    y += kRow;
  }
  page.SetFont(8, true);
  page.Rule(kLeft, y + 1, kRight, y + 1);
  page.Text(16, y + 3, QString::number(content.rows.size()) + QStringLiteral(" Verbindungen"));
  page.Text(90, y + 3, transfer ? FixedText(bytes / 1000000, 2) : duration, Qt::AlignRight);
  page.Text(193, y + 3, FixedText(cost, 2), Qt::AlignRight);
}

QString FilterText(const QString& label, const QString& value) {
  return label + (value == kAlle ? QStringLiteral("Alle") : value);
}

}  // namespace

QDate DefaultPrintMonth(int periodIndex, const QDate& today) {
  return periodIndex == 2 || periodIndex == 3 ? ListChartMonth(periodIndex, today) : today;
}

void AddPrintCharts(const DataDir& dir, const ListPrintOptions& options, ListPrintContent& content) {
  using Pair = ListPrintOptions::Pair;
  const ChartMeasure first = options.pair == Pair::DauerTransfer ? ChartMeasure::Dauer : ChartMeasure::Kosten;
  const ChartMeasure second =
      options.pair == Pair::KostenDauer ? ChartMeasure::Dauer : ChartMeasure::Transfer;
  ChartQuery query;
  query.month = options.chartMonth.month();
  query.year = options.chartMonth.year();
  query.filter = content.filter;
  query.filter.userCase = Qt::CaseInsensitive;
  content.charts.clear();
  content.chartTitles.clear();
  for (const ChartMeasure measure : {first, second}) {
    content.charts.append(
        DrawDiagramm(GatherChartData(dir, query, measure), measure, ChartStyle::Balken, content.currency));
    content.chartTitles.append(measure == ChartMeasure::Dauer ? QStringLiteral("Onlinezeitdiagramm (Min)")
                               : measure == ChartMeasure::Kosten
                                   ? QStringLiteral("Kostendiagramm (") + content.currency + QLatin1Char(')')
                                   : QStringLiteral("Transferdiagramm (MB)"));
  }
}

bool PaintListPages(QPagedPaintDevice& device, const ListPrintContent& content,
                    const ListPrintOptions& options) {
  QPainter painter;
  if (!painter.begin(&device)) {
    return false;
  }
  Page page(painter, device, options.mono);
  page.SetFont(14, true);
  page.Text(105, 15, content.title, Qt::AlignHCenter);
  double y = 25;
  if (options.charts && content.charts.size() == 2) {
    const double bottoms[] = {147, 190};
    for (int i = 0; i < 2; ++i) {
      page.SetFont(9, true);
      page.Text(105, bottoms[i] - kPrintChartHeight - 5, content.chartTitles.value(i), Qt::AlignHCenter);
      page.Chart(content.charts.at(i), bottoms[i]);
    }
    y = 195;
  }
  page.SetFont(10);
  page.Text(kLeft, y,
            FilterText(QStringLiteral("Benutzer: "), content.filter.user) + QStringLiteral("    ") +
                FilterText(QStringLiteral("Anbieter: "), content.filter.provider) + QStringLiteral("    ") +
                FilterText(QStringLiteral("Tarif: "), content.filter.tariff));
  if (options.invoice) {
    Invoice(page, content, y);
  } else {
    Table(page, content, options, y);
  }
  return painter.end();
}

}  // namespace minutor
