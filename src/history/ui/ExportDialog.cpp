#include "history/ui/ExportDialog.h"

#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Prompter.h"
#include "frame/Services.h"
#include "frame/datadir/DataDir.h"
#include "history/ListExport.h"
#include "history/ListPeriod.h"
#include "history/ListTitle.h"
#include "history/ui/ExportCharts.h"

#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

namespace minutor {

ExportDialog::ExportDialog(const Services& services, ListSelection selection, QWidget* parent)
    : QDialog(parent), services_(services), selection_(std::move(selection)) {
  setObjectName(QStringLiteral("Export"));
  setWindowTitle(QStringLiteral("Exportieren..."));
  auto* layout = new QGridLayout(this);
  layout->addWidget(new QLabel(QStringLiteral("Bitte wählen Sie das gewünschte Format aus:"), this), 0, 0, 1,
                    2);
  const struct {
    Format format;
    const char* caption;
    const char* text;
  } choices[] = {
      {Format::Html, "HTML Datei",
       "Die Verbindungsdaten werden in eine HTML Datei geschrieben und Diagramme als Bilder eingebunden."},
      {Format::Text, "Text Datei",
       "Speichert alle Daten in eine Text Datei, die Sie z.B. in Excel oder StarCalc importieren können."},
  };
  int row = 1;
  for (const auto& choice : choices) {
    auto* button = new QPushButton(QString::fromUtf8(choice.caption), this);
    button->setObjectName(QStringLiteral("Command1_%1").arg(choice.format == Format::Html ? 1 : 0));
    auto* text = new QLabel(QString::fromUtf8(choice.text), this);
    text->setWordWrap(true);
    layout->addWidget(button, row, 0, Qt::AlignTop);
    layout->addWidget(text, row++, 1);
    connect(button, &QPushButton::clicked, this, [this, format = choice.format] { Export(format); });
  }
  layout->setColumnStretch(1, 1);
  setMinimumWidth(460);
}

QString ExportDialog::AskFileName(Format format) {
  const bool html = format == Format::Html;
  const QString title =
      html ? QStringLiteral("Als HTML Datei exportieren...") : QStringLiteral("Als Text exportieren...");
  const QString filter = html ? QStringLiteral("Text Datei (*.htm)") : QStringLiteral("Text Datei (*.txt)");
  for (;;) {
    const QString name = services_.prompter.AskSaveFileName(title, filter).trimmed();
    if (name.isEmpty()) {
      return {};
    }
    // The name is taken as it stands: no extension is added.
    const QFileInfo info(name);
    if (!DataDir(info.absolutePath()).FileExists(info.fileName()) ||
        services_.prompter.Ask(QStringLiteral("Die Datei existiert bereits. Wollen Sie sie überschreiben?"),
                               title, false) == Prompter::Answer::Yes) {
      return name;
    }
  }
}

void ExportDialog::Export(Format format) {
  if (selection_.rows.isEmpty()) {
    services_.prompter.Message(QStringLiteral("Die Liste enthält keine Einträge."),
                               Prompter::Icon::Information);
    reject();
    return;
  }
  const QString path = AskFileName(format);
  if (path.isEmpty()) {
    return;
  }
  const QDate today = services_.clock.Now().date();
  bool written = false;
  if (format == Format::Html) {
    std::optional<QStringList> charts = QStringList{};
    const QDate month =
        ListChartMonth(static_cast<int>(ListPeriodItems().indexOf(selection_.periodItem)), today);
    if (month.isValid() &&
        services_.prompter.Ask(
            QStringLiteral(
                "Wollen Sie das Monatsdiagramme eingebunden werden? Diese werden im selben Verzeichnis "
                "abgespeichert und in die HTML Datei eingebunden. Da sie im BMP Format erstellt "
                "werden, können sie nur vom Internet Explorer dargestellt werden."),
            windowTitle(), false) == Prompter::Answer::Yes) {
      charts = WriteExportCharts(services_.dir, path, month, selection_.filter, services_.state.Waehrung);
    }
    const QString title = BuildListTitle(services_.dir, selection_.periodItem, today);
    written =
        charts && WriteExportFile(path, ExportHtmlLines(selection_.rows, title, selection_.filter, *charts));
    if (written) {
      services_.prompter.Message(QStringLiteral("Die HTML Datei wurde erfolgreich erstellt."),
                                 Prompter::Icon::Information);
    }
  } else {
    written = WriteExportFile(path, ExportTextLines(selection_.rows));
    if (written) {
      services_.prompter.Message(
          QStringLiteral(
              "Die Text Datei wurde erfolgreich erstellt. Falls sie diese in Ihre "
              "Tabellenkalkulation importieren wollen, wählen Sie dort den Importfilter 'Text CSV' "
              "(oder ähnlich) und Gebeb Sie als Trennzeichen '|' ein. Wichtig: Wählen Sie beim "
              "importieren in StarOffice nicht einfach 'Text' als Importfilter aus sondern 'Text - txt "
              "- csv (Star Office Calc)'."),
          Prompter::Icon::Information);
    }
  }
  if (!written) {
    services_.prompter.Message(
        QStringLiteral(
            "Die Datei \"%1\" konnte nicht geschrieben werden. Bitte wählen Sie einen Ordner, in dem "
            "Sie schreiben dürfen.")
            .arg(path),
        Prompter::Icon::Warning);
  }
  accept();
}

}  // namespace minutor
