#include "process_cpu.h"

#include <sys/resource.h>

namespace bench {
namespace {

double seconds(const rusage& usage) {
  const auto total = [](const timeval& t) { return static_cast<double>(t.tv_sec) + t.tv_usec * 1e-6; };
  return total(usage.ru_utime) + total(usage.ru_stime);
}

double cpuSeconds(int who) {
  rusage usage{};
  return getrusage(who, &usage) == 0 ? seconds(usage) : 0.0;
}

}  // namespace

double processCpuSeconds() { return cpuSeconds(RUSAGE_SELF); }
double threadCpuSeconds() { return cpuSeconds(RUSAGE_THREAD); }

}  // namespace bench
