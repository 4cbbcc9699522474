// Rows of cells printed as aligned text or as CSV.
#ifndef QUILLON_TOOL_TEXT_TABLE_HPP
#define QUILLON_TOOL_TEXT_TABLE_HPP

#include "commands.hpp"

#include <string>
#include <vector>

namespace quillon::tool {

class TextTable {
  public:
    // Columns by heading; a heading's first character '<' aligns the column
    // left (names, remarks), else it is aligned right (numbers).
    explicit TextTable(std::vector<std::string> headings);
    void add(std::vector<std::string> cells);
    std::string render(Format format) const;

  private:
    std::vector<std::string> headings_;
    std::vector<bool> left_;
    std::vector<std::vector<std::string>> rows_;
};

} // namespace quillon::tool

#endif
