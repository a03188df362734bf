#pragma once
// Runs the real viewer executable and collects what it says.

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

namespace viewer_testing {

struct ViewerRun {
  bool finished = false;  // false: it did not exit in time, or crashed
  int exitCode = -1;
  QString output;  // stdout and stderr, merged
};

// The test process's environment (its own scratch settings), with
// XDG_CONFIG_HOME replaced when configHome is given.
// The variables named in `removed` are left out (e.g. DISPLAY).
inline ViewerRun runViewer(const QStringList& arguments, const QString& configHome = QString(),
                           int timeoutMs = 120000, const QStringList& removed = QStringList()) {
  QProcess process;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  if (!configHome.isEmpty()) environment.insert("XDG_CONFIG_HOME", configHome);
  for (const QString& name : removed) environment.remove(name);
  process.setProcessEnvironment(environment);
  process.setProcessChannelMode(QProcess::MergedChannels);
  process.start(VIEWER_EXECUTABLE, arguments);
  ViewerRun run;
  if (!process.waitForStarted(10000)) return run;
  run.finished = process.waitForFinished(timeoutMs) && process.exitStatus() == QProcess::NormalExit;
  if (!run.finished) process.kill();
  process.waitForFinished(5000);
  run.exitCode = process.exitCode();
  run.output = QString::fromLocal8Bit(process.readAll());
  return run;
}

}  // namespace viewer_testing
