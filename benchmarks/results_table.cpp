// Prints the short table of a benchmark run from its JSON output: median, min
// and max of every benchmark's time and counters, and the widget's share of
// a frame (widget frame over bare OGRE frame). Qt's JSON reader only, so the
// script needs nothing more than the build.
//   results_table results.json
#include <cmath>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QStringList>

namespace {

struct Spread {
  double median = NAN, min = NAN, max = NAN;
};

struct Result {
  QString name;
  QString unit;
  QString error;
  Spread time;
  Spread cpu;  // the main thread's CPU time: robust to a busy machine, blind to helper threads
  std::map<QString, Spread> counters;  // by counter name
};

const QSet<QString> kFields = {"name", "family_index", "per_family_instance_index", "run_name", "run_type",
                               "repetitions", "repetition_index", "threads", "iterations", "real_time", "cpu_time",
                               "time_unit", "aggregate_name", "aggregate_unit", "error_occurred", "error_message",
                               "label"};
const QSet<QString> kHidden = {"pixels"};  // what the name already says

// "Frame/widget/800x600/min_time:0.300/repeats:10/real_time" -> "Frame/widget/800x600".
QString shortName(const QString& runName) {
  QStringList kept;
  for (const QString& part : runName.split('/')) {
    if (!part.contains(':') && part != "real_time" && part != "manual_time") kept << part;
  }
  return kept.join('/');
}

void store(Spread& spread, const QString& statistic, double value) {
  if (statistic == "median") spread.median = value;
  else if (statistic == "min") spread.min = value;
  else if (statistic == "max") spread.max = value;
  else if (statistic.isEmpty()) spread.median = spread.min = spread.max = value;  // a single run
}

QString number(double v) {
  if (std::isnan(v)) return "-";
  const double a = std::fabs(v);
  return QString::number(v, 'f', a >= 1000 || a == std::floor(a) ? 0 : a >= 100 ? 1 : a >= 1 ? 2 : 3);
}

// Counter units follow their names; time per triangle is stored in seconds.
QString counterUnit(const QString& name, double& scale) {
  scale = 1;
  if (name == "time_per_triangle") {
    scale = 1e9;
    return "ns";
  }
  if (name.endsWith("_ms")) return "ms";
  if (name.endsWith("_KiB")) return "KiB";
  if (name.contains("bytes")) return "B";
  return "";
}

void printRow(const QString& label, const Spread& s, const QString& unit, double scale = 1, double cpu = NAN) {
  std::printf("%-40s %10s %10s %10s %5s %10s\n", label.toUtf8().constData(),
              number(s.median * scale).toUtf8().constData(), number(s.min * scale).toUtf8().constData(),
              number(s.max * scale).toUtf8().constData(), unit.toUtf8().constData(),
              std::isnan(cpu) ? "" : number(cpu).toUtf8().constData());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: results_table results.json\n");
    return 2;
  }
  QFile file(QString::fromLocal8Bit(argv[1]));
  if (!file.open(QIODevice::ReadOnly)) {
    std::fprintf(stderr, "results_table: cannot read %s\n", argv[1]);
    return 1;
  }
  QJsonParseError parseError;
  const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &parseError);
  if (!document.isObject()) {
    std::fprintf(stderr, "results_table: %s\n", parseError.errorString().toUtf8().constData());
    return 1;
  }

  std::vector<Result> results;
  for (const QJsonValue& value : document["benchmarks"].toArray()) {
    const QJsonObject entry = value.toObject();
    const QString name = shortName(entry["run_name"].toString());
    if (results.empty() || results.back().name != name) {
      results.emplace_back();
      results.back().name = name;
    }
    Result& result = results.back();
    if (entry["error_occurred"].toBool()) result.error = entry["error_message"].toString();
    const QString statistic = entry["run_type"].toString() == "aggregate" ? entry["aggregate_name"].toString() : "";
    if (!statistic.isEmpty() && statistic != "median" && statistic != "min" && statistic != "max") continue;
    result.unit = entry["time_unit"].toString();
    store(result.time, statistic, entry["real_time"].toDouble());
    store(result.cpu, statistic, entry["cpu_time"].toDouble());
    for (auto it = entry.begin(); it != entry.end(); ++it) {
      if (!kFields.contains(it.key()) && !kHidden.contains(it.key()) && it.value().isDouble())
        store(result.counters[it.key()], statistic, it.value().toDouble());
    }
  }

  const QJsonObject context = document["context"].toObject();
  std::printf("%s, %s, %d CPUs, %s, load average at start %s\n\n", context["date"].toString().toUtf8().constData(),
              context["cpu_model"].toString().toUtf8().constData(), context["num_cpus"].toInt(),
              context["gl_device"].toString().toUtf8().constData(),
              QString::number(context["load_avg"].toArray().at(0).toDouble(), 'f', 2).toUtf8().constData());
  std::printf("%-40s %10s %10s %10s %5s %10s\n", "Benchmark (wall-clock time)", "median", "min", "max", "unit",
              "cpu median");
  std::map<QString, double> frameMedians;
  for (const Result& result : results) {
    if (!result.error.isEmpty()) {
      std::printf("%-40s ERROR: %s\n", result.name.toUtf8().constData(), result.error.toUtf8().constData());
      continue;
    }
    printRow(result.name, result.time, result.unit, 1, result.cpu.median);
    for (const auto& [counter, spread] : result.counters) {
      double scale = 1;
      const QString unit = counterUnit(counter, scale);
      printRow("  " + counter, spread, unit, scale);
    }
    if (result.name.startsWith("Frame/")) frameMedians[result.name] = result.time.median;
  }

  std::printf("\nWidget share of a frame (widget median / bare OGRE median):\n");
  for (const Result& result : results) {  // in the order of the run
    if (!result.name.startsWith("Frame/widget/") || !result.error.isEmpty()) continue;
    const QString size = result.name.mid(QString("Frame/widget/").size());
    const auto bare = frameMedians.find("Frame/bare/" + size);
    if (bare == frameMedians.end()) continue;
    std::printf("  %-12s %.2f\n", size.toUtf8().constData(), result.time.median / bare->second);
  }
  return 0;
}
