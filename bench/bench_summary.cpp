// Reads the JSON results of the benchmark programs and prints one table: each speed figure of
// bench/targets.txt against its target. Usage: bench_summary TARGETS RESULT.json...
// The figures are CPU times, which other work on a busy machine disturbs far less than the time
// on the clock; on a quiet machine the two agree.

#include <cstdio>
#include <fstream>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>
#include <string>

namespace {

/// Nanoseconds per unit of a benchmark's time unit.
double nanosecondsPer(const std::string& unit) {
  if (unit == "ms") return 1e6;
  if (unit == "us") return 1e3;
  if (unit == "s") return 1e9;
  return 1.0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::cerr << "usage: bench_summary TARGETS RESULT.json...\n";
    return 2;
  }
  // CPU time of each benchmark in nanoseconds (the mean when it was repeated).
  std::map<std::string, double> measured;
  for (int i = 2; i < argc; ++i) {
    std::ifstream in(argv[i]);
    const nlohmann::json results = nlohmann::json::parse(in, nullptr, false);
    if (results.is_discarded() || !results.contains("benchmarks")) continue;
    for (const auto& run : results["benchmarks"]) {
      if (run.value("run_type", "iteration") == "aggregate" &&
          run.value("aggregate_name", "") != "mean") {
        continue;
      }
      std::string name = run.value("run_name", run.value("name", ""));
      name = name.substr(0, name.find('/'));
      measured[name] = run.value("cpu_time", 0.0) * nanosecondsPer(run.value("time_unit", "ns"));
    }
  }
  auto timeOf = [&](const std::string& name) -> std::optional<double> {
    auto found = measured.find(name);
    if (found == measured.end()) return std::nullopt;
    return found->second;
  };

  std::ifstream targets(argv[1]);
  std::string line;
  std::printf("%-58s %14s %12s  %s\n", "figure", "measured", "target", "");
  while (std::getline(targets, line)) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream words(line);
    std::string kind, name, unit;
    double target = 0;
    words >> kind >> name >> target;
    if (kind == "time") words >> unit;
    std::string what;
    std::getline(words >> std::ws, what);
    std::optional<double> value;
    std::string shown, wanted;
    char buffer[64];
    if (kind == "ratio") {
      const std::size_t slash = name.find('/');
      std::optional<double> top = timeOf(name.substr(0, slash));
      std::optional<double> bottom = timeOf(name.substr(slash + 1));
      if (top && bottom && *bottom > 0) value = *top / *bottom;
      if (value) std::snprintf(buffer, sizeof buffer, "%.2fx", *value);
      std::snprintf(buffer + 32, 32, "< %gx", target);
    } else {
      std::optional<double> ns = timeOf(name);
      if (ns) value = *ns / nanosecondsPer(unit);
      if (value) std::snprintf(buffer, sizeof buffer, "%.3g %s", *value, unit.c_str());
      std::snprintf(buffer + 32, 32, "< %g %s", target, unit.c_str());
    }
    shown = value ? std::string(buffer) : std::string("not measured");
    wanted = buffer + 32;
    const bool ok = !value || *value < target;
    std::printf("%-58s %14s %12s  %s\n", what.c_str(), shown.c_str(), wanted.c_str(),
                value ? (ok ? "ok" : "MISSED") : "");
  }
  return 0;
}
