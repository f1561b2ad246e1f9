#pragma once

#include <QString>

#include <optional>

namespace minutor {

// Message boxes and questions go through here, so that logic that has to tell
// the user something can be tested by what it asked for.
class Prompter {
 public:
  enum class Icon { None, Information, Warning, Critical, Question };
  enum class Answer { Ok, Yes, No, Cancel };

  virtual ~Prompter() = default;
  virtual void Message(const QString& text, Icon icon, const QString& title = {}) = 0;
  // A question with Yes, No and Cancel (or only Yes and No when withCancel is false).
  virtual Answer Ask(const QString& text, const QString& title, bool withCancel) = 0;
  // A secret asked for in an input box; nothing when the user cancels or
  // when there is nobody to ask.
  virtual std::optional<QString> AskPassword(const QString& /*text*/, const QString& /*title*/) {
    return std::nullopt;
  }
  // A line of text asked for in an input box; nothing when cancelled.
  virtual std::optional<QString> AskText(const QString& /*text*/, const QString& /*title*/) {
    return std::nullopt;
  }
};

}  // namespace minutor
