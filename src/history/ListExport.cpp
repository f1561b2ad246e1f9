#include "history/ListExport.h"

#include "frame/datadir/AnsiText.h"
#include "frame/datadir/ClockText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

namespace minutor {

namespace {

QString PadRight(const QString& text, int width) {
  return text.left(width).leftJustified(width, QLatin1Char(' '));
}

QList<QByteArray> ToAnsiLines(const QStringList& lines) {
  QList<QByteArray> bytes;
  bytes.reserve(lines.size());
  for (const QString& line : lines) {
    bytes.append(ToAnsi(line));
  }
  return bytes;
}

// The plain number of a count or amount cell; units may read "-".
QJsonValue Number(const QString& cell) {
  const QString trimmed = cell.trimmed();
  if (trimmed.isEmpty() || trimmed == QLatin1String("-")) {
    return QJsonValue::Null;
  }
  return static_cast<double>(ParseBetrag(trimmed));
}

QString PlainNumber(const QString& cell) {
  const QJsonValue value = Number(cell);
  return value.isNull() ? QString() : QString::number(value.toDouble(), 'g', 15);
}

QString IsoDate(const QString& cell) {
  const QDate date = ParseShortDate(cell);
  return date.isValid() ? date.toString(Qt::ISODate) : cell;
}

QString CsvField(const QString& text) {
  if (!text.contains(QLatin1Char(',')) && !text.contains(QLatin1Char('"')) &&
      !text.contains(QLatin1Char('\n')) && !text.contains(QLatin1Char('\r'))) {
    return text;
  }
  QString quoted = text;
  quoted.replace(QLatin1String("\""), QLatin1String("\"\""));
  return QLatin1Char('"') + quoted + QLatin1Char('"');
}

bool IsNumberColumn(int column) {
  return column == kColumnKosten || column == kColumnEinheiten || column == kColumnIn ||
         column == kColumnOut || column == kColumnInOut;
}

}  // namespace

QList<QByteArray> ExportHtmlLines(const QList<ListRow>& rows, const QString& title,
                                  const RecordFilter& filter, const QStringList& chartFiles) {
  const QString blankRow = QStringLiteral("<TR><TD colspan=12 bgcolor=#FFFFFF></TD></TR>");
  QStringList out = {
      QStringLiteral("<HTML><BODY>"),
      QStringLiteral("<FONT face=\"Verdana, Arial, Helvetica, sans-serif\" size=2>"),
      QStringLiteral("<TABLE width=940 align=center width=1 height=1 bgcolor=#000000 border=0 cellpadding=0 "
                     "cellspacing=0><TR><TD>"),
      QStringLiteral("<TABLE width=100% border=0 cellpadding=2 cellspacing=1><TR>"),
      blankRow,
      QStringLiteral("<TR><TD colspan=12 align=center bgcolor=#FFFFFF>"),
      QStringLiteral("<FONT size=4><B>"),
      title.toUpper(),
      QStringLiteral("</B></FONT></TD></TR>"),
      blankRow,
  };
  if (!chartFiles.isEmpty()) {
    out << QStringLiteral("<TR><TD colspan=12 align=center bgcolor=#DDDDDD>")
        << QStringLiteral("<FONT size=2><B>")
        << QStringLiteral("Monatsdiagramme (Dauer in Minuten / Transfer in Megabyte)")
        << QStringLiteral("</B></FONT></TD></TR>")
        << QStringLiteral("<TR><TD colspan=12 align=center bgcolor=#FFFFFF>");
    for (const QString& file : chartFiles) {
      out << QStringLiteral("<IMG src=") + QFileInfo(file).fileName() + QLatin1Char('>');
    }
    out << QStringLiteral("</TD></TR>");
  }
  QString filterLine =
      QStringLiteral("Benutzer: ") + filter.user + QStringLiteral(", Anbieter: ") + filter.provider;
  if (filter.provider != kAlle) {
    filterLine += QStringLiteral(", Tarif: ") + filter.tariff;
  }
  out << QStringLiteral("<TR><TD colspan=12 align=center bgcolor=#DDDDDD>")
      << QStringLiteral("<FONT size=2><B>") << filterLine << QStringLiteral("</B></FONT></TD></TR>")
      << blankRow;
  for (int column = kColumnDatum; column <= kColumnKommentar; ++column) {
    out << QStringLiteral("<TD bgcolor=#00AAEE valign=top nowrap>") << QStringLiteral("<FONT size=2>")
        << QStringLiteral("<B>") << ListColumnHeaders().at(column - 1) + QStringLiteral("<BR>")
        << QStringLiteral("</B>") << QStringLiteral("</FONT>") << QStringLiteral("</TD>");
  }
  out << QStringLiteral("</TR>") << QStringLiteral("<TR>");
  QString duration = QStringLiteral("00:00:00");
  double cost = 0;
  double bytes = 0;
  for (int column = kColumnDatum; column <= kColumnKommentar; ++column) {
    out << QStringLiteral("<TD bgcolor=#FFFFFF valign=top nowrap>");
    for (qsizetype i = 0; i < rows.size(); ++i) {
      const QString cell = rows.at(i).Cell(column).toString();
      out << ((i + 1) % 2 == 0 ? QStringLiteral("<FONT color=#555555 size=2>")
                               : QStringLiteral("<FONT color=#000000 size=2>"))
          << cell + QStringLiteral("<BR>") << QStringLiteral("</FONT>");
      if (column == kColumnDauer) {
        duration = ZeitDifferenz(duration, QString(QLatin1Char('-') + cell));
      } else if (column == kColumnKosten) {
        cost += ParseBetrag(cell);
      } else if (column == kColumnInOut) {
        bytes += LeadingNumber(cell);
      }
    }
    out << QStringLiteral("</TD>");
  }
  out << QStringLiteral("</TR><TR>");
  for (int column = kColumnDatum; column <= kColumnKommentar; ++column) {
    out << QStringLiteral("<TD bgcolor=#DDDDDD><B><FONT color=#000000 size=2>");
    if (column == kColumnDatum) {
      out << QStringLiteral("Gesamt:");
    } else if (column == kColumnDauer) {
      out << duration;
    } else if (column == kColumnKosten) {
      out << FixedText(cost, 3);
    } else if (column == kColumnInOut) {
      out << GeneralText(bytes);
    }
    out << QStringLiteral("</FONT></B></TD>");
  }
  out << QStringLiteral("</FONT>") << QStringLiteral("</TR></TABLE>") << QStringLiteral("<TD></TR></TABLE>")
      << QStringLiteral("</BODY></HTML>");
  return ToAnsiLines(out);
}

QList<QByteArray> ExportTextLines(const QList<ListRow>& rows) {
  QStringList out = {
      QStringLiteral(
          "Datum      | Startzeit | Dauer      | Einheiten | Kosten    | Empfangen     | Gesendet      "
          "| Gesamt        | DFÜ                       | Benutzer                  | Tarif           "
          "               | Kommentar"),
      QStringLiteral(
          "           |           |            |           |           |               |               "
          "|               |                           |                           |                 "
          "               |"),
  };
  struct Field {
    int column;
    int width;  // 0: as it stands
  };
  static constexpr Field kFields[] = {
      {kColumnDatum, 0},  {kColumnStart, 9}, {kColumnDauer, 10}, {kColumnEinheiten, 9},
      {kColumnKosten, 9}, {kColumnIn, 13},   {kColumnOut, 13},   {kColumnInOut, 13},
      {kColumnDfue, 25},  {kColumnUser, 25}, {kColumnTarif, 30}, {kColumnKommentar, 0},
  };
  for (const ListRow& row : rows) {
    QStringList fields;
    for (const Field& field : kFields) {
      const QString cell = row.Cell(field.column).toString();
      fields << (field.width == 0 ? cell : PadRight(cell, field.width));
    }
    out << fields.join(QStringLiteral(" | "));
  }
  return ToAnsiLines(out);
}

QByteArray ExportCsv(const QList<ListRow>& rows) {
  QStringList header;
  for (int column = kColumnDatum; column <= kColumnKommentar; ++column) {
    header << CsvField(ListColumnHeaders().at(column - 1));
  }
  QString out = header.join(QLatin1Char(',')) + QStringLiteral("\r\n");
  for (const ListRow& row : rows) {
    QStringList fields;
    for (int column = kColumnDatum; column <= kColumnKommentar; ++column) {
      const QString cell = row.Cell(column).toString();
      fields << CsvField(column == kColumnDatum   ? IsoDate(cell)
                         : IsNumberColumn(column) ? PlainNumber(cell)
                                                  : cell);
    }
    out += fields.join(QLatin1Char(',')) + QStringLiteral("\r\n");
  }
  return out.toUtf8();
}

QByteArray ExportJson(const QList<ListRow>& rows) {
  QJsonArray array;
  for (const ListRow& row : rows) {
    array.append(QJsonObject{
        {QStringLiteral("date"), IsoDate(row.Cell(kColumnDatum).toString())},
        {QStringLiteral("start"), row.Cell(kColumnStart).toString()},
        {QStringLiteral("duration"), row.Cell(kColumnDauer).toString()},
        {QStringLiteral("seconds"), ClockTextSeconds(row.Cell(kColumnDauer).toString())},
        {QStringLiteral("cost"), Number(row.Cell(kColumnKosten).toString())},
        {QStringLiteral("units"), Number(row.Cell(kColumnEinheiten).toString())},
        {QStringLiteral("received"), Number(row.Cell(kColumnIn).toString())},
        {QStringLiteral("sent"), Number(row.Cell(kColumnOut).toString())},
        {QStringLiteral("total"), Number(row.Cell(kColumnInOut).toString())},
        {QStringLiteral("dialup"), row.Cell(kColumnDfue).toString()},
        {QStringLiteral("tariff"), row.Cell(kColumnTarif).toString()},
        {QStringLiteral("user"), row.Cell(kColumnUser).toString()},
        {QStringLiteral("comment"), row.Cell(kColumnKommentar).toString()},
        {QStringLiteral("file"), row.Cell(kColumnFile).toString()},
    });
  }
  return QJsonDocument(array).toJson(QJsonDocument::Indented);
}

QString ExportChartPath(const QString& htmlPath, int number) {
  QString base = htmlPath;
  if (base.endsWith(QLatin1String(".htm"), Qt::CaseInsensitive)) {
    base.chop(4);
  }
  return base + QString::number(number) + QStringLiteral(".bmp");
}

bool WriteExportFile(const QString& path, const QList<QByteArray>& lines) {
  QByteArray bytes;
  for (const QByteArray& line : lines) {
    bytes += line + "\r\n";
  }
  return WriteExportFile(path, bytes);
}

bool WriteExportFile(const QString& path, const QByteArray& bytes) {
  const QFileInfo info(path);
  return DataDir(info.absolutePath()).WriteBytes(info.fileName(), bytes);
}

}  // namespace minutor
