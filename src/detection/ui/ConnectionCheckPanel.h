#pragma once

#include <QWidget>

#include <array>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;

namespace minutor {

class BusServices;
class TapiLine;
struct ConCheckBoxes;
struct Services;

// "Überwachung": the detection methods, the interval of the monitoring
// loop and the addresses the IP method ignores. Every change is saved and
// applied at once; the ignore list takes effect at the next start.
class ConnectionCheckPanel : public QWidget {
  Q_OBJECT

 public:
  // Loads itself from "Config/ConCheck.cfg" and "Config/IgnoredIPs.cfg".
  explicit ConnectionCheckPanel(Services& services, QWidget* parent = nullptr);

  // What the methods need of the system. The frame hands both in before it
  // shows the panel; without a bus nothing is checked, without a line the
  // TAPI box changes only the setting.
  void SetPlatform(const BusServices* bus, TapiLine* line);

 signals:
  // The monitoring loop's timer is to run at this interval from now on.
  void intervalChanged(int milliseconds);

 private:
  void BuildControls();
  void LoadSettings();
  ConCheckBoxes Boxes() const;
  void ShowBoxes(const ConCheckBoxes& boxes);
  void SaveSettings();
  void OnMethodClicked(int index);

  Services& services_;
  const BusServices* bus_ = nullptr;
  TapiLine* line_ = nullptr;
  // Set while the controls fill from the files, so that filling saves nothing.
  bool loading_ = false;

  std::array<QCheckBox*, 4> Check1_{};
  QComboBox* comInterval_ = nullptr;
  QLineEdit* IgnoredIPs_ = nullptr;
  QPushButton* Command1_ = nullptr;
};

}  // namespace minutor
