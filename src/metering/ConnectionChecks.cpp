#include "metering/ConnectionChecks.h"

#include "frame/AppState.h"
#include "frame/Prompter.h"
#include "frame/Services.h"
#include "frame/StartUp.h"

namespace minutor {

QString TarifCheckMessage(const QString& aktuellerTarif, const QString& activeUser) {
  if (aktuellerTarif.size() < 4) {
    return QStringLiteral(
        "Kein Tarif ausgewählt! Wählen Sie zuerst einen Tarif aus, bevor Sie die Verbindung starten.");
  }
  if (activeUser.isEmpty()) {
    return QStringLiteral(
        "Kein Benutzer ausgewählt! Wählen Sie zuerst einen Benutzer aus, bevor Sie die Verbindung starten.");
  }
  return {};
}

bool TarifCheck(Services& services) {
  const QString refusal = TarifCheckMessage(services.state.AktuellerTarif, services.state.ActiveUser);
  if (refusal.isEmpty()) {
    return true;
  }
  services.prompter.Message(refusal, Prompter::Icon::None);
  services.state.MonitoringOn = false;
  SaveMonitoring(services.dir, false);
  return false;
}

bool ConfirmManualStop(Services& services) {
  if (services.state.DetectionSource > 0 && services.state.MonitoringOn) {
    const auto answer = services.prompter.Ask(
        QStringLiteral(
            "Die automatiche Erkennung von Verbindungen (Überwachung) muß augeschaltet werden um die "
            "Aufzeichnung manuell zu stoppen. Soll diese abgeschaltet und die Aufzeichnung gestoppt "
            "werden?"),
        QStringLiteral("Frage"), false);
    if (answer != Prompter::Answer::Yes) {
      return false;
    }
    services.state.MonitoringOn = false;
    SaveMonitoring(services.dir, false);
  }
  return true;
}

}  // namespace minutor
