// Tables as text, for rows of many cells: one line each, bars between the cells.
#pragma once

#include <sstream>
#include <string>
#include <vector>

using Cells = std::vector<std::string>;

/// The cells between bars, without the blanks around them.
inline Cells cellsOf(const std::string& row) {
  Cells cells;
  std::istringstream in(row);
  for (std::string cell; std::getline(in, cell, '|');) {
    cell.erase(0, cell.find_first_not_of(' '));
    cell.erase(cell.find_last_not_of(' ') + 1);
    cells.push_back(cell);
  }
  return cells;
}
/// The cells of each line that is not empty.
inline std::vector<Cells> rowsOf(const std::string& table) {
  std::vector<Cells> rows;
  std::istringstream in(table);
  for (std::string line; std::getline(in, line);)
    if (!line.empty()) rows.push_back(cellsOf(line));
  return rows;
}
