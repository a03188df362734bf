#pragma once
// CPU time of the whole process (every thread: the GUI thread and Mesa's
// rasterizer threads alike) and of the calling thread alone, from getrusage.

namespace bench {

double processCpuSeconds();
double threadCpuSeconds();

// Process CPU over a stretch of code: started at construction.
class ProcessCpuClock {
 public:
  ProcessCpuClock() : m_process(processCpuSeconds()), m_thread(threadCpuSeconds()) {}
  double processSeconds() const { return processCpuSeconds() - m_process; }
  double threadSeconds() const { return threadCpuSeconds() - m_thread; }

 private:
  double m_process;
  double m_thread;
};

}  // namespace bench
