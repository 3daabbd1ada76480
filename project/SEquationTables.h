#ifndef SEQUATIONTABLES_H
#define SEQUATIONTABLES_H

#include "SString.h"

#include <QHash>
#include <vector>

// The data files that TABLE1, TABLE1C and TABLE2 of an equation name, read once each.
//
// A table file is text: blank lines and lines starting with "!" or "#" are skipped, numbers
// are separated by blanks, tabs or commas. A one-dimensional table has rows "x y" with x
// rising. A two-dimensional table starts with a row of the column keys; each further row is
// a row key and one value per column (so the key row is one number shorter), row keys
// rising. A key outside the table's range is no look-up: extrapolating a measured table
// would give numbers nobody measured.
class SEquationTables {
public:
  // Names relative to `directory` are taken from there. Mode 'l' linear, 'c' cubic.
  bool Lookup1(const SString& name, const SString& directory, char mode, double x, double& value);
  bool Lookup2(const SString& name, const SString& directory, double x, double y, double& value);

private:
  struct STable {
    bool valid = false;
    std::vector<double> columns;              // two-dimensional: the column keys
    std::vector<double> keys;                 // the row keys
    std::vector<std::vector<double>> values;  // per row: one value (1D) or one per column
  };
  const STable& Load(const SString& name, const SString& directory);
  static bool Interpolate(const std::vector<double>& keys, const std::vector<double>& values, char mode, double x,
                          double& value);

  QHash<QString, STable> itsTables;
};

#endif
