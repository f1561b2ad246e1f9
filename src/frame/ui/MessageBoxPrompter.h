#pragma once

#include "frame/Prompter.h"

class QWidget;

namespace minutor {

// Asks with the desktop's message boxes.
class MessageBoxPrompter final : public Prompter {
 public:
  explicit MessageBoxPrompter(QWidget* parent = nullptr) : parent_(parent) {}
  void setParent(QWidget* parent) { parent_ = parent; }

  void Message(const QString& text, Icon icon, const QString& title = {}) override;
  Answer Ask(const QString& text, const QString& title, bool withCancel) override;
  std::optional<QString> AskPassword(const QString& text, const QString& title) override;
  QString AskSaveFileName(const QString& title, const QString& filter) override;

 private:
  QWidget* parent_;
};

}  // namespace minutor
