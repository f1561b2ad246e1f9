#include "frame/ui/MessageBoxPrompter.h"

#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>

namespace minutor {

namespace {

QMessageBox::Icon BoxIcon(Prompter::Icon icon) {
  switch (icon) {
    case Prompter::Icon::Information:
      return QMessageBox::Information;
    case Prompter::Icon::Warning:
      return QMessageBox::Warning;
    case Prompter::Icon::Critical:
      return QMessageBox::Critical;
    case Prompter::Icon::Question:
      return QMessageBox::Question;
    case Prompter::Icon::None:
      break;
  }
  return QMessageBox::NoIcon;
}

QString TitleOr(const QString& title) { return title.isEmpty() ? QApplication::applicationName() : title; }

}  // namespace

void MessageBoxPrompter::Message(const QString& text, Icon icon, const QString& title) {
  QMessageBox box(BoxIcon(icon), TitleOr(title), text, QMessageBox::Ok, parent_);
  box.exec();
}

Prompter::Answer MessageBoxPrompter::Ask(const QString& text, const QString& title, bool withCancel) {
  QMessageBox::StandardButtons buttons = QMessageBox::Yes | QMessageBox::No;
  if (withCancel) {
    buttons |= QMessageBox::Cancel;
  }
  QMessageBox box(QMessageBox::Question, TitleOr(title), text, buttons, parent_);
  switch (box.exec()) {
    case QMessageBox::Yes:
      return Answer::Yes;
    case QMessageBox::No:
      return Answer::No;
    default:
      return Answer::Cancel;
  }
}

std::optional<QString> MessageBoxPrompter::AskPassword(const QString& text, const QString& title) {
  bool ok = false;
  const QString answer = QInputDialog::getText(parent_, TitleOr(title), text, QLineEdit::Password, {}, &ok);
  if (!ok) {
    return std::nullopt;
  }
  return answer;
}

QString MessageBoxPrompter::AskSaveFileName(const QString& title, const QString& filter) {
  return QFileDialog::getSaveFileName(parent_, title, QString(), filter, nullptr,
                                      QFileDialog::DontConfirmOverwrite);
}

}  // namespace minutor
