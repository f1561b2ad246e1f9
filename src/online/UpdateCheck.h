#pragma once

#include "online/UpdateIndex.h"

#include <QObject>

namespace minutor {

class DataDir;
class Fetcher;
class Prompter;

// CheckForUpdates: asks the servers of "Servers.dat" in order for their
// index until one offers entries. A server that doesn't answer, or answers
// with something that isn't an index, is passed by without a word.
class UpdateCheck : public QObject {
  Q_OBJECT

 public:
  UpdateCheck(const DataDir& dir, Prompter& prompter, Fetcher& fetcher, QObject* parent = nullptr);

  // Starts the check; `finished` follows. Without "Servers.dat" the user is
  // told so and `finished` comes at once.
  void Start();
  // The same with these servers in place of those of "Servers.dat".
  void StartWith(const QStringList& servers);

  const QList<UpdateEntry>& Entries() const { return entries_; }
  int LetzteSerie() const { return letzteSerie_; }
  // An index named a program revision newer than "Revision.dat".
  bool NewerRevision() const { return newerRevision_; }

 signals:
  void finished();

 private:
  void AskNext();

  const DataDir& dir_;
  Prompter& prompter_;
  Fetcher& fetcher_;
  QStringList servers_;
  QList<UpdateEntry> entries_;
  int letzteSerie_ = 0;
  bool newerRevision_ = false;
};

}  // namespace minutor
