#include "SEquationTables.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTextStream>

#include <algorithm>
#include <cmath>

namespace {
bool ParseRow(const QString& line, std::vector<double>& row) {
  static const QRegularExpression separators(QStringLiteral("[\\s,]+"));
  row.clear();
  const QStringList fields = line.split(separators, Qt::SkipEmptyParts);
  for (const QString& field : fields) {
    bool ok = false;
    const double value = field.toDouble(&ok);
    if (!ok || !std::isfinite(value)) return false;
    row.push_back(value);
  }
  return !row.empty();
}

bool Rising(const std::vector<double>& keys) {
  for (size_t i = 1; i < keys.size(); ++i)
    if (!(keys[i] > keys[i - 1])) return false;
  return !keys.empty();
}
}  // namespace

const SEquationTables::STable& SEquationTables::Load(const SString& name, const SString& directory) {
  QString path = name.qstring();
  if (QFileInfo(path).isRelative() && !directory.isEmpty()) path = QDir(directory.qstring()).absoluteFilePath(path);
  auto found = itsTables.find(path);
  if (found != itsTables.end()) return *found;
  STable& table = itsTables[path];
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) return table;
  QTextStream in(&file);
  std::vector<std::vector<double>> rows;
  std::vector<double> row;
  while (!in.atEnd()) {
    const QString line = in.readLine().trimmed();
    if (line.isEmpty() || line.startsWith('!') || line.startsWith('#')) continue;
    if (!ParseRow(line, row)) return table;
    rows.push_back(row);
  }
  // The first row holds column keys when it is one shorter than the next.
  size_t start = 0;
  if (rows.size() >= 2 && rows[1].size() == rows[0].size() + 1) {
    table.columns = rows[0];
    start = 1;
  }
  const size_t wanted = table.columns.empty() ? 2 : table.columns.size() + 1;
  for (size_t i = start; i < rows.size(); ++i) {
    if (rows[i].size() != wanted) return table;
    table.keys.push_back(rows[i][0]);
    table.values.emplace_back(rows[i].begin() + 1, rows[i].end());
  }
  table.valid = Rising(table.keys) && (table.columns.empty() || Rising(table.columns));
  return table;
}

bool SEquationTables::Interpolate(const std::vector<double>& keys, const std::vector<double>& values, char mode,
                                  double x, double& value) {
  const size_t n = keys.size();
  if (n == 0 || !std::isfinite(x) || x < keys.front() || x > keys.back()) return false;
  if (n == 1) {
    value = values[0];
    return true;
  }
  size_t i = static_cast<size_t>(std::upper_bound(keys.begin(), keys.end(), x) - keys.begin());
  i = std::min(std::max<size_t>(i, 1), n - 1);
  const double x0 = keys[i - 1], x1 = keys[i];
  const double t = (x - x0) / (x1 - x0);
  if (mode != 'c' || n < 3) {
    value = values[i - 1] + t * (values[i] - values[i - 1]);
    return true;
  }
  // Cubic Hermite with slopes from the neighbours (one-sided at the ends).
  const auto slope = [&](size_t k) {
    if (k == 0) return (values[1] - values[0]) / (keys[1] - keys[0]);
    if (k == n - 1) return (values[k] - values[k - 1]) / (keys[k] - keys[k - 1]);
    return (values[k + 1] - values[k - 1]) / (keys[k + 1] - keys[k - 1]);
  };
  const double h = x1 - x0, t2 = t * t, t3 = t2 * t;
  value = (2 * t3 - 3 * t2 + 1) * values[i - 1] + (t3 - 2 * t2 + t) * h * slope(i - 1) + (-2 * t3 + 3 * t2) * values[i] +
          (t3 - t2) * h * slope(i);
  return true;
}

bool SEquationTables::Lookup1(const SString& name, const SString& directory, char mode, double x, double& value) {
  const STable& table = Load(name, directory);
  if (!table.valid || !table.columns.empty()) return false;
  std::vector<double> column;
  column.reserve(table.values.size());
  for (const std::vector<double>& row : table.values) column.push_back(row[0]);
  return Interpolate(table.keys, column, mode, x, value);
}

bool SEquationTables::Lookup2(const SString& name, const SString& directory, double x, double y, double& value) {
  const STable& table = Load(name, directory);
  if (!table.valid || table.columns.empty()) return false;
  // Along each row at y, then down the rows at x.
  std::vector<double> atY;
  atY.reserve(table.values.size());
  for (const std::vector<double>& row : table.values) {
    double v = 0.0;
    if (!Interpolate(table.columns, row, 'l', y, v)) return false;
    atY.push_back(v);
  }
  return Interpolate(table.keys, atY, 'l', x, value);
}
