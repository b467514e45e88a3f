// Saving a day of 1,440 blocks against atomically writing the same bytes, in turns within one run, in the
// folder given. Prints the number of bytes and the two medians in nanoseconds.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "base/atomic_file.h"
#include "services/blocco.h"
#include "services/day_files.h"

namespace {

using namespace orvalle;
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
constexpr int kRounds = 100;

std::vector<services::Blocco> fullDay() {
  std::vector<services::Blocco> day;
  const services::Moment midnight = std::chrono::sys_days(std::chrono::year(2026) / 3 / 2);
  for (int minute = 0; minute < 1440; ++minute) {
    const auto begin = midnight + std::chrono::minutes(minute);
    day.push_back({"Navigatore", "Documento " + std::to_string(minute) + " – Quaderno di lavoro", begin,
                   begin + std::chrono::minutes(1)});
  }
  return day;
}

template <typename Work>
double nanoseconds(Work work) {
  const auto begin = Clock::now();
  work();
  return std::chrono::duration<double, std::nano>(Clock::now() - begin).count();
}

double median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + values.size() / 2, values.end());
  return values[values.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: diary_save FOLDER\n");
    return 2;
  }
  const services::DayFiles files(argv[1]);
  const auto day = fullDay();
  const auto bytes = services::encodeBlocchi(day).value();
  const auto peer = files.file("peer");
  constexpr auto kPrivate = fs::perms::owner_read | fs::perms::owner_write;
  bool good = !files.makeFolder();
  std::vector<double> ours;
  std::vector<double> floor;
  for (int round = 0; round < kRounds; ++round) {
    floor.push_back(nanoseconds([&] { good = !base::replaceFile(peer, bytes, kPrivate) && good; }));
    ours.push_back(nanoseconds([&] { good = !files.save("2026-03-02", day) && good; }));
  }
  if (!good) {
    std::fprintf(stderr, "diary_save: could not write to %s\n", argv[1]);
    return 1;
  }
  std::printf("%zu %.0f %.0f\n", bytes.size(), median(floor), median(ours));
  return 0;
}
