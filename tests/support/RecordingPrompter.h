#pragma once

#include "frame/Prompter.h"

#include <QList>
#include <QStringList>

#include <functional>

namespace minutor::test {

// Remembers every message and answers questions from a prepared list.
class RecordingPrompter final : public Prompter {
 public:
  void Message(const QString& text, Icon icon, const QString& title = {}) override;
  Answer Ask(const QString& text, const QString& title, bool withCancel) override;
  std::optional<QString> AskPassword(const QString& text, const QString& title) override;
  std::optional<QString> AskText(const QString& text, const QString& title) override;

  QStringList messages;
  QList<Icon> icons;
  QList<Answer> answers;  // taken from the front; Cancel when empty
  QStringList passwords;  // taken from the front; cancelled when empty
  // What happens while a question is open, before it is answered.
  std::function<void()> whileAsking;
  QStringList texts;      // answers of input boxes, the same way
};

}  // namespace minutor::test
