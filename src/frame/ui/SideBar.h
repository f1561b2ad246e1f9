#pragma once

#include <QWidget>

#include <array>

class QStackedWidget;
class QToolButton;

namespace minutor {

// The navigation on the left of the main window: ten entries on three group
// pages, and the group headers that switch between the pages.
class SideBar : public QWidget {
  Q_OBJECT

 public:
  static constexpr int kEntries = 10;
  static constexpr int kPages = 3;

  explicit SideBar(QWidget* parent = nullptr);

  // The label of an entry; "[Gesperrt]" for an entry barred to the user.
  QString Label(int index) const;
  void SetLabel(int index, const QString& label);

  // An entry whose panel isn't there is shown but can't be clicked.
  void SetEntryEnabled(int index, bool enabled);
  bool IsEntryEnabled(int index) const;

  // Disables or enables every entry at once, as during the start.
  void SetAllEnabled(bool enabled);

  void ShowPage(int page);
  int CurrentPage() const;

  // The group page an entry stands on.
  static int PageOf(int index);

  QToolButton* EntryButton(int index) const { return entries_[static_cast<std::size_t>(index)]; }
  // The header of a group on the page shown now.
  QToolButton* HeaderButton(int group) const;

 signals:
  void entryClicked(int index);

 private:
  QStackedWidget* pages_ = nullptr;
  std::array<QToolButton*, kEntries> entries_{};
  std::array<bool, kEntries> wanted_{};
  QList<QToolButton*> headers_;
  bool allEnabled_ = true;

  void ApplyEnabled(int index);
};

}  // namespace minutor
