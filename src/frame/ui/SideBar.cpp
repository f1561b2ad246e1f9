#include "frame/ui/SideBar.h"

#include "frame/ui/FittingText.h"

#include <QIcon>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace minutor {

namespace {

struct Entry {
  const char* label;
  int page;
  const char* icon;  // one of the program's own pictures, drawn alike
};

constexpr std::array<Entry, SideBar::kEntries> kEntryTable = {{
    {"Übersicht", 0, "overview"},
    {"Verbindungsliste", 0, "list"},
    {"Tarife", 0, "tariffs"},
    {"DFÜ", 2, "dialup"},
    {"Budget", 2, "budget"},
    {"Benutzer", 2, "users"},
    {"Überwachung", 2, "monitoring"},
    {"Sonstiges", 2, "options"},
    {"Monatsdiagramm", 1, "chart"},
    {"Analyse", 1, "analysis"},
}};

// The headers of the three groups. Each page shows all three headers, the
// one of its own group on top, so the user can switch from every page.
constexpr std::array<const char*, SideBar::kPages> kGroupNames = {"Allgemein", "Auswertung", "Einstellungen"};

}  // namespace

SideBar::SideBar(QWidget* parent) : QWidget(parent) {
  auto* outer = new QVBoxLayout(this);
  outer->setContentsMargins(0, 0, 0, 0);
  pages_ = new QStackedWidget(this);
  outer->addWidget(pages_);

  auto addHeader = [this](QVBoxLayout* layout, int group) {
    auto* header = new QToolButton(layout->parentWidget());
    header->setText(QString::fromUtf8(kGroupNames[static_cast<std::size_t>(group)]));
    header->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    header->setProperty("group", group);
    connect(header, &QToolButton::clicked, this, [this, group] { ShowPage(group); });
    layout->addWidget(header);
    headers_.append(header);
  };

  std::array<QVBoxLayout*, kPages> pageLayouts{};
  for (int page = 0; page < kPages; ++page) {
    auto* widget = new QWidget(pages_);
    auto* layout = new QVBoxLayout(widget);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->setSpacing(2);
    // Headers of the groups above and including this one, then the entries,
    // then the headers of the groups below.
    for (int group = 0; group <= page; ++group) {
      addHeader(layout, group);
    }
    pageLayouts[static_cast<std::size_t>(page)] = layout;
    pages_->addWidget(widget);
  }

  for (int index = 0; index < kEntries; ++index) {
    const Entry& entry = kEntryTable[static_cast<std::size_t>(index)];
    QVBoxLayout* layout = pageLayouts[static_cast<std::size_t>(entry.page)];
    auto* button = new FittingButton(layout->parentWidget());
    button->setObjectName(QStringLiteral("Label1_%1").arg(index));
    button->setText(QString::fromUtf8(entry.label));
    button->setIcon(QIcon(QStringLiteral(":/icons/%1.svg").arg(QLatin1String(entry.icon))));
    button->setIconSize(QSize(32, 32));
    button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    button->setAutoRaise(true);
    button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(button, &QToolButton::clicked, this, [this, index] { emit entryClicked(index); });
    layout->addWidget(button);
    entries_[static_cast<std::size_t>(index)] = button;
    wanted_[static_cast<std::size_t>(index)] = true;
  }

  for (int page = 0; page < kPages; ++page) {
    QVBoxLayout* layout = pageLayouts[static_cast<std::size_t>(page)];
    layout->addStretch(1);
    for (int group = page + 1; group < kPages; ++group) {
      addHeader(layout, group);
    }
  }
}

QString SideBar::Label(int index) const { return EntryButton(index)->text(); }

void SideBar::SetLabel(int index, const QString& label) {
  // A long label at a large font is set a little smaller rather than cut.
  static_cast<FittingButton*>(EntryButton(index))->SetText(label);
}

void SideBar::SetEntryEnabled(int index, bool enabled) {
  wanted_[static_cast<std::size_t>(index)] = enabled;
  ApplyEnabled(index);
}

bool SideBar::IsEntryEnabled(int index) const { return EntryButton(index)->isEnabled(); }

void SideBar::SetAllEnabled(bool enabled) {
  allEnabled_ = enabled;
  for (int index = 0; index < kEntries; ++index) {
    ApplyEnabled(index);
  }
}

void SideBar::ApplyEnabled(int index) {
  EntryButton(index)->setEnabled(allEnabled_ && wanted_[static_cast<std::size_t>(index)]);
}

void SideBar::ShowPage(int page) { pages_->setCurrentIndex(page); }

int SideBar::CurrentPage() const { return pages_->currentIndex(); }

int SideBar::PageOf(int index) { return kEntryTable[static_cast<std::size_t>(index)].page; }

QToolButton* SideBar::HeaderButton(int group) const {
  for (QToolButton* button : headers_) {
    if (button->property("group").toInt() == group && button->parentWidget() == pages_->currentWidget()) {
      return button;
    }
  }
  return nullptr;
}

}  // namespace minutor
