#include "app/SignalQuit.h"

#include <QSocketNotifier>

#include <csignal>

#include <sys/socket.h>
#include <unistd.h>

namespace minutor {

namespace {

int g_pipe[2] = {-1, -1};

void OnSignal(int) {
  const char byte = 1;
  [[maybe_unused]] const ssize_t ignored = ::write(g_pipe[0], &byte, 1);
}

}  // namespace

SignalQuit::SignalQuit(QObject* parent) : QObject(parent) {
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, g_pipe) != 0) {
    return;
  }
  notifier_ = new QSocketNotifier(g_pipe[1], QSocketNotifier::Read, this);
  connect(notifier_, &QSocketNotifier::activated, this, [this] {
    char byte = 0;
    [[maybe_unused]] const ssize_t ignored = ::read(g_pipe[1], &byte, 1);
    emit quitRequested();
  });
  struct sigaction action {};
  action.sa_handler = OnSignal;
  sigemptyset(&action.sa_mask);
  action.sa_flags = SA_RESTART;
  ::sigaction(SIGTERM, &action, nullptr);
  ::sigaction(SIGINT, &action, nullptr);
}

SignalQuit::~SignalQuit() {
  ::signal(SIGTERM, SIG_DFL);
  ::signal(SIGINT, SIG_DFL);
}

}  // namespace minutor
