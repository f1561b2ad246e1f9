#pragma once

#include <QDialog>
#include <QString>

class QLabel;
class QPushButton;

namespace minutor {

class RemoteAccess;
struct AppState;
struct RasDialParams;
struct Services;

// "Status": the small box that follows a dial. It shows the text of each
// state the dial passes, with the state's number behind it, and goes away by
// itself once the line is up. A failed dial leaves its last text standing
// until the user cancels; "A&bbrechen" hangs the dial up and closes the box.
class StatusDialog : public QDialog {
  Q_OBJECT

 public:
  StatusDialog(RemoteAccess& remote, AppState& state, QWidget* parent = nullptr);

  // Dials the entry with what the system keeps for it and follows that dial.
  // The handle is "" when nothing was dialled; the box still waits to be
  // cancelled then.
  QString Start(const QString& entry);
  // Dials with the data given.
  QString Start(const QString& entry, const RasDialParams& params);
  const QString& Handle() const { return handle_; }

  // The whole dial from a panel or the tray menu: the dial is marked as the
  // program's own, then dialled, and the box is shown modally until the line
  // is up or the user cancels.
  // The dial-in data come from PrepareDialParams; when that refuses, nothing
  // is dialled and the box waits to be cancelled.
  static void DialWithProgress(RemoteAccess& remote, Services& services, const QString& entry,
                               QWidget* parent);

 private:
  void OnProgress(const QString& handle, quint32 rasState);
  void OnCancel();

  RemoteAccess& remote_;
  AppState& state_;
  QString handle_;
  // While DialEntry runs the handle isn't known yet; whatever the backend
  // reports meanwhile belongs to this dial.
  bool starting_ = false;
  QLabel* Label1_ = nullptr;
  QPushButton* cmdAbbrechen_ = nullptr;
};

}  // namespace minutor
