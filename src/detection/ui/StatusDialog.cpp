#include "detection/ui/StatusDialog.h"

#include "detection/DialUpFiles.h"
#include "frame/Services.h"

#include "detection/RasStates.h"
#include "detection/RemoteAccess.h"
#include "frame/AppState.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace minutor {

StatusDialog::StatusDialog(RemoteAccess& remote, AppState& state, QWidget* parent)
    : QDialog(parent), remote_(remote), state_(state) {
  setObjectName(QStringLiteral("Status"));
  setWindowTitle(QStringLiteral("Status"));
  setModal(true);

  Label1_ = new QLabel(QStringLiteral("Wähle..."), this);
  Label1_->setObjectName(QStringLiteral("Label1"));
  Label1_->setMinimumWidth(280);
  cmdAbbrechen_ = new QPushButton(QStringLiteral("A&bbrechen"), this);
  cmdAbbrechen_->setObjectName(QStringLiteral("cmdAbbrechen"));

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(Label1_);
  layout->addWidget(cmdAbbrechen_, 0, Qt::AlignHCenter);

  connect(&remote_, &RemoteAccess::DialProgress, this, &StatusDialog::OnProgress);
  connect(cmdAbbrechen_, &QPushButton::clicked, this, &StatusDialog::OnCancel);
}

QString StatusDialog::Start(const QString& entry) {
  RasDialParams params = remote_.GetDialParams(entry).value_or(RasDialParams{});
  if (params.Eintrag.isEmpty()) {
    params.Eintrag = entry;
  }
  return Start(entry, params);
}

QString StatusDialog::Start(const QString& entry, const RasDialParams& params) {
  starting_ = true;
  handle_ = remote_.DialEntry(entry, params);
  starting_ = false;
  return handle_;
}

void StatusDialog::DialWithProgress(RemoteAccess& remote, Services& services, const QString& entry,
                                    QWidget* parent) {
  services.state.DialedByProgram = true;
  const std::optional<RasDialParams> params =
      PrepareDialParams(services.dir, services.prompter, remote, entry);
  StatusDialog box(remote, services.state, parent);
  // Without dial-in data nothing is dialled, but the box still comes and
  // waits to be cancelled, as after a dial the system refused.
  if (params) {
    box.Start(entry, *params);
  }
  // The line may be up before the box is shown.
  if (box.result() != QDialog::Accepted) {
    box.exec();
  }
}

void StatusDialog::OnProgress(const QString& handle, quint32 rasState) {
  if (!starting_ && (handle_.isEmpty() || handle != handle_)) {
    return;
  }
  if (rasState == RasState::Connected) {
    accept();
    return;
  }
  Label1_->setText(RasStateCaption(rasState));
}

void StatusDialog::OnCancel() {
  state_.DialedByProgram = false;
  if (!handle_.isEmpty()) {
    remote_.HangUp(handle_);
  }
  reject();
}

}  // namespace minutor
