#pragma once

#include <string>
#include <vector>

namespace orvane {

/// A table for a terminal: columns as wide as their widest cell, two blanks apart. The last column is not padded.
class Columns {
 public:
    void add(std::vector<std::string> row) { rows_.push_back(std::move(row)); }
    bool isEmpty() const { return rows_.empty(); }

    /// A line for each row, each with its end. Cells are cleaned of what would break a line or steer a terminal.
    std::string text() const;

 private:
    std::vector<std::vector<std::string>> rows_;
};

}  // namespace orvane
