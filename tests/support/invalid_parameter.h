/// The report of an invalid parameter, seen from the program that hosts the library: how it ends a process,
/// and a handler that counts the reports and returns.
#pragma once

namespace support {

/// As long as one lives, reports of this process come to it, and it returns from them.
class CountedReports {
 public:
  CountedReports();
  CountedReports(const CountedReports&) = delete;
  CountedReports& operator=(const CountedReports&) = delete;
  ~CountedReports();

  /// Reports since its beginning.
  int count() const;

 private:
  void (*before_)(int);
};

/// For EXPECT_EXIT: the process was ended by a report that nobody handled.
struct EndedByReport {
  bool operator()(int exit_status) const;
};

}  // namespace support
