// Signals and standard streams. The handler takes the same lock as everyone who touches an unfinished file,
// and a thread that holds the lock is not interrupted: so the list is whole when the handler walks it, and no
// file is made between its walk and the end.
#include "process.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstring>
#include <utility>

namespace qvn::tool {
namespace {

constexpr std::array<int, 3> kEndings{SIGINT, SIGTERM, SIGHUP};

std::atomic_flag locked;
std::atomic<bool> line_open = false;
Unfinished* first = nullptr;
thread_local sigset_t mask_before;

sigset_t endings() {
  sigset_t set;
  sigemptyset(&set);
  for (const int number : kEndings) {
    sigaddset(&set, number);
  }
  return set;
}

void lock() {
  while (locked.test_and_set(std::memory_order_acquire)) {
    // Held for the time of a few system calls.
  }
}

void write_error(const char* text, std::size_t length) {
  while (length > 0) {
    const ssize_t written = ::write(STDERR_FILENO, text, length);
    if (written <= 0) {
      return;
    }
    text += written;
    length -= static_cast<std::size_t>(written);
  }
}

void write_error(const char* text) { write_error(text, std::strlen(text)); }

}  // namespace

void remove_unfinished() {
  for (const Unfinished* file = first; file != nullptr; file = file->next_) {
    if (file->there_) {
      ::unlink(file->path_.c_str());
    }
  }
}

namespace {

/// The lock is never given back: what other threads were about to do does not happen.
void on_ending(int number) {
  lock();
  remove_unfinished();
  write_error(line_open ? "\nqvn: interrupted\n" : "qvn: interrupted\n");
  std::signal(number, SIG_DFL);
  const sigset_t set = endings();
  std::raise(number);
  pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
}

}  // namespace

void prepare_process() {
  for (int descriptor = 0; descriptor <= 2; ++descriptor) {
    if (::fcntl(descriptor, F_GETFD) == -1) {
      static_cast<void>(::open("/dev/null", descriptor == 0 ? O_WRONLY : O_RDONLY));
    }
  }
  std::signal(SIGPIPE, SIG_IGN);
  for (const int number : kEndings) {
    struct sigaction action {};
    if (sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_DFL) {
      action.sa_handler = on_ending;
      action.sa_mask = endings();
      sigaction(number, &action, nullptr);
    }
  }
}

Undisturbed::Undisturbed() {
  const sigset_t set = endings();
  sigset_t before;
  pthread_sigmask(SIG_BLOCK, &set, &before);
  lock();
  mask_before = before;
}

Undisturbed::~Undisturbed() {
  locked.clear(std::memory_order_release);
  pthread_sigmask(SIG_SETMASK, &mask_before, nullptr);
}

Unfinished::Unfinished(std::string path) : path_(std::move(path)) {
  const Undisturbed undisturbed;
  next_ = first;
  if (next_ != nullptr) {
    next_->before_ = this;
  }
  first = this;
}

Unfinished::~Unfinished() {
  const Undisturbed undisturbed;
  if (there_) {
    ::unlink(path_.c_str());
  }
  (before_ == nullptr ? first : before_->next_) = next_;
  if (next_ != nullptr) {
    next_->before_ = before_;
  }
}

void set_line_open(bool open) { line_open = open; }

namespace {

/// A line in the making, written in one piece where it is short, so that those of several threads do not mix.
class Line {
 public:
  void add(const char* text) {
    for (; *text != '\0'; ++text) {
      add(*text == '\n' ? ' ' : *text);
    }
  }
  void add(char letter) {
    if (used_ == text_.size()) {
      write();
    }
    text_.at(used_++) = letter;
  }
  void end() {
    add('\n');
    write();
  }
  void begin() {
    if (line_open.exchange(false)) {
      add('\n');
    }
    add("qvn: ");
  }

 private:
  void write() {
    write_error(text_.data(), used_);
    used_ = 0;
  }

  std::array<char, 1024> text_{};
  std::size_t used_ = 0;
};

}  // namespace

void say(const char* sentence) {
  Line line;
  line.begin();
  line.add(sentence);
  line.end();
}

void say(const char* subject, const char* sentence) {
  Line line;
  line.begin();
  line.add('\'');
  line.add(subject);
  line.add("': ");
  line.add(sentence);
  line.end();
}

}  // namespace qvn::tool
