#include "history/ui/ExportCharts.h"

#include "history/ChartValues.h"
#include "history/ListExport.h"
#include "history/ui/ChartPainter.h"

#include <QSaveFile>

namespace minutor {

std::optional<QStringList> WriteExportCharts(const DataDir& dir, const QString& htmlPath, const QDate& month,
                                             const RecordFilter& filter, const QString& currency) {
  ChartQuery query;
  query.month = month.month();
  query.year = month.year();
  query.filter = filter;
  query.filter.userCase = Qt::CaseInsensitive;
  QStringList paths;
  int number = 1;
  for (const ChartMeasure measure : {ChartMeasure::Dauer, ChartMeasure::Transfer}) {
    const QImage image = RenderChart(
        DrawDiagramm(GatherChartData(dir, query, measure), measure, ChartStyle::Balken, currency));
    const QString path = ExportChartPath(htmlPath, number++);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !image.save(&file, "BMP") || !file.commit()) {
      return std::nullopt;
    }
    paths << path;
  }
  return paths;
}

}  // namespace minutor
