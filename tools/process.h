// What the tool asks of the system it runs on: standard streams that are open, an end by a signal that leaves
// nothing behind, and a sentence on standard error that needs no memory.
#pragma once

#include <string>

namespace qvn::tool {

/// Gives closed standard streams a descriptor on which every transfer fails, so that no file that is opened
/// later is taken for one; makes a closed pipe an error of writing; and has SIGINT, SIGTERM and SIGHUP,
/// unless they are ignored, remove what is unfinished and say so before they end the process.
void prepare_process();

/// While one lives no signal ends the process and no other thread holds one. Keep it short; it does not nest.
class Undisturbed {
 public:
  Undisturbed();
  Undisturbed(const Undisturbed&) = delete;
  Undisturbed& operator=(const Undisturbed&) = delete;
  ~Undisturbed();
};

/// The name of a file that must outlive neither its object nor the process. Make the file and say made(), or
/// move it and say gone(), while an Undisturbed lives.
class Unfinished {
 public:
  explicit Unfinished(std::string path);
  Unfinished(const Unfinished&) = delete;
  Unfinished& operator=(const Unfinished&) = delete;
  ~Unfinished();

  const std::string& path() const { return path_; }
  void made() { there_ = true; }
  void gone() { there_ = false; }
  bool there() const { return there_; }

 private:
  friend void remove_unfinished();

  const std::string path_;
  bool there_ = false;
  Unfinished* next_ = nullptr;
  Unfinished* before_ = nullptr;
};

/// Whether the last line on standard error has no end yet, as that of a progress bar.
void set_line_open(bool open);

/// "qvn: SENTENCE" and a line end on standard error. Line ends in the sentence become spaces. Any thread.
void say(const char* sentence);
inline void say(const std::string& sentence) { say(sentence.c_str()); }
/// "qvn: 'SUBJECT': SENTENCE".
void say(const char* subject, const char* sentence);

}  // namespace qvn::tool
