#include "support/RecordingPrompter.h"

namespace minutor::test {

void RecordingPrompter::Message(const QString& text, Icon icon, const QString&) {
  messages.append(text);
  icons.append(icon);
}

Prompter::Answer RecordingPrompter::Ask(const QString& text, const QString&, bool) {
  messages.append(text);
  icons.append(Icon::Question);
  if (whileAsking) {
    whileAsking();
  }
  return answers.isEmpty() ? Answer::Cancel : answers.takeFirst();
}

std::optional<QString> RecordingPrompter::AskPassword(const QString& text, const QString&) {
  messages.append(text);
  icons.append(Icon::Question);
  if (passwords.isEmpty()) {
    return std::nullopt;
  }
  return passwords.takeFirst();
}

std::optional<QString> RecordingPrompter::AskText(const QString& text, const QString&) {
  messages.append(text);
  icons.append(Icon::Question);
  if (texts.isEmpty()) {
    return std::nullopt;
  }
  return texts.takeFirst();
}

}  // namespace minutor::test
